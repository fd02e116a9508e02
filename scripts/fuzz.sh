#!/usr/bin/env bash
# Runs the libFuzzer targets of fuzz/ (built by scripts/build.sh sanitize fuzzers).
#   scripts/fuzz.sh [--seconds N] [--jobs J] [target...]   fuzz each target for N seconds (default
#                                                          60), J at a time (default 1), niced
#   scripts/fuzz.sh --replay [target...]                   run the seeds and regression inputs once
#   --seed S fixes libFuzzer's random seed, so that a run from an empty corpus can be repeated.
# Targets default to all. New corpus entries go to build-sanitize/corpus/<target>, kept between
# runs; an input that fails is written to build-sanitize/findings/<target>/ and ends the run with
# an error: once fixed, copy it into fuzz/regressions/<target>/.
set -euo pipefail
cd "$(dirname "$0")/.."

# The fuzz targets are built in the sanitized tree, beside the tests they share objects with.
tree=build-sanitize

seconds=60
jobs=1
replay=false
seed=0
targets=()
while [ $# -gt 0 ]; do
    case "$1" in
        --seconds) seconds="$2"; shift 2 ;;
        --jobs)    jobs="$2"; shift 2 ;;
        --replay)  replay=true; shift ;;
        --seed)    seed="$2"; shift 2 ;;
        -*) echo "unknown option: $1" >&2; exit 2 ;;
        *) targets+=("$1"); shift ;;
    esac
done
if [ "${#targets[@]}" -eq 0 ]; then
    for dir in fuzz/corpus/*/; do targets+=("$(basename "$dir")"); done
fi

binary() {
    local path="$tree/fuzz/$1"
    [ -x "$path" ] || { echo "$path is not built: scripts/build.sh sanitize fuzzers" >&2; exit 2; }
    echo "$path"
}

replayOne() {
    local target="$1"
    mkdir -p "fuzz/regressions/$target"
    "$(binary "$target")" -runs=0 "fuzz/corpus/$target" "fuzz/regressions/$target" \
        >"$tree/$target.replay.log" 2>&1 ||
        { tail -n 40 "$tree/$target.replay.log"; echo "$target: replay failed" >&2; return 1; }
    echo "$target: $(grep -Eo 'seed corpus: files: [0-9]+' "$tree/$target.replay.log" |
        awk '{print $4}') inputs replayed"
}

fuzzOne() {
    local target="$1" log="$tree/$target.fuzz.log"
    mkdir -p "$tree/corpus/$target" "$tree/findings/$target" "fuzz/regressions/$target"
    local status=0
    # AddressSanitizer holds freed memory back (256 MB by default) to catch its use, which would
    # take most of the memory limit; a smaller hold leaves the limit to catch real growth.
    ASAN_OPTIONS="quarantine_size_mb=64${ASAN_OPTIONS:+:$ASAN_OPTIONS}" \
    nice "$(binary "$target")" -max_total_time="$seconds" -seed="$seed" -timeout=90 -rss_limit_mb=1024 \
        -max_len=16384 -dict="fuzz/dict/$target.dict" -print_final_stats=1 \
        -artifact_prefix="$tree/findings/$target/" \
        "$tree/corpus/$target" "fuzz/corpus/$target" "fuzz/regressions/$target" \
        >"$log" 2>&1 || status=$?
    if [ "$status" -ne 0 ]; then
        tail -n 60 "$log"
        echo "$target: failed; the input is in $tree/findings/$target/" >&2
        return 1
    fi
    echo "$target: $(grep -E '^stat::number_of_executed_units' "$log" | awk '{print $2}') runs," \
        "$(grep -E '^stat::peak_rss_mb' "$log" | awk '{print $2}') MB peak, coverage" \
        "$(grep -Eo 'cov: [0-9]+' "$log" | tail -n 1 | cut -d' ' -f2)"
}

failed=0
if $replay; then
    for target in "${targets[@]}"; do replayOne "$target" || failed=1; done
    exit "$failed"
fi

running=0
for target in "${targets[@]}"; do
    if [ "$running" -ge "$jobs" ]; then
        wait -n || failed=1
        running=$((running - 1))
    fi
    fuzzOne "$target" &
    running=$((running + 1))
done
while [ "$running" -gt 0 ]; do
    wait -n || failed=1
    running=$((running - 1))
done
exit "$failed"
