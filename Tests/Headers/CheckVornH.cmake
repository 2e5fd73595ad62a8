# Vorn/Vorn.h includes each public header of INCLUDE_DIR and nothing else. Private headers, which public ones include, are
# in the folder Private or say in their opening comment that they are not for direct use.

file(GLOB_RECURSE headers RELATIVE "${INCLUDE_DIR}" "${INCLUDE_DIR}/*.h")
list(REMOVE_ITEM headers Vorn/Vorn.h)
list(FILTER headers EXCLUDE REGEX "/Private/")

set(public "")
foreach(header IN LISTS headers)
    file(READ "${INCLUDE_DIR}/${header}" text)
    string(FIND "${text}" "#pragma once" opening_end)
    if(opening_end LESS 0)
        message(FATAL_ERROR "${header} has no #pragma once")
    endif()
    string(SUBSTRING "${text}" 0 ${opening_end} opening)
    string(REGEX REPLACE "\n///? *" " " opening "${opening}") # a comment may break a line anywhere
    if(NOT opening MATCHES "not (for direct use|part of Vorn/Vorn.h)")
        list(APPEND public "${header}")
    endif()
endforeach()

file(STRINGS "${INCLUDE_DIR}/Vorn/Vorn.h" included REGEX "^#include ")
list(TRANSFORM included REPLACE "^#include \"(.*)\".*$" "\\1")

set(missing ${public})
list(REMOVE_ITEM missing ${included})
set(foreign ${included})
list(REMOVE_ITEM foreign ${public})
if(NOT public OR missing OR foreign)
    message(FATAL_ERROR "Vorn/Vorn.h lacks: ${missing}; includes headers that are not public: ${foreign}")
endif()
