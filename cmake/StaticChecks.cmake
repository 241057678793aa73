# Target static_checks: clang-tidy over every source file of the project and cppcheck over all of
# them. A file is checked anew when its object file or a .clang-tidy has changed: the stamp of its last
# check depends on the object, and so on every header, option and compiler that the object depends
# on. Included last, when all targets are known.

find_program(CLANG_TIDY clang-tidy)
find_program(CPPCHECK cppcheck)
if(NOT CLANG_TIDY OR NOT CPPCHECK)
    return()
endif()

# Puts all targets defined in `folder` and below it into the list `out`.
function(collect_targets folder out)
    get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
    get_property(subfolders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
    foreach(subfolder IN LISTS subfolders)
        collect_targets(${subfolder} more)
        list(APPEND targets ${more})
    endforeach()
    set(${out} ${targets} PARENT_SCOPE)
endfunction()

set(stampFolder ${CMAKE_BINARY_DIR}/clang-tidy)
set(stamps)
set(objects)
collect_targets(${CMAKE_SOURCE_DIR} targets)
foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    if(NOT type MATCHES "EXECUTABLE|_LIBRARY" OR type STREQUAL INTERFACE_LIBRARY)
        continue()
    endif()
    get_target_property(sources ${target} SOURCES)
    get_target_property(sourceFolder ${target} SOURCE_DIR)
    get_target_property(binaryFolder ${target} BINARY_DIR)
    foreach(source IN LISTS sources)
        if(NOT source MATCHES "\\.cpp$")
            continue()
        endif()
        cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${sourceFolder} NORMALIZE)
        file(RELATIVE_PATH inTarget ${sourceFolder} ${source})
        string(REPLACE "../" "__/" inTarget ${inTarget})
        set(object ${binaryFolder}/CMakeFiles/${target}.dir/${inTarget}${CMAKE_CXX_OUTPUT_EXTENSION})
        file(RELATIVE_PATH name ${CMAKE_SOURCE_DIR} ${source})
        set(stamp ${stampFolder}/${target}/${name})
        cmake_path(GET stamp PARENT_PATH stampParent)
        file(MAKE_DIRECTORY ${stampParent})
        add_custom_command(OUTPUT ${stamp}
            COMMAND ${CLANG_TIDY} --quiet -p ${CMAKE_BINARY_DIR} ${source}
            COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
            DEPENDS ${object} ${CMAKE_SOURCE_DIR}/.clang-tidy ${CMAKE_SOURCE_DIR}/tests/.clang-tidy
            COMMENT "clang-tidy ${name}" VERBATIM)
        list(APPEND stamps ${stamp})
        list(APPEND objects ${object})
    endforeach()
endforeach()

# Without containerOutOfBounds: cppcheck 2.10 takes the size of std::array<T, N + 1> for N.
set(cppcheckStamp ${stampFolder}/cppcheck)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/cppcheck)
add_custom_command(OUTPUT ${cppcheckStamp}
    COMMAND ${CPPCHECK} --quiet --error-exitcode=1 --inline-suppr -j 2
        --enable=warning,performance,portability --library=googletest
        --suppress=containerOutOfBounds
        --cppcheck-build-dir=${CMAKE_BINARY_DIR}/cppcheck
        --project=${CMAKE_BINARY_DIR}/compile_commands.json
    COMMAND ${CMAKE_COMMAND} -E touch ${cppcheckStamp}
    DEPENDS ${objects}
    COMMENT "cppcheck" VERBATIM)

add_custom_target(static_checks DEPENDS ${stamps} ${cppcheckStamp})
