# The Python package orvanekit: beside the module in the build tree, in the install tree and in the
# archives that `cpack` makes of it.

set(ORVANE_KIT ${CMAKE_SOURCE_DIR}/orvanekit)
set(kitBeside ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/orvanekit)
file(MAKE_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
if(NOT EXISTS ${kitBeside})
    file(CREATE_LINK ${ORVANE_KIT} ${kitBeside} SYMBOLIC RESULT linked)
    if(NOT linked EQUAL 0)
        file(COPY ${ORVANE_KIT} DESTINATION ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
    endif()
endif()

include(GNUInstallDirs)
if(NOT ORVANE_MODULE_FOLDER)
    set(ORVANE_MODULE_FOLDER ${CMAKE_INSTALL_LIBDIR}/orvane)
endif()
install(DIRECTORY ${ORVANE_KIT} DESTINATION ${ORVANE_MODULE_FOLDER}
    PATTERN "*.pyc" EXCLUDE PATTERN "__pycache__" EXCLUDE)

# One folder inside that may lie anywhere; what people download.
if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(kitSystem windows)
else()
    set(CPACK_GENERATOR TGZ)
    set(kitSystem linux)
endif()
set(CPACK_PACKAGE_NAME orvane)
set(CPACK_PACKAGE_VENDOR Orvane)
set(CPACK_PACKAGE_FILE_NAME orvane-${PROJECT_VERSION}-${kitSystem}-x86_64)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
