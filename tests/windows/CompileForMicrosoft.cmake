# Compiles every source of the module for x86_64-pc-windows-msvc with CLANG: Microsoft's object
# layout, calling convention and names. MinGW's headers stand in for Microsoft's. Given are CLANG,
# SOURCE_DIR and PYTHON27_WIN.

file(GLOB library /usr/lib/gcc/x86_64-w64-mingw32/*-posix/include/c++)
set(flags --target=x86_64-pc-windows-msvc -std=c++20 -O1 -ffp-contract=off -I${SOURCE_DIR}
    # So that MinGW's headers take clang for the compiler they know.
    -fgnuc-version=12.2 -fno-ms-compatibility "-D__declspec(x)=__declspec(x)"
    -isystem ${library} -isystem ${library}/x86_64-w64-mingw32
    -isystem /usr/x86_64-w64-mingw32/include)
set(python -include ${SOURCE_DIR}/tests/windows/BeforePython.h -isystem ${PYTHON27_WIN}/include
    -DMS_WIN64 -DHAVE_SNPRINTF -D_hypot=hypot -Wno-invalid-offsetof)
set(avx2 -mavx2 -mfma)
set(avx512 ${avx2} -mavx512f -mavx512dq -mavx512bw -mavx512vl)

file(GLOB sources ${SOURCE_DIR}/orvane/sh/*.cpp ${SOURCE_DIR}/orvane/builder/*.cpp
     ${SOURCE_DIR}/orvane/kernels/*.cpp ${SOURCE_DIR}/orvane/module/*.cpp
     ${SOURCE_DIR}/platform/*.cpp)
set(count 0)
foreach(source IN LISTS sources)
    set(more)
    if(source MATCHES "/module/")
        set(more ${python})
    elseif(source MATCHES "Avx2")
        set(more ${avx2})
    elseif(source MATCHES "Avx512")
        set(more ${avx512})
    endif()
    execute_process(COMMAND ${CLANG} ${flags} ${more} -c -o /dev/null ${source}
        ERROR_VARIABLE errors RESULT_VARIABLE result)
    if(result)
        message(FATAL_ERROR "${source}:\n${errors}")
    endif()
    math(EXPR count "${count} + 1")
endforeach()
message("${count} sources compile for Microsoft's target")
if(count LESS 30)
    message(FATAL_ERROR "Where are the others?")
endif()
