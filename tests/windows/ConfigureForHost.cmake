# Runs the commands of docs/windows.md that configure a build for a real host, as on a Windows
# machine: clang for Microsoft's target, not a cross build. Given are SOURCE_DIR, BUILD_DIR and
# PYTHON27_WIN.

file(READ ${SOURCE_DIR}/docs/windows.md page)
if(NOT page MATCHES "\n(cmake -S [^`]*-DORVANE_TESTS=OFF)\n")
    message(FATAL_ERROR "docs/windows.md does not say how to configure")
endif()
string(REPLACE "\\\n" " " command "${CMAKE_MATCH_1}")
string(REPLACE "C:/Python27" "${PYTHON27_WIN}" command "${command}")
string(REPLACE "-B build/host" "-B ${BUILD_DIR}/host-configuration" command "${command}")
separate_arguments(command UNIX_COMMAND "${command}")

set(folder ${BUILD_DIR}/host-configuration)
file(REMOVE_RECURSE ${folder})
# What a Windows machine would find out by itself.
file(WRITE ${folder}/toolchain.cmake "
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(CMAKE_CXX_COMPILER_TARGET x86_64-pc-windows-msvc)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_CXX_COMPILER_WORKS TRUE)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_LINKER /bin/true CACHE FILEPATH \"\")
")
file(WRITE ${folder}/native.cmake "set(CMAKE_CROSSCOMPILING FALSE)\n")
execute_process(COMMAND ${command} -DCMAKE_TOOLCHAIN_FILE=${folder}/toolchain.cmake
        -DCMAKE_PROJECT_INCLUDE=${folder}/native.cmake
    WORKING_DIRECTORY ${SOURCE_DIR} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
if(result)
    message(FATAL_ERROR "${command}: ${result}\n${output}")
endif()
file(STRINGS ${folder}/build.ninja module REGEX "^build .*_Orvane[.]pyd")
if(NOT module)
    message(FATAL_ERROR "The configuration builds no _Orvane.pyd")
endif()
