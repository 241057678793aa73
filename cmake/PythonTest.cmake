# add_python_test(name script): a test that runs a Python 2.7 script from the project's folder in the
# minimal host, which fails too where the script leaves an object behind.

set(pythonTestEnvironment PYTHONDONTWRITEBYTECODE=1)
if(CMAKE_CROSSCOMPILING)
    # Where Wine finds the libraries; Z: is the root of its host's files.
    list(APPEND pythonTestEnvironment PYTHONHOME=Z:${PYTHON27_WIN}
        "WINEPATH=Z:${PYTHON27_WIN}\\;Z:${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
endif()
list(APPEND pythonTestEnvironment ASAN_OPTIONS=malloc_context_size=2 ${ORVANE_LEAK_OPTIONS})

function(add_python_test name script)
    add_test(NAME ${name} COMMAND tesk-run ${script} WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${pythonTestEnvironment}")
endfunction()
