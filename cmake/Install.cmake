# What `cmake --install` lays out:
#   bin/                   the minimal host, tesk-run; on Windows it lies beside the module
#   lib/orvane/            the module with its typed stub, and the host's stand-in, side by side
#   include/orvane/        the host's headers, under the paths by which they include each other
#   lib/cmake/Orvane/      what find_package(Orvane) reads
#   share/doc/Orvane/      the documents
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(ORVANE_MODULE_FOLDER ${CMAKE_INSTALL_LIBDIR}/orvane)
set(ORVANE_HEADER_FOLDER ${CMAKE_INSTALL_INCLUDEDIR}/orvane)
set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/Orvane)

add_library(orvane_host_headers INTERFACE)
set_target_properties(orvane_host_headers PROPERTIES EXPORT_NAME host_headers)
target_include_directories(orvane_host_headers INTERFACE $<INSTALL_INTERFACE:${ORVANE_HEADER_FOLDER}>)

install(TARGETS tesk _Orvane orvane_host_headers EXPORT OrvaneTargets
    LIBRARY DESTINATION ${ORVANE_MODULE_FOLDER} RUNTIME DESTINATION ${ORVANE_MODULE_FOLDER}
    ARCHIVE DESTINATION ${ORVANE_MODULE_FOLDER})
if(WIN32)
    # The loader looks for the host's library beside the program.
    install(TARGETS tesk-run RUNTIME DESTINATION ${ORVANE_MODULE_FOLDER})
else()
    set_target_properties(tesk-run PROPERTIES
        INSTALL_RPATH "$ORIGIN/../${ORVANE_MODULE_FOLDER};${PYTHON27_LIBDIR}")
    install(TARGETS tesk-run RUNTIME)
endif()
install(FILES orvane/module/_Orvane.pyi DESTINATION ${ORVANE_MODULE_FOLDER})
install(EXPORT OrvaneTargets NAMESPACE Orvane:: DESTINATION ${packageFolder})
install(DIRECTORY teskexposure vexcore DESTINATION ${ORVANE_HEADER_FOLDER})
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR})

configure_package_config_file(cmake/OrvaneConfig.cmake.in ${CMAKE_BINARY_DIR}/OrvaneConfig.cmake
    INSTALL_DESTINATION ${packageFolder} PATH_VARS ORVANE_MODULE_FOLDER)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/OrvaneConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/OrvaneConfig.cmake ${CMAKE_BINARY_DIR}/OrvaneConfigVersion.cmake
    DESTINATION ${packageFolder})
