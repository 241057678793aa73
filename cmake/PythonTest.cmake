# add_python_test(name script [argument...]): a test that runs a Python 2.7 script with the module
# importable. With the address sanitizer its run-time library must be in the process first; leaks are
# looked for too, but for what the interpreter itself never gives back.
include(${CMAKE_SOURCE_DIR}/cmake/Python27.cmake)

set(pythonTestEnvironment PYTHONPATH=$<TARGET_FILE_DIR:_Orvane> PYTHONDONTWRITEBYTECODE=1)
if(ORVANE_SANITIZE MATCHES "address")
    foreach(library asan stdc++)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=lib${library}.so
            OUTPUT_VARIABLE libraryPath OUTPUT_STRIP_TRAILING_WHITESPACE)
        list(APPEND preloaded ${libraryPath})
    endforeach()
    list(JOIN preloaded ":" preloaded)
    list(APPEND pythonTestEnvironment LD_PRELOAD=${preloaded}
        LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/leak-suppressions.txt:print_suppressions=0)
endif()

function(add_python_test name script)
    add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E env ${pythonTestEnvironment}
        ${PYTHON2} ${script} ${ARGN} WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
endfunction()
