# COMPILER with FLAGS warns of nothing in the headers of INCLUDE_DIR and in SOURCE, which uses them. FILE is written and
# compiled. The headers of formats, which need packages, are those of CheckFormat.cmake.

file(GLOB_RECURSE headers RELATIVE "${INCLUDE_DIR}" "${INCLUDE_DIR}/*.h")
set(text "")
foreach(header IN LISTS headers)
    string(APPEND text "#include \"${header}\"\n")
endforeach()
string(REGEX REPLACE "#include \"Vorn/Text/Format(Fmt|Std).h\"\n" "" text "${text}")
string(APPEND text "#include \"${SOURCE}\"\n")
file(WRITE "${FILE}" "${text}")

set(ENV{LC_ALL} C)
execute_process(COMMAND "${COMPILER}" ${FLAGS} -Werror -DVORN_NO_SURPRISE_WARNINGS -fsyntax-only "${FILE}"
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${COMPILER} ${FLAGS}:\n${output}")
endif()
