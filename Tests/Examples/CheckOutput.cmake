# Runs PROGRAM with ARGUMENTS, through EMULATOR if there is one, and compares its output with the file EXPECTED, and its
# exit code with EXIT_CODE (default 0). Line numbers of sources are not compared. With WRITES, the program also writes a
# file of this name to the working directory, which is compared with the file of the same name in the folder of EXPECTED.
# With CRLF, the program writes lines as Windows does.

separate_arguments(ARGUMENTS)
if(NOT DEFINED EXIT_CODE)
    set(EXIT_CODE 0)
endif()
if(DEFINED WRITES)
    file(REMOVE "${WRITES}") # a file of an earlier run must not pass the test
endif()
execute_process(COMMAND ${EMULATOR} "${PROGRAM}" ${ARGUMENTS}
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
if(CRLF)
    string(REPLACE "\r\n" "\n" output "${output}")
    string(REPLACE "\r\n" "\n" errors "${errors}")
    set(ignored_in_diff --strip-trailing-cr)
endif()
if(NOT result EQUAL EXIT_CODE)
    message(FATAL_ERROR "exit code ${result}, expected ${EXIT_CODE}\n${output}\n${errors}")
endif()
string(REGEX REPLACE "(Source/Vorn/[A-Za-z0-9]+):[0-9]+:" "\\1:LINE:" output "${output}${errors}")
file(READ "${EXPECTED}" expected)
if(NOT output STREQUAL expected)
    file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/output.txt" "${output}")
    execute_process(COMMAND diff -u "${EXPECTED}" "${CMAKE_CURRENT_BINARY_DIR}/output.txt" OUTPUT_VARIABLE difference)
    message(FATAL_ERROR "the output is not as expected:\n${difference}")
endif()
if(DEFINED WRITES)
    get_filename_component(folder "${EXPECTED}" DIRECTORY)
    execute_process(COMMAND diff -u ${ignored_in_diff} "${folder}/${WRITES}" "${WRITES}" OUTPUT_VARIABLE difference
        ERROR_VARIABLE errors RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${WRITES} is not as expected:\n${difference}${errors}")
    endif()
endif()
