#!/usr/bin/env bash
# Configures and builds one flavour of the tree.
#   scripts/build.sh [plain|sanitize|thread] [target...]   (default: plain, everything)
# Each flavour has its own build directory: build, build-sanitize, build-thread.
# The sanitize flavour is built by clang, under AddressSanitizer and UndefinedBehaviorSanitizer,
# with coverage instrumentation for the libFuzzer targets of fuzz/ (target "fuzzers"): the same
# tree runs the sanitized tests and the fuzzers.
set -euo pipefail
cd "$(dirname "$0")/.."

flavour="${1:-plain}"
extra=()
case "$flavour" in
    plain)    dir=build;          sanitize="" ;;
    sanitize) dir=build-sanitize; sanitize="address,undefined"
              extra=(-DKSV_FUZZ=ON -DKSV_BENCHMARKS=OFF -DCMAKE_C_COMPILER=clang
                     -DCMAKE_CXX_COMPILER=clang++) ;;
    thread)   dir=build-thread;   sanitize="thread" ;;
    *) echo "unknown build flavour: $flavour (plain, sanitize or thread)" >&2; exit 2 ;;
esac

cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKSV_SANITIZE="$sanitize" \
    "${extra[@]}" >/dev/null
shift || true
targets=()
for t in "$@"; do targets+=(--target "$t"); done
cmake --build "$dir" -j "$(nproc)" "${targets[@]}"
