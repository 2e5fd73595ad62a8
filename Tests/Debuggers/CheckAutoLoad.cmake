# Installs the library of BUILD in PREFIX, runs PROGRAM with it in gdb, and checks that gdb has loaded the printers.

file(REMOVE_RECURSE "${PREFIX}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${PREFIX}" OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env "LD_LIBRARY_PATH=${PREFIX}/${LIBDIR}" "${GDB}" -nx -batch
        -iex "set auto-load safe-path ${PREFIX}" -iex "set auto-load scripts-directory ${PREFIX}/share/gdb/auto-load"
        -ex "set debuginfod enabled off" -ex "break stopHere" -ex run -ex up -ex "print utf8" "${PROGRAM}"
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR NOT output MATCHES "\\$1 = \"K..?ln \\\\\"am")
    message(FATAL_ERROR "gdb ended with ${result} and shows:\n${output}\n${errors}")
endif()
