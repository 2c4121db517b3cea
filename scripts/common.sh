# What the scripts share; they source it in the root of the project.

# Kept for the end: what this machine cannot run, a line each.
not_run=build/not-run.txt

# note_not_run TEXT: says now, and in the verdict, that something was not run.
note_not_run() {
    mkdir -p build
    echo "NOT RUN: $*"
    echo "$*" >>"$not_run"
}

# build PRESET [OPTION...] -- TARGET...: configures and builds quietly; what went wrong is shown.
build() {
    local preset=$1 log=build/$1.log options=()
    shift
    while [[ $1 != -- ]]; do
        options+=("$1")
        shift
    done
    shift
    mkdir -p build
    if ! { cmake --preset "$preset" "${options[@]}" &&
        cmake --build --preset "$preset" --parallel "$(nproc)" --target "$@"; } >"$log" 2>&1; then
        tail -n 60 "$log"
        echo "The build of preset $preset failed; its log is $log" >&2
        return 1
    fi
}

# tests PRESET [OPTION OF CTEST...]: runs its tests; what failed is shown, else the summary. Tests that were skipped are
# kept for the verdict with their reasons.
tests() {
    local preset=$1 log=build/$1-tests.log status=0
    ctest --preset "$@" >"$log" 2>&1 || status=$?
    if ((status != 0)); then
        cat "$log"
        return 1
    fi
    sed -n '/^[0-9]*% tests passed/,$p' "$log"
    local skipped
    skipped=$(sed -n 's/^[[:space:]]*[0-9]* - \(.*\) (Skipped)$/\1/p' "$log" | paste -sd ' ')
    if [[ -n $skipped ]]; then
        local reasons
        reasons=$(sed -n '/: Skipped$/{n;p}' "build/$preset/Testing/Temporary/LastTest.log" | sort -u | paste -sd ';')
        note_not_run "$preset: $skipped (${reasons:-no reason given})"
    fi
}
