#!/usr/bin/env bash
# Fails when a tracked C or C++ source does not follow .clang-format.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files -z -- '*.c' '*.cpp' '*.h' '*.hpp' | xargs -0 -r clang-format --dry-run -Werror
