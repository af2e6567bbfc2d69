# shellcheck shell=bash
# Which sources are ours, and how they are checked.

# over_cxx_files COMMAND...: runs a command over every C++ file of the tree that version control does not ignore.
over_cxx_files() (
    cd "$QV_ROOT" || exit
    # The tree may belong to another user, as it does in containers.
    git -c safe.directory='*' ls-files -z --cached --others --exclude-standard -- '*.h' '*.cpp' | xargs -0 "$@"
)

# Checks the rules of the tree, and before that the scripts which do such things.
check_tree() {
    python3 -B -m unittest discover -s "$QV_ROOT/scripts/lib" -p '*_test.py' &&
        python3 -B "$QV_ROOT/scripts/lib/tree.py" "$QV_ROOT"
}

check_format() {
    over_cxx_files clang-format --dry-run --Werror
}

# Checks the sources of the library and its tools as the linux preset compiles them.
check_tidy() {
    configure_preset linux && python3 -B "$QV_ROOT/scripts/lib/tidy.py" "$QV_ROOT" "$QV_ROOT/build/linux"
}

# Builds the benchmarks over the library of the linux preset, and runs none. They are no part of that preset's build, so
# who has not what they need builds and tests the library all the same.
check_benchmarks() {
    configure_preset linux -DQV_BUILD_BENCHMARKS=ON &&
        steady linux cmake --build --preset linux --target benchmarks -j "$(nproc)"
}
