# shellcheck shell=bash
# Collects the result of each target, and prints all at the end.

QV_RESULTS=() QV_FAILURES=() QV_REASONS=()
QV_PASSED=0 QV_FAILED=0 QV_SKIPPED=0

# record TARGET PASSED FAILED SKIPPED SECONDS
record() {
    QV_RESULTS+=("$(printf '%-12s %8d %8d %8d %8d %7ds' "$1" $(($2 + $3 + $4)) "$2" "$3" "$4" "$5")")
    QV_PASSED=$((QV_PASSED + $2)) QV_FAILED=$((QV_FAILED + $3)) QV_SKIPPED=$((QV_SKIPPED + $4))
}

# record_suite TARGET REPORT STATUS SECONDS: reads the counts from a JUnit report. A run that fails without reporting a
# failed test counts as one failure.
record_suite() {
    local passed=0 failed=0 skipped=0
    [ ! -s "$2" ] || read -r passed failed skipped < <(count_tests "$2")
    [ "$3" -eq 0 ] || [ "$failed" -gt 0 ] || failed=1
    record "$1" "$passed" "$failed" "$skipped" "$4"
    [ -s "$2" ] || return 0
    mapfile -t -O "${#QV_FAILURES[@]}" QV_FAILURES < <(failures_in "$2" | sort -u | sed "s/^/$1: /")
    mapfile -t -O "${#QV_REASONS[@]}" QV_REASONS < <(reasons_in "$2" | sort | uniq -c | sort -rn | sed "s/^/$1: /")
}

# reasons_in REPORT: prints why tests were skipped, one per line.
reasons_in() {
    awk '/: Skipped$/ { getline; print } match($0, /\.\.\. skipped .*/) { print substr($0, RSTART + 12) }' "$1"
}

# failures_in REPORT: prints the names of the failed tests, and of the failed programs.
failures_in() {
    sed -nE 's/^\[  FAILED  \] ([^ ,]+\.[^ ,]+).*/\1/p
             s/^(FAIL|ERROR): (.*)/\2/p
             /<testcase .*status="fail"/s/.*<testcase name="([^"]*)".*/\1/p' "$1"
}

# count_tests REPORT: prints "PASSED FAILED SKIPPED". A program that runs many tests prints its own counts at its end;
# those are used instead of the program. A program that fails otherwise, such as in a leak check or before its end, is
# itself a failure.
count_tests() {
    awk '
        function named(what) { return match($0, what "=[0-9]+") ? substr($0, RSTART + length(what) + 1, RLENGTH) + 0 : 0 }
        /<testcase / {
            match($0, / status="[a-z]*"/)
            status = substr($0, RSTART + 9, RLENGTH - 10)
            summed = p = f = s = 0
        }
        /^\[  PASSED  \] [0-9]+ tests?\./ { summed = 1; p = $4 }
        /^\[  FAILED  \] [0-9]+ tests?, listed below:/ { f = $4 }
        /^\[  SKIPPED \] [0-9]+ tests?, listed below:/ { s = $4 }
        /^Ran [0-9]+ tests? in / { summed = 1; p = $2 }
        /^(OK|FAILED) \(/ { f = named("failures") + named("errors"); s = named("skipped"); p = p > f + s ? p - f - s : 0 }
        /<\/testcase>/ {
            if (summed) { passed += p; failed += f; skipped += s }
            if (status == "fail" && !(summed && f)) failed++
            else if (!summed && status == "run") passed++
            else if (!summed) skipped++
        }
        END { print passed + 0, failed + 0, skipped + 0 }' "$1"
}

# The failures come last: logs are often shown by their ends. The last line is meant to be parsed, too.
show_results() {
    printf '\n%-12s %8s %8s %8s %8s %8s\n' target tests passed failed skipped time
    printf '%s\n' "${QV_RESULTS[@]}"
    if [ "${#QV_REASONS[@]}" -gt 0 ]; then
        printf '\nSkipped, how many and why:\n'
        printf '  %s\n' "${QV_REASONS[@]}"
    fi
    if [ "${#QV_FAILURES[@]}" -gt 0 ]; then
        printf '\nFailed:\n'
        printf '  %s\n' "${QV_FAILURES[@]}"
    fi
    printf '\n%d passed, %d failed' "$QV_PASSED" "$QV_FAILED"
    [ "$QV_SKIPPED" -eq 0 ] || printf ', %d skipped' "$QV_SKIPPED"
    printf '\n'
}
