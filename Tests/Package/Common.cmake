# Functions for the scripts of this folder. The prefix is moved after the installation, into a folder with the name of
# the library. This detects files that contain the old prefix, or that confuse the new one with the repository.

set(INSTALL_PREFIX "${SCRATCH_DIR}/Installed")
set(PREFIX "${SCRATCH_DIR}/Vorn/moved prefix")

# The consumer of a static library compiles only if VORN_STATIC is defined.
if(LIBRARY_TYPE STREQUAL STATIC)
    string(APPEND CXX_FLAGS " -DCONSUMER_OF_STATIC_LIBRARY")
endif()

# run(command...): runs a command; if it fails, prints its output and stops the test.
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    message(STATUS "${output}")
    if(NOT result EQUAL 0)
        list(JOIN ARGV " " command)
        message(FATAL_ERROR "${result}: ${command}")
    endif()
endfunction()

# make_outside_dir(variable): creates an empty folder outside this repository.
function(make_outside_dir variable)
    execute_process(COMMAND mktemp -d -t vorn-package-XXXXXX OUTPUT_VARIABLE dir OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
    set(${variable} "${dir}" PARENT_SCOPE)
endfunction()
