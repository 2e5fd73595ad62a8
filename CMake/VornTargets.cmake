# The settings of all targets of this repository.

# Inside a project that has chosen no build type, this project's targets are optimised all the same. The variables of
# the other project stay as they are.
set(VORN_OPTIMISATION "")
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    separate_arguments(VORN_OPTIMISATION UNIX_COMMAND "${CMAKE_CXX_FLAGS_RELEASE}")
endif()

# vorn_configure_target(target): sets language level, warnings, and the flags for reproducible arithmetic and file texts.
# The repository calls operations with surprising names on purpose; their warnings are for users.
function(vorn_configure_target target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 20
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_definitions(${target} PRIVATE VORN_NO_SURPRISE_WARNINGS)
    target_compile_options(${target} PRIVATE
        ${VORN_OPTIMISATION}
        # A fused multiply-add rounds once; the library specifies two roundings.
        -ffp-contract=off
        # Reports contain the path of a source from the root of the repository, for every build directory.
        "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
    if(PROJECT_IS_TOP_LEVEL)
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
        if(VORN_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE -Werror)
        endif()
    endif()
endfunction()
