#!/usr/bin/env bash
# Sets up the machine, then builds and runs every test three times: plainly,
# under AddressSanitizer with UndefinedBehaviorSanitizer, and the concurrency
# tests under ThreadSanitizer. Stops at the first failure.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
scripts/check-format.sh

jobs="$(nproc)"

scripts/build.sh plain
ctest --test-dir build --output-on-failure -j "$jobs"

scripts/build.sh sanitize
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    ctest --test-dir build-sanitize --output-on-failure -j "$jobs"

# Only the concurrency suites run under ThreadSanitizer, so only they are built.
scripts/build.sh thread concurrency_tests
TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 \
    ctest --test-dir build-thread --output-on-failure -j "$jobs" -L concurrency
