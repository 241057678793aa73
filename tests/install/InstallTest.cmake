# Installs the build tree BUILD_DIR, then builds and runs a host program against the installed tree
# alone: with the stand-in, and with another host library in its place.

set(work ${BUILD_DIR}/install-test)
file(REMOVE_RECURSE ${work})
set(flags)
if(SANITIZE)
    set(flags -fsanitize=${SANITIZE})
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
        -DCMAKE_PREFIX_PATH=${work}/tree -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
        -DCMAKE_CXX_FLAGS=${flags} -DVERSION=${VERSION} -DPYTHON_INCLUDE=${PYTHON_INCLUDE}
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
run(${work}/consumer/consumer)
expect("^a coefficient set with 1 reference, 2 bands in Python")

build(other_host other_host)
build(consumer consumer-other -DORVANE_HOST=${work}/other_host/libtesk.so)
run(${work}/consumer-other/consumer)
expect("^other host: class SHBuilder\nother host: class SphericalHarmonic\n")
expect("\na coefficient set with 1 reference, 2 bands in Python")

run(${work}/tree/bin/tesk-run ${SOURCE_DIR}/examples/depletion_profile.py ${work}/depletion.png)
