# shellcheck shell=bash
# Configures and builds presets.

# build_preset PRESET [ARGUMENT of cmake --build...]
build_preset() {
    local preset=$1
    shift
    configure_preset "$preset" && steady "$preset" cmake --build --preset "$preset" -j "$(nproc)" "$@"
}

# Prints the location and size of the compiler cache, which outlives the build folders.
print_cache_size() {
    local folder
    if command -v ccache > /dev/null; then
        folder=$(ccache --get-config cache_dir)
        say "Compiled files are kept in $folder: $(du -sh "$folder" 2> /dev/null | cut -f 1), at most $(ccache --get-config max_size)"
    fi
}

# configure_preset PRESET [ARGUMENT of cmake...]
configure_preset() (
    if command -v ccache > /dev/null; then
        export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
    fi
    cd "$QV_ROOT" && cmake --preset "$@" --log-level=WARNING > /dev/null
)

# steady PRESET COMMAND...: runs a command in the root of the tree; for a sanitized preset without address space
# randomization, since older sanitizers abort at start-up on kernels with many random bits.
steady() (
    cd "$QV_ROOT" || exit
    local preset=$1
    shift
    case $preset in
        asan | tsan | fuzz) at_fixed_addresses "$@" ;;
        *) exec "$@" ;;
    esac
)
