# Checks that LIBRARY exports only its interface: the namespace Vorn, and the type information and virtual tables of its
# classes. No private support, no instantiation of a standard template and no local static is exported.

execute_process(COMMAND "${NM}" -D --defined-only --format=posix "${LIBRARY}" OUTPUT_VARIABLE symbols
    COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")

set(foreign "")
set(count 0)
foreach(line IN LISTS symbols)
    math(EXPR count "${count} + 1")
    # Mangled names: _ZN4Vorn..., of a const member _ZNK4Vorn..., of type information _ZTIN4Vorn...
    if(NOT line MATCHES "^_Z(T[ISV]|Th[^_]*_)?NK?4Vorn")
        string(APPEND foreign "${line}\n")
    endif()
endforeach()
if(foreign OR count LESS 50)
    message(FATAL_ERROR "of ${count} exported symbols these are no interface:\n${foreign}")
endif()
