# Runs PROGRAM with ARGUMENTS and compares what it prints with the file EXPECTED, and its exit code with EXIT_CODE
# (default 0). Line numbers of sources are left out of the comparison.

separate_arguments(ARGUMENTS)
if(NOT DEFINED EXIT_CODE)
    set(EXIT_CODE 0)
endif()
execute_process(COMMAND "${PROGRAM}" ${ARGUMENTS} OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
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
