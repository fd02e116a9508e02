#!/usr/bin/env bash
# Sets up the machine, then builds and runs every test three times: plainly,
# under AddressSanitizer with UndefinedBehaviorSanitizer, and the concurrency
# tests under ThreadSanitizer; then replays and briefly runs every fuzz target,
# and makes a short load run. Stops at the first failure.
set -euo pipefail
cd "$(dirname "$0")/.."

# Each step starts with the time and the CPU time (user and system, of the steps done) the run has
# taken so far, to show where a slow run spends it. Read from /proc: times in a command
# substitution would report the subshell's.
ticks="$(getconf CLK_TCK)"
step() {
    local stat
    read -ra stat <"/proc/$$/stat"
    echo "== at ${SECONDS} s, $(((stat[15] + stat[16]) / ticks)) s CPU: $*"
}

step "setup"
scripts/setup.sh
scripts/check-format.sh

jobs="$(nproc)"

# The package is built from the plain build's sources with the plain build's flags but for the two
# sources that hold the installed defaults: through a compiler cache that ignores the build
# directory, it gets every other object from the plain build.
cached() {
    CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=true CCACHE_DEPEND=true \
        CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache "$@"
}

step "plain build"
cached scripts/build.sh plain
step "plain tests"
ctest --test-dir build --output-on-failure -j "$jobs"

step "package"
# The Debian package: built, then checked by lintian and systemd-analyze.
cached scripts/package.sh

step "sanitized build"
# clang under ASan+UBSan: the tests and, from the same objects, the fuzz targets.
scripts/build.sh sanitize
step "sanitized tests"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    ctest --test-dir build-sanitize --output-on-failure -j "$jobs"

step "thread build"
# Only the concurrency suites run under ThreadSanitizer, so only they are built.
scripts/build.sh thread concurrency_tests
step "thread tests"
TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 \
    ctest --test-dir build-thread --output-on-failure -j "$jobs" -L concurrency

step "fuzz replay"
# Every fuzz target: its seeds and past findings replayed, then 45 s of fuzzing, two at a time,
# from a fixed seed so that what CI finds can be found again.
scripts/fuzz.sh --replay
step "fuzz"
scripts/fuzz.sh --seconds 45 --jobs 2 --seed 1

step "load"
# A short load run, with faults, hostile clients and a shutdown under load.
scripts/load.sh --seconds 45
step "done"
