# Makes an archive of the build tree BUILD_DIR, unpacks it into a fresh folder and there, with
# nothing else on the path, runs the script that README.md shows and a command of the package.
# PYTHON is what starts Python: a list of words. EMULATOR is set where this is a cross build.

set(work ${BUILD_DIR}/package-test)
file(REMOVE_RECURSE ${work})
file(MAKE_DIRECTORY ${work}/run)

function(run)
    execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${work}/run
        OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}: ${result}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

run(${CPACK} --config ${BUILD_DIR}/CPackConfig.cmake -B ${work}/made)
file(GLOB archives ${work}/made/orvane-*-x86_64.tar.gz ${work}/made/orvane-*-x86_64.zip)
list(LENGTH archives count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "expected one archive, found: ${archives}")
endif()
file(ARCHIVE_EXTRACT INPUT ${archives} DESTINATION ${work}/fresh)
cmake_path(GET archives FILENAME name)
string(REGEX REPLACE "[.](tar[.]gz|zip)$" "" name ${name})
set(tree ${work}/fresh/${name})

# The README's one block of Python.
file(READ ${SOURCE_DIR}/README.md page)
string(REGEX MATCH "```python\n([^`]*)```" block "${page}")
file(WRITE ${work}/run/readme.py "${CMAKE_MATCH_1}")
set(modules ${CMAKE_COMMAND} -E env PYTHONPATH=${tree}/lib/orvane ${PYTHON})
set(hosts modules)
set(tesk-run ${tree}/bin/tesk-run)
if(EMULATOR)
    set(tesk-run ${EMULATOR} ${tree}/lib/orvane/tesk-run.exe)
    # Before the build tree's own.
    set(ENV{WINEPATH} "Z:${tree}/lib/orvane;$ENV{WINEPATH}")
endif()
list(APPEND hosts tesk-run)
foreach(host IN LISTS hosts)
    run(${${host}} readme.py)
    file(SIZE ${work}/run/blob.pgm size)
    if(NOT size EQUAL 131087)
        message(FATAL_ERROR "${${host}}: blob.pgm has ${size} bytes; expected 15 and 512 * 256")
    endif()
    file(REMOVE ${work}/run/blob.pgm)
endforeach()

run(${modules} -m orvanekit project ${SOURCE_DIR}/examples/data/earth-512x256.pgm earth.json --bands 4)
run(${modules} -m orvanekit info earth.json)
if(NOT output MATCHES "\n4 bands, 16 coefficients\n")
    message(FATAL_ERROR "info says:\n${output}")
endif()

# The page holds the scripts that lie beside the package.
run(${modules} -m orvanekit view earth.json)
file(SIZE ${work}/run/earth.html size)
if(size LESS 30000)
    message(FATAL_ERROR "earth.html has ${size} bytes")
endif()
