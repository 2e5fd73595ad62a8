# Builds the repository as a part of another project: without its tests, examples and warnings.
include("${CMAKE_CURRENT_LIST_DIR}/Common.cmake")

make_outside_dir(outside)
file(COPY "${CMAKE_CURRENT_LIST_DIR}/Nested" "${CMAKE_CURRENT_LIST_DIR}/Consumer/Consumer.cpp" DESTINATION "${outside}")
set(type "")
if(LIBRARY_TYPE STREQUAL STATIC)
    set(type -DBUILD_SHARED_LIBS=OFF)
endif()
run(${CMAKE_COMMAND} -S "${outside}/Nested" -B "${outside}/build" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}" "-DCMAKE_CXX_FLAGS=-O0 ${CXX_FLAGS}" ${type}
    "-DVORN_REPOSITORY=${REPOSITORY}")
run(${CMAKE_COMMAND} --build "${outside}/build")
run("${outside}/build/Consumer")
file(REMOVE_RECURSE "${outside}")
