# Installs the build tree BUILD_DIR, then builds and runs a host program against the installed tree
# alone: with the stand-in, and with another host library in its place. TOOLCHAIN and EMULATOR are set
# where this is a cross build.

set(work ${BUILD_DIR}/install-test)
file(REMOVE_RECURSE ${work})
set(flags)
if(SANITIZE)
    set(flags -fsanitize=${SANITIZE})
endif()
set(toolchain -DCMAKE_CXX_COMPILER=${CXX_COMPILER})
set(moduleFolder ${work}/tree/lib/orvane)
set(hostFile libtesk.so)
set(runner ${work}/tree/bin/tesk-run)
if(TOOLCHAIN)
    set(toolchain -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
    set(hostFile tesk.dll)
    set(exe .exe)
    set(runner ${moduleFolder}/tesk-run.exe)
    # In front of what the build tree's tests are given.
    set(ENV{WINEPATH} "Z:${moduleFolder};$ENV{WINEPATH}")
endif()

function(run)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}: ${result}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# Configures and builds tests/install/<project> with the installed package; the result lies in
# ${work}/<folder>.
function(build project folder)
    run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/install/${project} -B ${work}/${folder} -G Ninja
        -DOrvane_DIR=${work}/tree/lib/cmake/Orvane
        -DCMAKE_CXX_FLAGS=${flags} ${toolchain} -DVERSION=${VERSION} -DPYTHON_INCLUDE=${PYTHON_INCLUDE}
        -DPYTHON_LIBRARY=${PYTHON_LIBRARY} ${ARGN})
    run(${CMAKE_COMMAND} --build ${work}/${folder})
endfunction()

function(expect text)
    if(NOT output MATCHES "${text}")
        message(FATAL_ERROR "expected \"${text}\" in:\n${output}")
    endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${work}/tree)
file(STRINGS ${work}/tree/share/doc/Orvane/CHANGELOG.md headings REGEX "^## ")
list(GET headings 0 output)
expect("^## ${VERSION}$")
file(READ ${work}/tree/share/doc/Orvane/docs/reference.md output)
expect("version ${VERSION}[.]")
file(READ ${work}/tree/lib/orvane/_Orvane.pyi output)
expect("version ${VERSION}[.]")

build(consumer consumer)
run(${EMULATOR} ${work}/consumer/consumer${exe})
expect("^a coefficient set with 1 reference, 4 coefficients in Python")

build(other_host other_host)
if(TOOLCHAIN)
    # The loader takes the host's library from the program's own folder first.
    build(consumer consumer-other -DORVANE_HOST=${work}/other_host/libtesk.dll.a)
    file(COPY ${work}/other_host/${hostFile} DESTINATION ${work}/consumer-other)
else()
    build(consumer consumer-other -DORVANE_HOST=${work}/other_host/${hostFile})
endif()
run(${EMULATOR} ${work}/consumer-other/consumer${exe})
string(REPLACE "\r" "" output "${output}")
expect("^other host: class SHBuilder\nother host: class SphericalHarmonic\n")
expect("\na coefficient set with 1 reference, 4 coefficients in Python")

run(${EMULATOR} ${runner} ${SOURCE_DIR}/examples/depletion_profile.py ${work}/depletion.png)
