# Toolchain: Debian's MinGW-w64 for Windows x86-64 with POSIX threads; programs run under wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix) # GoogleTest's project is one of C too
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
# A prefix of wine for this build alone, without wine's .NET, HTML and debugger.
set(CMAKE_CROSSCOMPILING_EMULATOR
    env "WINEPREFIX=${CMAKE_BINARY_DIR}/wine" WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml,winedbg.exe= /usr/lib/wine/wine64)

# The DLLs of the compiler, beside the programs.
foreach(library IN ITEMS libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}
        OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
    file(CREATE_LINK "${path}" "${CMAKE_BINARY_DIR}/bin/${library}" SYMBOLIC)
endforeach()

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind IN ITEMS LIBRARY INCLUDE PACKAGE)
    set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()

include("${CMAKE_CURRENT_LIST_DIR}/DebianHeaders.cmake")
vorn_link_debian_headers()
