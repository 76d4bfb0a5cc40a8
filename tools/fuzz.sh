#!/usr/bin/env bash
# Runs the built fuzzers, as many at once as there are cores: tools/fuzz.sh [SECONDS] [UNIT...]
# New inputs for the corpus go to build/fuzz/corpus/UNIT, faults to build/fuzz/findings. Exits
# non-zero if a fault was found.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds=60
if [[ ${1:-} =~ ^[0-9]+$ ]]; then
    seconds=$1
    shift
fi
units=("$@")
if [[ ${#units[@]} -eq 0 ]]; then
    for program in build/fuzz/fuzz/*_fuzzer; do
        units+=("$(basename "$program" _fuzzer)")
    done
fi
for unit in "${units[@]}"; do
    if [[ ! -x build/fuzz/fuzz/${unit}_fuzzer ]]; then
        echo "fuzz: no fuzzer named \"$unit\"; see fuzz/*_fuzzer.cpp" >&2
        exit 2
    fi
done

# Fuzzes one unit; its log stays beside its corpus.
fuzz_unit() {
    local unit=$1 seconds=$2
    local corpus=build/fuzz/corpus/$unit log=build/fuzz/$unit.log
    local seeds=()
    mkdir -p "$corpus" build/fuzz/findings
    [[ -d fuzz/corpus/$unit ]] && seeds=("fuzz/corpus/$unit")
    # A small input that makes us allocate half a gigabyte at once is a fault of its own. A search
    # for leaks stops the program for longer than a run lasts, so only the final corpus gets one.
    local program=(
        "build/fuzz/fuzz/${unit}_fuzzer" -timeout=10 -rss_limit_mb=2560 -malloc_limit_mb=512
        -artifact_prefix="build/fuzz/findings/$unit-" "$corpus" "${seeds[@]}"
    )
    if "${program[@]}" -max_total_time="$seconds" -detect_leaks=0 -print_final_stats=1 \
        >"$log" 2>&1 && "${program[@]}" -runs=0 >>"$log" 2>&1; then
        echo "fuzz: $unit: nothing found in $seconds s," \
            "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log") runs"
    else
        echo "fuzz: $unit: FOUND a fault, see $log; its input:"
        ls -t build/fuzz/findings/"$unit"-* 2>/dev/null | head -1
        grep -m 5 -E 'ERROR:|SUMMARY:|runtime error:' "$log"
        return 1
    fi
}
export -f fuzz_unit

printf '%s\n' "${units[@]}" |
    xargs -P "$(nproc)" -I UNIT bash -c 'fuzz_unit "$1" "$2"' fuzz UNIT "$seconds"
