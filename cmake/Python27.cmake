# CPython 2.7: PYTHON2 names its interpreter; the rest is asked of it.
set(PYTHON2 "" CACHE FILEPATH "The Python 2.7 interpreter")
include_guard(GLOBAL)

if(NOT PYTHON2)
    find_program(PYTHON2_FOUND NAMES python2.7)
    set(PYTHON2 ${PYTHON2_FOUND})
endif()
execute_process(
    COMMAND ${PYTHON2} -c "import sys, sysconfig as s; sys.stdout.write(';'.join([s.get_paths()['include'], s.get_config_var('LIBDIR'), s.get_config_var('LDLIBRARY'), sys.prefix, sys.version[:3]]))"
    OUTPUT_VARIABLE python27Facts COMMAND_ERROR_IS_FATAL ANY)
list(GET python27Facts 0 PYTHON27_INCLUDE)
list(GET python27Facts 1 PYTHON27_LIBDIR)
list(GET python27Facts 2 PYTHON27_LDLIBRARY)
list(GET python27Facts 3 PYTHON27_PREFIX)
list(GET python27Facts 4 python27Version)
if(NOT python27Version STREQUAL "2.7")
    message(FATAL_ERROR "PYTHON2 (${PYTHON2}) is Python ${python27Version}; 2.7 is needed")
endif()

# A module takes Python's symbols from the process that loads it; only a host links the library.
add_library(python27_headers INTERFACE)
target_include_directories(python27_headers SYSTEM INTERFACE ${PYTHON27_INCLUDE})
add_library(python27_embed INTERFACE)
target_link_libraries(python27_embed INTERFACE python27_headers ${PYTHON27_LIBDIR}/${PYTHON27_LDLIBRARY})
