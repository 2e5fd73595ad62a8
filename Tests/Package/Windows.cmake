# Installs a build for Windows, and builds and runs the consumer with its CMake package. TOOLCHAIN and EMULATOR are given
# beside what Common.cmake needs. The toolchain makes the folder bin, with the DLLs of the compiler.
include("${CMAKE_CURRENT_LIST_DIR}/Common.cmake")

file(REMOVE_RECURSE "${SCRATCH_DIR}")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${INSTALL_PREFIX}")
make_outside_dir(outside)
file(COPY "${CMAKE_CURRENT_LIST_DIR}/Consumer" DESTINATION "${outside}")
run(${CMAKE_COMMAND} -S "${outside}/Consumer" -B "${outside}/build" -G "${GENERATOR}" --toolchain "${TOOLCHAIN}"
    "-DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${outside}/build/bin"
    "-DVorn_DIR=${INSTALL_PREFIX}/${LIB_DIR}/cmake/Vorn" "-DVORN_VERSION=${VERSION}")
run(${CMAKE_COMMAND} --build "${outside}/build")
file(COPY "${INSTALL_PREFIX}/bin/libVorn.dll" DESTINATION "${outside}/build/bin")
run(${EMULATOR} "${outside}/build/bin/Consumer17.exe")
run(${EMULATOR} "${outside}/build/bin/Consumer20.exe")
file(REMOVE_RECURSE "${outside}")
