# Settings that every target of this repository shares.

# vorn_configure_target(target): language level, warnings and reproducible arithmetic and file texts.
function(vorn_configure_target target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 20
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_options(${target} PRIVATE
        # A fused multiply-add rounds once where the library promises two roundings.
        -ffp-contract=off
        # Reports name a source by its path from here, whatever the build directory is.
        "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
    if(PROJECT_IS_TOP_LEVEL)
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
        if(VORN_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE -Werror)
        endif()
    endif()
endfunction()
