# Headers of Debian packages for a cross compiler.

# vorn_link_debian_headers(): makes the folder DebianHeaders of links to the headers that Vorn and its tests use, and
# adds it to the include folders of all targets. A cross compiler must not see /usr/include itself, whose other headers
# describe the system that builds. For toolchain files.
macro(vorn_link_debian_headers)
    set(VORN_DEBIAN_HEADERS "${CMAKE_BINARY_DIR}/DebianHeaders")
    file(MAKE_DIRECTORY "${VORN_DEBIAN_HEADERS}")
    foreach(folder IN ITEMS boost fmt google sparsehash)
        file(CREATE_LINK "/usr/include/${folder}" "${VORN_DEBIAN_HEADERS}/${folder}" SYMBOLIC)
    endforeach()
    set(Boost_INCLUDE_DIR "${VORN_DEBIAN_HEADERS}") # which find_package(Boost) takes as its result
    set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES "${VORN_DEBIAN_HEADERS}")
endmacro()
