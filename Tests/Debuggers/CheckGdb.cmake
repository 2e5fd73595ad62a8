# Runs gdb on PROGRAM with PRINTERS and the commands of Commands.gdb, and compares the printed values.

execute_process(
    COMMAND "${GDB}" -nx -batch -ex "source ${PRINTERS}" -x "${CMAKE_CURRENT_LIST_DIR}/Commands.gdb" "${PROGRAM}"
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
string(REGEX MATCHALL "\n\\$[0-9]+ = [^\n]*" values "${output}")
list(JOIN values "" values)
file(READ "${CMAKE_CURRENT_LIST_DIR}/Expected.txt" expected)
if(NOT result EQUAL 0 OR NOT "${values}\n" STREQUAL "\n${expected}")
    message(FATAL_ERROR "gdb ended with ${result} and shows:${values}\n\nexpected:\n${expected}\n\n${output}\n${errors}")
endif()
