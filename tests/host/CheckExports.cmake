# What module and stand-in offer to the dynamic loader: the module its init function, the stand-in
# what the host's headers declare. MODULE, HOST and SOURCE_DIR are given, and NM, or OBJDUMP and
# CXXFILT for libraries of Windows.

function(exported library)
    if(OBJDUMP)
        execute_process(COMMAND ${OBJDUMP} -p ${library} COMMAND sed -n "s/^\t\\[ *[0-9]*\\] \\([^ ]*\\)$/\\1/p"
            COMMAND ${CXXFILT} OUTPUT_VARIABLE lines COMMAND_ERROR_IS_FATAL ANY)
    else()
        execute_process(COMMAND ${NM} -DC --defined-only --format=posix ${library}
            COMMAND sed "s/ [A-Za-z] [0-9a-f]* [0-9a-f]*$//"
            OUTPUT_VARIABLE lines COMMAND_ERROR_IS_FATAL ANY)
    endif()
    string(REPLACE ";" "," lines "${lines}")
    string(REPLACE "\n" ";" lines "${lines}")
    set(names)
    foreach(line IN LISTS lines)
        if(line)
            # Without parameters and tags.
            string(REGEX REPLACE "[[(].*" "" name "${line}")
            list(APPEND names "${name}")
        endif()
    endforeach()
    list(REMOVE_DUPLICATES names)
    set(names "${names}" PARENT_SCOPE)
endfunction()

exported(${MODULE})
if(NOT names STREQUAL "init_Orvane")
    message(FATAL_ERROR "The module exports more than init_Orvane: ${names}")
endif()

file(GLOB headers ${SOURCE_DIR}/teskexposure/include/* ${SOURCE_DIR}/vexcore/include/*)
set(text)
foreach(header IN LISTS headers ITEMS ${SOURCE_DIR}/tesk/TeskReport.h)
    file(READ ${header} one)
    string(APPEND text "${one}")
endforeach()
exported(${HOST})
foreach(name IN LISTS names)
    # The last part of a qualified name stands in a header that marks it for export.
    string(REGEX REPLACE "^.*::" "" last "${name}")
    if(NOT text MATCHES "[^A-Za-z0-9_]${last}[^A-Za-z0-9_]" OR NOT name MATCHES "^(Tesk|PyThunk|PyOS|TxClasses|VEX|Tx::)")
        message(FATAL_ERROR "The stand-in exports what no header declares: ${name}")
    endif()
endforeach()
list(LENGTH names count)
message("init_Orvane and ${count} names of the host")
if(count LESS 25)
    message(FATAL_ERROR "The stand-in exports too little: ${names}")
endif()
