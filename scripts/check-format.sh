#!/usr/bin/env bash
# Fails when a C or C++ source of the tree (tracked, or new and not ignored) does not follow
# .clang-format. Sources deleted in the working tree are skipped.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files -z --cached --others --exclude-standard -- '*.c' '*.cpp' '*.h' '*.hpp' |
    while IFS= read -r -d '' file; do
        if [ -f "$file" ]; then printf '%s\0' "$file"; fi
    done |
    xargs -0 -r clang-format --dry-run -Werror
