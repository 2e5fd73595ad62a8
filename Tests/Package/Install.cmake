# Installs the build, checks the installed files, and moves the prefix.
include("${CMAKE_CURRENT_LIST_DIR}/Common.cmake")

file(REMOVE_RECURSE "${SCRATCH_DIR}")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${INSTALL_PREFIX}")

file(GLOB_RECURSE headers RELATIVE "${REPOSITORY}/Include" "${REPOSITORY}/Include/*")
file(GLOB_RECURSE installed RELATIVE "${INSTALL_PREFIX}/${INCLUDE_DIR}" "${INSTALL_PREFIX}/${INCLUDE_DIR}/*")
if(NOT headers STREQUAL installed)
    message(FATAL_ERROR "headers: ${headers}\ninstalled: ${installed}")
endif()

if(LIBRARY_TYPE STREQUAL STATIC)
    file(GLOB libraries RELATIVE "${INSTALL_PREFIX}/${LIB_DIR}" "${INSTALL_PREFIX}/${LIB_DIR}/libVorn*")
    if(NOT libraries STREQUAL "libVorn.a")
        message(FATAL_ERROR "libraries: ${libraries}")
    endif()
else()
    string(REGEX MATCH "^[0-9]+\\.[0-9]+" soversion "${VERSION}")
    file(READ_SYMLINK "${INSTALL_PREFIX}/${LIB_DIR}/libVorn.so" link)
    file(READ_SYMLINK "${INSTALL_PREFIX}/${LIB_DIR}/libVorn.so.${soversion}" soname_link)
    if(NOT link STREQUAL "libVorn.so.${soversion}" OR NOT soname_link STREQUAL "libVorn.so.${VERSION}")
        message(FATAL_ERROR "links: libVorn.so -> ${link} -> ${soname_link}")
    endif()

    execute_process(COMMAND objdump -p "${INSTALL_PREFIX}/${LIB_DIR}/libVorn.so.${VERSION}" OUTPUT_VARIABLE dynamic
        COMMAND_ERROR_IS_FATAL ANY)
    if(NOT dynamic MATCHES "SONAME +libVorn\\.so\\.${soversion}\n")
        message(FATAL_ERROR "no soname libVorn.so.${soversion}:\n${dynamic}")
    endif()
    if(dynamic MATCHES "R(UN)?PATH[^\n]*")
        message(FATAL_ERROR "the library searches folders of the machine that built it: ${CMAKE_MATCH_0}")
    endif()
endif()

get_filename_component(moved_to "${PREFIX}" DIRECTORY)
file(MAKE_DIRECTORY "${moved_to}")
file(RENAME "${INSTALL_PREFIX}" "${PREFIX}")
