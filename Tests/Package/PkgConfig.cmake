# Builds and runs the consumer with the flags of pkg-config for the moved package, as C++17 and as C++20.
include("${CMAKE_CURRENT_LIST_DIR}/Common.cmake")

set(ENV{PKG_CONFIG_PATH} "${PREFIX}/${LIB_DIR}/pkgconfig")
set(ENV{LD_LIBRARY_PATH} "${PREFIX}/${LIB_DIR}")

execute_process(COMMAND pkg-config --modversion vorn OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
if(NOT found STREQUAL VERSION)
    message(FATAL_ERROR "pkg-config finds version ${found} instead of ${VERSION}")
endif()
set(static "")
if(LIBRARY_TYPE STREQUAL STATIC)
    set(static --static)
endif()
execute_process(COMMAND pkg-config ${static} --cflags --libs vorn OUTPUT_VARIABLE package_flags
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(package_flags UNIX_COMMAND "${package_flags}")
separate_arguments(CXX_FLAGS UNIX_COMMAND "${CXX_FLAGS}")

make_outside_dir(outside)
file(COPY "${CMAKE_CURRENT_LIST_DIR}/Consumer/Consumer.cpp" DESTINATION "${outside}")

# vorn.pc requires no other package, so the headers of none may be needed.
execute_process(COMMAND "${CXX_COMPILER}" ${CXX_FLAGS} -M "${outside}/Consumer.cpp" ${package_flags}
    OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
if(headers MATCHES "[^ ]*/(boost|sparsehash)/[^ ]*")
    message(FATAL_ERROR "the headers include ${CMAKE_MATCH_0}")
endif()

foreach(standard IN ITEMS 17 20)
    run("${CXX_COMPILER}" ${CXX_FLAGS} -std=c++${standard} -pedantic-errors "${outside}/Consumer.cpp" ${package_flags}
        -o "${outside}/Consumer${standard}")
    run("${outside}/Consumer${standard}")
endforeach()
file(REMOVE_RECURSE "${outside}")
