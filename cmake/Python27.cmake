# CPython 2.7: PYTHON2 names its interpreter; the rest is asked of it.
set(PYTHON2 "" CACHE FILEPATH "The Python 2.7 interpreter")
include_guard(GLOBAL)

if(WIN32)
    # PYTHON27_WIN is the folder that Python is installed in; a foreign one cannot be asked. Windows
    # binds every symbol to a library when it links, so a module needs the import library too.
    add_library(python27_headers INTERFACE)
    target_include_directories(python27_headers SYSTEM INTERFACE ${PYTHON27_WIN}/include)
    # What python.org's headers leave to Microsoft's compiler to say, or rename because of it.
    target_compile_definitions(python27_headers INTERFACE MS_WIN64 HAVE_SNPRINTF _hypot=hypot)
    find_library(PYTHON27_IMPORT_LIBRARY NAMES python27.lib libpython27.a python27
        PATHS ${PYTHON27_WIN}/libs ${PYTHON27_WIN} REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    target_link_libraries(python27_headers INTERFACE ${PYTHON27_IMPORT_LIBRARY})
    set(PYTHON27_INCLUDE ${PYTHON27_WIN}/include)
    set(PYTHON27_LIBRARY ${PYTHON27_IMPORT_LIBRARY})
    add_library(python27_embed INTERFACE)
    target_link_libraries(python27_embed INTERFACE python27_headers)
    return()
endif()

if(NOT PYTHON2)
    find_program(PYTHON2_FOUND NAMES python2.7 python2)
    set(PYTHON2 ${PYTHON2_FOUND})
endif()
execute_process(
    COMMAND ${PYTHON2} -c "import sys, sysconfig as s; v = s.get_config_var; sys.stdout.write(';'.join([sys.version[:3], s.get_paths()['include'], v('LIBDIR'), v('LDLIBRARY'), v('LIBS'), sys.prefix]))"
    OUTPUT_VARIABLE python27Facts RESULT_VARIABLE python27Result)
if(NOT python27Result EQUAL 0 OR NOT python27Facts MATCHES "^2\\.7;")
    message(FATAL_ERROR "'${PYTHON2}' is no working Python 2.7. Name one with -DPYTHON2=path; "
        "scripts/test.sh and scripts/demo.sh find or install one themselves.")
endif()
list(POP_FRONT python27Facts PYTHON27_VERSION PYTHON27_INCLUDE PYTHON27_LIBDIR PYTHON27_LDLIBRARY
     PYTHON27_LIBS PYTHON27_PREFIX)

# A module takes Python's symbols from the process that loads it; only a host links the library.
add_library(python27_headers INTERFACE)
target_include_directories(python27_headers SYSTEM INTERFACE ${PYTHON27_INCLUDE})
add_library(python27_embed INTERFACE)
set(PYTHON27_LIBRARY ${PYTHON27_LIBDIR}/${PYTHON27_LDLIBRARY})
target_link_libraries(python27_embed INTERFACE python27_headers ${PYTHON27_LIBRARY})
if(PYTHON27_LDLIBRARY MATCHES "\\.a$")
    # A static libpython needs the system's libraries, and must offer its symbols to modules.
    separate_arguments(PYTHON27_LIBS UNIX_COMMAND "${PYTHON27_LIBS} -lm -lutil")
    target_link_libraries(python27_embed INTERFACE ${PYTHON27_LIBS})
    target_link_options(python27_embed INTERFACE -rdynamic)
endif()
