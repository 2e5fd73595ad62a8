# What the scripts of this folder share. The prefix is moved after the installation, into a folder that bears the name
# of the library, so that whatever remembers its old place, or takes its own for the repository, shows.

set(INSTALL_PREFIX "${SCRATCH_DIR}/Installed")
set(PREFIX "${SCRATCH_DIR}/Vorn/moved prefix")

# run(command...): stops the test if the command fails, and prints what it printed.
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    message(STATUS "${output}")
    if(NOT result EQUAL 0)
        list(JOIN ARGV " " command)
        message(FATAL_ERROR "${result}: ${command}")
    endif()
endfunction()

# make_outside_dir(variable): an empty folder far from this repository.
function(make_outside_dir variable)
    execute_process(COMMAND mktemp -d -t vorn-package-XXXXXX OUTPUT_VARIABLE dir OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
    set(${variable} "${dir}" PARENT_SCOPE)
endfunction()
