# What every target is compiled with, in targets of one meaning each:
#   orvane_arithmetic   what makes results the same to the bit
#   orvane_warnings     what the compiler is to complain about
#   orvane_flags        both, the include root and the sanitizers: what targets link
# A target of the kernels adds the options of its instruction set: orvane/CMakeLists.txt.

if(NOT CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|amd64|AMD64)$")
    message(FATAL_ERROR "Orvane is written for x86-64; the target processor is "
        "'${CMAKE_SYSTEM_PROCESSOR}'.")
endif()
if(NOT (CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12)
   AND NOT (CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 14))
    message(FATAL_ERROR "Orvane needs g++ 12 or clang 14, or newer; '${CMAKE_CXX_COMPILER}' is "
        "${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}. Name another with "
        "-DCMAKE_CXX_COMPILER=path.")
endif()

# Every number is IEEE arithmetic as written: no contraction, no fast-math, anywhere.
add_library(orvane_arithmetic INTERFACE)
target_compile_options(orvane_arithmetic INTERFACE -ffp-contract=off)

add_library(orvane_warnings INTERFACE)
target_compile_options(orvane_warnings INTERFACE -Wall -Wextra -Wpedantic)
if(ORVANE_WERROR)
    target_compile_options(orvane_warnings INTERFACE -Werror)
endif()

add_library(orvane_flags INTERFACE)
target_link_libraries(orvane_flags INTERFACE orvane_arithmetic orvane_warnings)
target_include_directories(orvane_flags INTERFACE ${CMAKE_SOURCE_DIR})
if(ORVANE_SANITIZE)
    # g++ takes what it puts between the library's own lines for uses of uninitialised variables.
    target_compile_options(orvane_flags INTERFACE
        -fsanitize=${ORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(orvane_flags INTERFACE -fsanitize=${ORVANE_SANITIZE})
endif()
if(ORVANE_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "The fuzzers need clang: configure with -DCMAKE_CXX_COMPILER=clang++.")
    endif()
    target_compile_options(orvane_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
# For the environment of tests: what the Python interpreter never gives back is no leak of ours.
set(ORVANE_LEAK_OPTIONS
    LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/leak-suppressions.txt:print_suppressions=0)
