#!/usr/bin/env bash
# Plants one fault in a source file, builds the given targets, runs the tests that should
# catch it, and puts the file back. Shows which tests failed, so that a test can be removed
# only once another one is seen to catch the fault it guards.
#   scripts/mutate.sh <file> <sed expression> <ctest selection> [target...]
# The selection is handed to ctest as it is, e.g. "-L providers" or "-R Identity".
# Exit status: 0 when some test failed (the fault was caught), 1 when every test passed.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -lt 3 ]; then
    echo "usage: scripts/mutate.sh <file> <sed expression> <ctest selection> [target...]" >&2
    exit 2
fi
file="$1" expression="$2" selection="$3"
shift 3

backup="$(mktemp)"
cp -p "$file" "$backup"
# Put back with a new time stamp, so that the next build replaces what the mutant built.
trap 'cp "$backup" "$file"; rm -f "$backup"' EXIT

sed -i -e "$expression" "$file"
if cmp -s "$file" "$backup"; then
    echo "the expression changed nothing in $file" >&2
    exit 2
fi
diff "$backup" "$file" || true

scripts/build.sh plain "$@" >/dev/null
# shellcheck disable=SC2086 # the selection is several ctest arguments
if ctest --test-dir build $selection --timeout 120 -j "$(nproc)" >build/ctest-mutant.log 2>&1; then
    echo "SURVIVED: no test of '$selection' failed"
    exit 1
fi
echo "CAUGHT by:"
grep -E '^\s+[0-9]+ - ' build/ctest-mutant.log || tail -5 build/ctest-mutant.log
