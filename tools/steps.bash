# shellcheck shell=bash
# Steps of a check, for scripts that source this. Each step is run also after one has failed; sum_up
# prints what came out of them, last of all how many tests and checks passed and failed.

steps_passed=0
steps_failed=0
steps_summary=()

# Runs one step and counts its tests, as far as ctest says how many; any other step counts as one.
# usage: step NAME COMMAND...
step()
{
    local name=$1 log tests_failed tests_run
    shift
    printf '\n== %s: %s\n' "$name" "$*"
    log=$(mktemp)
    local begin=$SECONDS status=0
    "$@" </dev/null 2>&1 | tee "$log" || status=$?
    read -r tests_failed tests_run < <(sed -n \
        's/^[0-9]*% tests passed, \([0-9]*\) tests failed out of \([0-9]*\)$/\1 \2/p' "$log")
    rm -f "$log"
    if [[ -z ${tests_run-} ]]; then
        tests_run=1
        tests_failed=$((status != 0))
    elif ((status != 0 && tests_failed == 0)); then
        tests_failed=1
        tests_run=$((tests_run + 1))
    fi
    steps_passed=$((steps_passed + tests_run - tests_failed))
    steps_failed=$((steps_failed + tests_failed))
    steps_summary+=("$(printf '%-28s %4d passed, %3d failed, %5d s' \
        "$name" $((tests_run - tests_failed)) "$tests_failed" $((SECONDS - begin)))")
}

# Fails if a step has. SECONDS counts from the script's begin.
sum_up()
{
    printf '\n'
    printf '%s\n' "${steps_summary[@]}"
    printf '%-28s %29d s\n' altogether "$SECONDS"
    echo "$steps_passed passed, $steps_failed failed"
    ((steps_failed == 0))
}
