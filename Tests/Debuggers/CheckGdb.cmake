# Runs gdb on PROGRAM with PRINTERS and the commands of Commands.gdb, and compares the printed values. Addresses are
# compared as 0x, and the names that compilers give to lambdas as lambda.

execute_process(
    COMMAND "${GDB}" -nx -batch -ex "source ${PRINTERS}" -x "${CMAKE_CURRENT_LIST_DIR}/Commands.gdb" "${PROGRAM}"
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
string(REGEX MATCHALL "\n\\$[0-9]+ = [^\n]*" values "${output}")
string(REPLACE "\n" "" values "${values}")
list(JOIN values "\n" values)
string(REGEX REPLACE "0x[0-9a-f]+" "0x" values "${values}")
string(REGEX REPLACE "{lambda\\(int\\)#[0-9]+}|\\$_[0-9]+" "lambda" values "${values}")
file(READ "${CMAKE_CURRENT_LIST_DIR}/Expected.txt" expected)
if(NOT result EQUAL 0 OR NOT "${values}\n" STREQUAL "${expected}")
    message(FATAL_ERROR "gdb ended with ${result} and shows:\n${values}\n\nexpected:\n${expected}\n\n${output}\n${errors}")
endif()
if("${output}${errors}" MATCHES "Python Exception|Traceback")
    message(FATAL_ERROR "a printer has raised an exception:\n${output}\n${errors}")
endif()
