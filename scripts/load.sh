#!/usr/bin/env bash
# Load runs of the CIM server over loopback (benchmarks/load/cimserver_load):
#   scripts/load.sh [--seconds N] [--clients C]      (default 600 s, 32 clients)
# 1. A server in the load driver's process: the whole mix of requests, the array library failing
#    at random in the middle third, hostile clients throughout.
# 2. A ksv-cimserver process under the same mix, sent SIGTERM halfway: it must finish and exit 0
#    within its shutdown grace.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=600
clients=32
while [ $# -gt 0 ]; do
    case "$1" in
        --seconds) seconds="$2"; shift 2 ;;
        --clients) clients="$2"; shift 2 ;;
        *) echo "unknown option: $1" >&2; exit 2 ;;
    esac
done

scripts/build.sh plain cimserver_load ksv-cimserver >/dev/null
driver=build/benchmarks/load/cimserver_load

echo "== in-process server: faults of the array library and hostile clients"
"$driver" --clients "$clients" --seconds "$seconds" --faults --hostile

echo "== ksv-cimserver process stopped by SIGTERM under load"
ready="$(mktemp)"
trap 'rm -f "$ready"' EXIT
build/src/cimserver/ksv-cimserver --address 127.0.0.1 --port 0 --socket "" \
    --array-model examples/arrays/demo.json --max-connections-per-address $((clients + 8)) \
    --log-level 1 >"$ready" &
server=$!
for _ in $(seq 100); do grep -q "ready on" "$ready" && break; sleep 0.1; done
url="$(grep -o 'http://[0-9.:]*' "$ready")/cimom"
# Long enough that the signal comes mid-run.
stop_after=$(( seconds < 20 ? 5 : 10 ))
"$driver" --url "$url" --server-pid "$server" --clients "$clients" \
    --seconds $((stop_after * 4)) --until-server-stops &
driver_pid=$!
sleep "$stop_after"
signalled=$(date +%s)
kill -TERM "$server"
status=0
wait "$server" || status=$?
took=$(( $(date +%s) - signalled ))
wait "$driver_pid" || { echo "the load driver failed while the server stopped" >&2; exit 1; }
echo "server exit status $status, $took s after SIGTERM"
[ "$status" -eq 0 ] && [ "$took" -le 15 ] || { echo "shutdown under load FAILED" >&2; exit 1; }
echo "shutdown under load PASSED"
