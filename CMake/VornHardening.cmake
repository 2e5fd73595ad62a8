# Hardening of optimised builds on ELF systems: what an attacker could use after an error in memory is read-only, checked
# or refused. Sanitizers find the errors themselves, and do not bear these flags.

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

# vorn_harden(objects library): hardens the object library and the library that is linked from it, as far as the compiler
# and the linker can.
function(vorn_harden objects library)
    if(NOT UNIX OR APPLE OR CMAKE_CXX_FLAGS MATCHES "-fsanitize=")
        return()
    endif()
    set(optimised "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
    if(VORN_OPTIMISATION)
        set(optimised 1)
    endif()

    # Landing pads: a diverted jump that does not meet one is refused (x86 only). Canaries on the stack are left out: they
    # make short operations up to 15 per cent slower.
    check_cxx_compiler_flag(-fcf-protection VORN_HAS_CET)
    if(VORN_HAS_CET)
        target_compile_options(${objects} PRIVATE "$<${optimised}:-fcf-protection>")
    endif()
    # Checked forms of memcpy and its kin, which glibc has for optimised code.
    target_compile_options(${objects} PRIVATE "$<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")

    # All addresses of functions are resolved at the start and read-only from then on; no stack holds code.
    check_linker_flag(CXX "LINKER:-z,relro,-z,now,-z,noexecstack" VORN_HAS_RELRO)
    if(VORN_HAS_RELRO)
        target_link_options(${library} PRIVATE "LINKER:-z,relro,-z,now,-z,noexecstack")
    endif()
endfunction()
