# A wrong format of each function that formats like printf is a warning, and a right one is none.
# COMPILER, INCLUDE_DIR and WORK_DIR are given.

cmake_minimum_required(VERSION 3.25)

# check_format(code right wrong): `code` compiles with the format `right` in place of FORMAT, and warns with `wrong`.
function(check_format code right wrong)
    foreach(kind IN ITEMS right wrong)
        string(REPLACE "FORMAT" "\"${${kind}}\"" source "${code}")
        file(WRITE "${WORK_DIR}/Format.cpp"
            "#include \"Vorn/Exception.h\"\nconst Vorn::ExceptionString t;\n${source}\n")
        execute_process(COMMAND "${COMPILER}" -std=c++17 -Wall -Werror=format -fsyntax-only "-I${INCLUDE_DIR}" Format.cpp
            WORKING_DIRECTORY "${WORK_DIR}" RESULT_VARIABLE result ERROR_VARIABLE errors)
        if(kind STREQUAL "right" AND NOT result EQUAL 0)
            message(FATAL_ERROR "refused: ${source}\n${errors}")
        elseif(kind STREQUAL "wrong" AND NOT errors MATCHES "-W(error=)?format")
            message(FATAL_ERROR "compiled without a warning: ${source}\n${errors}")
        endif()
    endforeach()
endfunction()

set(arguments "t, t, t, 1, t, FORMAT, n, s")
set(function "void f(int n, const char* s)")
check_format("${function} { Vorn::throwAssert(${arguments}); }" "%d %s" "%s %d")
check_format("${function} { Vorn::throwInternalAssert(${arguments}); }" "%d %s" "%s %d")
check_format("${function} { Vorn::Exception<1> e(t, ${arguments}); }" "%d %s" "%s %d")
check_format("${function} { Vorn::Exception<2> e(t, ${arguments}); }" "%d %s" "%s %d")
# The arguments of a list are unknown, so only the format itself is checked.
check_format("struct E : Vorn::AllExceptions { void f(std::va_list list) { printMessage(t, FORMAT, list); } };" "%d" "%")
