# cmake -DCLANG=... -DSOURCE_DIR=... -P CheckVirtualTables.cmake
#
# Compiles RecordLayout.cpp and MicrosoftAbi.cpp for 64-bit Windows with Microsoft's object layout,
# which checks their assertions, and compares the virtual tables that the compiler prints with the
# host's order.

foreach(source IN ITEMS orvane/module/RecordLayout.cpp tests/abi/MicrosoftAbi.cpp)
    execute_process(
        COMMAND ${CLANG} --target=x86_64-pc-windows-msvc -std=c++20 -nostdinc++ -I${SOURCE_DIR}
                -Wall -Wextra -Werror -S -o - -Xclang -fdump-vtable-layouts ${SOURCE_DIR}/${source}
        OUTPUT_VARIABLE output
        ERROR_VARIABLE errors
        RESULT_VARIABLE result)
    if(result)
        message(FATAL_ERROR "${errors}")
    endif()
endforeach()

set(weakAdapter "TeskWeakAdapter<Exposed>")
set(query "RootQIImpl<${weakAdapter}>")
set(lock "RootRefLock<${weakAdapter}>")
set(object "RootRefLockWR<Exposed>")
set(rootOperations
    "${weakAdapter}::GetClassDescriptor"
    "${object}::QueryInterface"
    "${lock}::Lock"
    "${object}::Unlock"
    "${lock}::ReservedQuery"
    "${lock}::GetLockCount"
    "${query}::GetRoot"
    "${lock}::DeleteThis")

# Compares one table of RootRefLockWR, that of the base which TITLE names, with the operations
# after it. One destructor entry, not two as elsewhere.
function(ExpectTable title)
    string(FIND "${output}" "VFTable for ${title} in 'RootRefLockWR' (" start)
    if(start EQUAL -1)
        message(FATAL_ERROR "the compiler printed no virtual table for ${title}")
    endif()
    string(SUBSTRING "${output}" ${start} -1 table)
    string(FIND "${table}" "\n\n" end)
    string(SUBSTRING "${table}" 0 ${end} table)

    string(REGEX MATCHALL "[A-Za-z]+<[^ ]*>::~?[A-Za-z]+\\(" operations "${table}")
    list(TRANSFORM operations REPLACE "\\($" "")
    if(NOT operations STREQUAL "${ARGN}")
        list(JOIN ARGN "\n  " expected)
        message(FATAL_ERROR "expected\n  ${expected}\nfound\n${table}")
    endif()
endfunction()

set(upToLock "in 'TeskWeakAdapter' in 'RootQIImpl' in 'RootRefLock'")
ExpectTable("'IRoot' in 'Exposed' ${upToLock}" ${rootOperations}
    "${object}::~RootRefLockWR" "${lock}::DeleteIfUnreferenced")
ExpectTable("'IRoot' in 'IWeakObject' ${upToLock}" ${rootOperations}
    "${weakAdapter}::AddWeakReference" "${weakAdapter}::RemoveWeakReference")
