# Builds the repository as a part of another project: without its tests, examples and warnings.
include("${CMAKE_CURRENT_LIST_DIR}/Common.cmake")

set(type "")
if(LIBRARY_TYPE STREQUAL STATIC)
    set(type -DBUILD_SHARED_LIBS=OFF)
endif()

make_outside_dir(outside)
file(COPY "${CMAKE_CURRENT_LIST_DIR}/Nested" "${CMAKE_CURRENT_LIST_DIR}/Consumer/Consumer.cpp" DESTINATION "${outside}")

# The library is compiled with the build type of the project that contains it, and optimised if that has none. The
# other project's own sources are compiled as it says.
foreach(build_type IN ITEMS "" Debug)
    run(${CMAKE_COMMAND} -S "${outside}/Nested" -B "${outside}/build${build_type}" -G "${GENERATOR}"
        -DCMAKE_EXPORT_COMPILE_COMMANDS=ON "-DCMAKE_BUILD_TYPE=${build_type}" -DCMAKE_CXX_FLAGS_DEBUG=-O0 "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" ${type}
        "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}" "-DVORN_REPOSITORY=${REPOSITORY}")
    file(READ "${outside}/build${build_type}/compile_commands.json" commands)
    string(REGEX MATCHALL "\"command\": [^\n]*" commands "${commands}")
    foreach(command IN LISTS commands)
        set(optimised FALSE)
        if(command MATCHES " -O3 -DNDEBUG ")
            set(optimised TRUE)
        endif()
        set(expected FALSE)
        if(build_type STREQUAL "" AND NOT command MATCHES "Consumer\\.cpp")
            set(expected TRUE)
        endif()
        if(NOT optimised STREQUAL expected)
            message(FATAL_ERROR "build type \"${build_type}\", optimised: ${optimised}\n${command}")
        endif()
    endforeach()
endforeach()

run(${CMAKE_COMMAND} --build "${outside}/buildDebug")
run("${outside}/buildDebug/Consumer")
file(REMOVE_RECURSE "${outside}")
