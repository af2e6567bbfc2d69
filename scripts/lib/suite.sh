# shellcheck shell=bash
# Runs one target of the test suite and records its result. A target that cannot be prepared counts as one failure.

run_target() {
    case $1 in
        style) run_style ;;
        benchmarks) run_benchmarks ;;
        browser) run_browser ;;
        install) run_suite install linux -L '^install$' ;;
        machines) run_suite machines linux -L '^machines$' ;;
        *) run_suite "$1" "$1" -LE '^(browser|install|machines)$' ;;
    esac
}

# run_suite TARGET PRESET [ARGUMENT of ctest...]
run_suite() {
    local target=$1 preset=$2 status=0 started=$SECONDS
    local report=$QV_ROOT/build/$preset/results-$target.xml
    shift 2
    rm -f "$report"
    if ! prepare "$target" "$preset"; then
        record "$target" 0 1 0 $((SECONDS - started))
        return
    fi
    # The counts are parsed from the programs' output, which must not be truncated.
    steady "$preset" ctest --preset "$preset" --output-junit "$report" --test-output-size-passed 100000000 \
        --test-output-size-failed 100000000 "$@" || status=$?
    record_suite "$target" "$report" "$status" $((SECONDS - started))
}

# prepare TARGET PRESET: a subshell, so that a target that cannot continue does not stop the others.
prepare() (
    case $1 in
        linux) need build tests && need_locales ;;
        asan | tsan) need build tests sanitizers && need_locales ;;
        windows-x64) need cross tests "$1" && need_locales && wine_prepare x64 "$QV_ROOT/build/$2" ;;
        windows-x86) need cross tests "$1" && need_locales && need_wine32 && wine_prepare x86 "$QV_ROOT/build/$2" ;;
        browser) need build tests browser && need_command axe npm && need_locales ;;
        machines) need build tests machines && need_locales ;;
        install) prepare_installable linux windows-x86 windows-x64 && return ;;
    esac && build_preset "$2"
)

# prepare_installable PRESET...: builds the installed and packaged parts without the test suite.
prepare_installable() {
    local preset
    need install
    for preset in "$@"; do
        need_for_building "$preset"
        case $preset in
            windows-x64) wine_prepare x64 "$QV_ROOT/build/$preset" ;;
            windows-x86) need_wine32 && wine_prepare x86 "$QV_ROOT/build/$preset" ;;
        esac && build_preset "$preset" --target qvcommon qv || return
    done
}

# A no-op if there are no browser tests.
run_browser() {
    local started=$SECONDS
    if ! prepare linux linux; then
        record browser 0 1 0 $((SECONDS - started))
    elif has_browser_tests; then
        run_suite browser linux -L '^browser$'
    fi
}

has_browser_tests() {
    ! (cd "$QV_ROOT" && ctest --preset linux -N -L '^browser$' --no-tests=ignore) | grep -q '^Total Tests: 0'
}

# Four checks: the rules of the tree, the formatting of the sources, static analysis, and whether the documentation
# builds.
run_style() {
    local check passed=0 failed=0 started=$SECONDS
    if (need build tests format tidy docs); then
        for check in check_tree check_format check_tidy make_docs; do
            if "$check"; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
        done
    else
        failed=4
    fi
    record style "$passed" "$failed" 0 $((SECONDS - started))
}

# Builds the benchmarks with all their peers, without running them.
run_benchmarks() {
    local passed=0 started=$SECONDS
    if (need build tests bench) && check_benchmarks; then passed=1; fi
    record benchmarks "$passed" $((1 - passed)) 0 $((SECONDS - started))
}
