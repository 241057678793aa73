# Makes an archive of the build tree BUILD_DIR and unpacks it into a fresh folder. With nothing else
# on the path, runs the script that README.md shows, commands of the package and an example. Then
# builds and runs a host program against the tree alone: with the stand-in, and with another host
# library in its place. PYTHON is what starts Python: a list of words. TOOLCHAIN and EMULATOR are set
# where this is a cross build.

set(work ${BUILD_DIR}/install-test)
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

function(expect text)
    if(NOT output MATCHES "${text}")
        message(FATAL_ERROR "expected \"${text}\" in:\n${output}")
    endif()
endfunction()

function(expect_size file least most)
    file(SIZE ${work}/run/${file} size)
    if(size LESS least OR size GREATER most)
        message(FATAL_ERROR "${file} has ${size} bytes; expected ${least} to ${most}")
    endif()
    file(REMOVE ${work}/run/${file})
endfunction()

run(${CPACK} --config ${BUILD_DIR}/CPackConfig.cmake -B ${work}/made)
file(GLOB archives ${work}/made/orvane-*-x86_64.tar.gz ${work}/made/orvane-*-x86_64.zip)
list(LENGTH archives count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "expected one archive, found: ${archives}")
endif()
file(ARCHIVE_EXTRACT INPUT ${archives} DESTINATION ${work}/fresh)
file(GLOB tree ${work}/fresh/*)

set(modules ${tree}/lib/orvane)
set(teskRun ${tree}/bin/tesk-run)
set(toolchain -DCMAKE_CXX_COMPILER=${CXX_COMPILER})
set(hostToLink libtesk.so)
if(TOOLCHAIN)
    set(teskRun ${EMULATOR} ${modules}/tesk-run.exe)
    set(toolchain -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
    set(hostToLink libtesk.dll.a)
    set(exe .exe)
    # In front of what the build tree's tests are given.
    set(ENV{WINEPATH} "Z:${modules};$ENV{WINEPATH}")
endif()
set(python ${CMAKE_COMMAND} -E env PYTHONPATH=${modules} ${PYTHON})

file(STRINGS ${tree}/share/doc/Orvane/CHANGELOG.md output REGEX "^## " LIMIT_COUNT 1)
expect("^## ${VERSION}$")
foreach(document IN ITEMS share/doc/Orvane/docs/reference.md lib/orvane/_Orvane.pyi)
    file(READ ${tree}/${document} output)
    expect("version ${VERSION}[.]")
endforeach()

# The README's one block of Python, which makes a picture of 512 x 256 behind 15 bytes.
file(READ ${SOURCE_DIR}/README.md page)
string(REGEX MATCH "```python\n([^`]*)```" block "${page}")
file(WRITE ${work}/run/readme.py "${CMAKE_MATCH_1}")
run(${teskRun} readme.py)
expect_size(blob.pgm 131087 131087)
run(${teskRun} ${SOURCE_DIR}/examples/depletion_profile.py ${work}/depletion.png)
if(NOT SANITIZE)
    # In Python's own program; the sanitizers want to be loaded before it.
    run(${python} readme.py)
    expect_size(blob.pgm 131087 131087)
    run(${python} -m orvanekit project ${SOURCE_DIR}/examples/data/earth-512x256.pgm earth.json
        --bands 4)
    run(${python} -m orvanekit info earth.json)
    expect("\n4 bands, 16 coefficients\n")
    # The page holds the scripts that lie beside the package.
    run(${python} -m orvanekit view earth.json)
    expect_size(earth.html 30000 300000)
endif()

# Configures and builds tests/install/<project> with the unpacked tree; the result lies in
# ${work}/<folder>.
function(build project folder)
    set(flags)
    if(SANITIZE)
        set(flags -fsanitize=${SANITIZE})
    endif()
    run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/install/${project} -B ${work}/${folder} -G Ninja
        -DOrvane_DIR=${tree}/lib/cmake/Orvane
        -DCMAKE_CXX_FLAGS=${flags} ${toolchain} -DVERSION=${VERSION} -DPYTHON_INCLUDE=${PYTHON_INCLUDE}
        -DPYTHON_LIBRARY=${PYTHON_LIBRARY} ${ARGN})
    run(${CMAKE_COMMAND} --build ${work}/${folder})
endfunction()

build(consumer consumer)
run(${EMULATOR} ${work}/consumer/consumer${exe})
expect("^a coefficient set with 1 reference, 4 coefficients in Python")

build(other_host other_host)
build(consumer consumer-other -DORVANE_HOST=${work}/other_host/${hostToLink})
if(TOOLCHAIN)
    # The loader takes the host's library from the program's own folder first.
    file(COPY ${work}/other_host/tesk.dll DESTINATION ${work}/consumer-other)
endif()
run(${EMULATOR} ${work}/consumer-other/consumer${exe})
string(REPLACE "\r" "" output "${output}")
expect("^other host: class SHBuilder\nother host: class SphericalHarmonic\n")
expect("\na coefficient set with 1 reference, 4 coefficients in Python")
