# Headers, the library, the CMake package and the pkg-config file.

include(CMakePackageConfigHelpers)

install(TARGETS Vorn EXPORT VornTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

set(VORN_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Vorn)
install(EXPORT VornTargets NAMESPACE Vorn:: DESTINATION ${VORN_PACKAGE_DIR} COMPONENT development)
configure_package_config_file(CMake/VornConfig.cmake.in VornConfig.cmake INSTALL_DESTINATION ${VORN_PACKAGE_DIR})
write_basic_package_version_file(VornConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/VornConfig.cmake" "${CMAKE_CURRENT_BINARY_DIR}/VornConfigVersion.cmake"
    DESTINATION ${VORN_PACKAGE_DIR} COMPONENT development)

# pkg-config files refer to the installation by relative paths, so that the prefix can be moved.
foreach(folder LIBDIR INCLUDEDIR)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${folder}}")
        message(FATAL_ERROR "CMAKE_INSTALL_${folder} must be relative to the prefix")
    endif()
endforeach()
file(RELATIVE_PATH VORN_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" VORN_PC_TO_PREFIX "${VORN_PC_TO_PREFIX}")
set(VORN_PC_DEFINITIONS "")
if(VORN_LIBRARY_TYPE STREQUAL STATIC)
    set(VORN_PC_DEFINITIONS " -DVORN_STATIC")
endif()
if(CMAKE_CXX_FLAGS MATCHES "-fshort-wchar")
    string(APPEND VORN_PC_DEFINITIONS " -DVORN_SHORT_WCHAR")
endif()
configure_file(CMake/vorn.pc.in vorn.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/vorn.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)

# gdb looks for the printers of a library in the folder of its full path, below share/gdb/auto-load in /usr; elsewhere,
# a user sources the copy in share/vorn. The prefix is known when the files are installed.
if(UNIX AND VORN_LIBRARY_TYPE STREQUAL SHARED)
    set(VORN_PRINTERS "${PROJECT_SOURCE_DIR}/Debuggers/Gdb/VornPrinters.py")
    install(CODE "
        set(prefix \"\${CMAKE_INSTALL_PREFIX}\")
        cmake_path(ABSOLUTE_PATH prefix)
        file(INSTALL \"${VORN_PRINTERS}\"
            DESTINATION \"\${prefix}/${CMAKE_INSTALL_DATADIR}/gdb/auto-load\${prefix}/${CMAKE_INSTALL_LIBDIR}\"
            RENAME \"$<TARGET_FILE_NAME:Vorn>-gdb.py\")" COMPONENT development)
    install(FILES "${VORN_PRINTERS}" DESTINATION ${CMAKE_INSTALL_DATADIR}/vorn COMPONENT development)
endif()

# Visual Studio reads the views of a library that a project links.
install(FILES Debuggers/Vorn.natvis DESTINATION ${CMAKE_INSTALL_DATADIR}/vorn COMPONENT development)
target_sources(Vorn INTERFACE "$<$<CXX_COMPILER_ID:MSVC>:$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/Debuggers/Vorn.natvis>\
$<INSTALL_INTERFACE:${CMAKE_INSTALL_DATADIR}/vorn/Vorn.natvis>>")

if(VORN_BUILD_PACKAGES)
    foreach(component IN ITEMS runtime development)
        set(package "libvorn${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")
        if(component STREQUAL development)
            set(package libvorn-dev)
        endif()
        install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component} RENAME copyright)
    endforeach()
    include(VornPackage)
endif()
