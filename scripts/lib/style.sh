# shellcheck shell=bash
# Selects the project's sources and checks their style.

# over_cxx_files COMMAND...: runs a command over every C++ file of the tree that version control does not ignore.
over_cxx_files() (
    cd "$QV_ROOT" || exit
    # The tree may belong to another user, as in containers.
    git -c safe.directory='*' ls-files -z --cached --others --exclude-standard -- '*.h' '*.cpp' | xargs -0 "$@"
)

# Checks the rules of the tree, after testing the scripts that do so.
check_tree() {
    python3 -B -m unittest discover -s "$QV_ROOT/scripts/lib" -p '*_test.py' &&
        python3 -B "$QV_ROOT/scripts/lib/tree.py" "$QV_ROOT" &&
        python3 -B "$QV_ROOT/scripts/lib/language.py" "$QV_ROOT"
}

check_format() {
    over_cxx_files clang-format --dry-run --Werror
}

# Checks the sources of the library and its tools as the linux preset compiles them.
check_tidy() {
    configure_preset linux && python3 -B "$QV_ROOT/scripts/lib/tidy.py" "$QV_ROOT" "$QV_ROOT/build/linux"
}

# Builds the benchmarks with the library of the linux preset, without running them. They are not part of that preset's
# build, so building and testing the library does not require their dependencies.
check_benchmarks() {
    configure_preset linux -DQV_BUILD_BENCHMARKS=ON &&
        steady linux cmake --build --preset linux --target benchmarks -j "$(nproc)"
}
