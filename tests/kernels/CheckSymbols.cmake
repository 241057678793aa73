# No object file of a kernel holds a function that the linker may take from elsewhere, or give to
# others: it would be compiled for a processor that is not there. NM and OBJECTS, separated by
# commas, are given.

string(REPLACE "," ";" objects "${OBJECTS}")
list(FILTER objects INCLUDE REGEX "/kernels/Kernels[A-Za-z0-9]+\\.cpp\\.")
list(LENGTH objects count)
if(NOT count EQUAL 3)
    message(FATAL_ERROR "expected the object files of three instruction sets: ${objects}")
endif()
foreach(object IN LISTS objects)
    execute_process(COMMAND ${NM} -C --defined-only ${object}
        OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
    if(NOT symbols MATCHES " [Dd] orvane::kernels")
        message(FATAL_ERROR "${object} has no table of kernels: ${symbols}")
    endif()
    if(symbols MATCHES " [Wi] [^\n]*")
        message(FATAL_ERROR "${object} holds a function that may be replaced:${CMAKE_MATCH_0}")
    endif()
endforeach()
