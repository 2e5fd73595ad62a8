# Builds and runs the consumer with the moved CMake package, as C++17 and as C++20.
include("${CMAKE_CURRENT_LIST_DIR}/Common.cmake")

make_outside_dir(outside)
file(COPY "${CMAKE_CURRENT_LIST_DIR}/Consumer" DESTINATION "${outside}")
run(${CMAKE_COMMAND} -S "${outside}/Consumer" -B "${outside}/build" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}" "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}"
    "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DVORN_VERSION=${VERSION}")
run(${CMAKE_COMMAND} --build "${outside}/build")
run("${outside}/build/Consumer17")
run("${outside}/build/Consumer20")
file(REMOVE_RECURSE "${outside}")
