# SPDX-License-Identifier: MIT
# What the scripts share; they source it with their own arguments.

# --help prints the comment at the head of the script, and does nothing else.
case ${1-} in
    -h | --help)
        sed -n '/^# SPDX/d; 2,/^[^#]/s/^# \{0,1\}//p' "$0"
        exit 0
        ;;
esac

# Kept for the end: what this machine cannot run, a line each.
not_run=build/not-run.txt

# note_not_run TEXT: says now, and in the verdict, that something was not run.
note_not_run() {
    mkdir -p build
    echo "NOT RUN: $*"
    echo "$*" >>"$not_run"
}

# show_not_run: the verdict's list of them.
show_not_run() {
    [[ ! -s $not_run ]] || {
        printf '\nNot run on this machine:\n'
        sed 's/^/  /' "$not_run"
    }
}

# with_progress LOG COMMAND...: runs it with its output in the log. At a terminal the last line of that is shown while it runs,
# elsewhere a point every half minute.
with_progress() {
    local log=$1 status=0 process waited=0 line points=
    shift
    "$@" >"$log" 2>&1 &
    process=$!
    while kill -0 "$process" 2>/dev/null; do
        sleep 1
        if [[ -t 1 ]]; then
            line=$(tail -n 1 "$log" | tr -d '\r')
            printf '\r\033[K%.100s' "$line"
        elif ((++waited % 30 == 0)); then
            printf .
            points=yes
        fi
    done
    wait "$process" || status=$?
    [[ ! -t 1 ]] || printf '\r\033[K'
    [[ -z $points ]] || echo
    return "$status"
}

configure_and_build() {
    local preset=$1 options=()
    shift
    while [[ $1 != -- ]]; do
        options+=("$1")
        shift
    done
    shift
    cmake --preset "$preset" "${options[@]}" && cmake --build --preset "$preset" --parallel "$(nproc)" --target "$@"
}

# The tests are not optimised then, and share what they include: they compile in half of the time.
# shellcheck disable=SC2034
fast=(-DKV_PRECOMPILE_HEADERS=ON -DKV_OPTIMIZE_TESTS=OFF)

# build PRESET [OPTION...] -- TARGET...: configures and builds; what went wrong is shown.
build() {
    local log=build/$1.log start=$SECONDS
    mkdir -p build
    if ! with_progress "$log" configure_and_build "$@"; then
        tail -n 60 "$log"
        echo "The build of preset $1 failed; its log is $log" >&2
        return 1
    fi
    echo "$1: built in $((SECONDS - start)) s"
}

# tests PRESET [OPTION OF CTEST...]: runs its tests; what failed is shown, else the summary. Tests that were skipped are
# kept for the verdict with their reasons.
tests() {
    local preset=$1 log=build/$1-tests.log skipped reasons
    if ! with_progress "$log" ctest --preset "$@"; then
        cat "$log"
        return 1
    fi
    sed -n '/^[0-9]*% tests passed/p; /^Total Test time/p' "$log"
    skipped=$(sed -n 's/^[[:space:]]*[0-9]* - \(.*\) (Skipped)$/\1/p' "$log" | paste -sd ' ')
    if [[ -n $skipped ]]; then
        reasons=$(sed -n '/: Skipped$/{n;p}' "build/$preset/Testing/Temporary/LastTest.log" | sort -u | paste -sd ';')
        note_not_run "$preset: $skipped (${reasons:-no reason given})"
    fi
}
