#!/usr/bin/env bash
# Configures and builds one flavour of the tree.
#   scripts/build.sh [plain|sanitize|thread] [target...]   (default: plain, everything)
# Each flavour has its own build directory: build, build-sanitize, build-thread.
# The sanitize flavour is built by clang, under AddressSanitizer and UndefinedBehaviorSanitizer,
# with the libFuzzer targets of fuzz/ (target "fuzzers") linked from the same objects as the
# tests, so that the libraries are compiled once for both.
set -euo pipefail
cd "$(dirname "$0")/.."

flavour="${1:-plain}"
extra=()
case "$flavour" in
    plain)    dir=build;          sanitize="" ;;
    sanitize) dir=build-sanitize; sanitize="address,undefined"
              extra=(-DKSV_BENCHMARKS=OFF -DKSV_FUZZ=ON -DCMAKE_C_COMPILER=clang
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
