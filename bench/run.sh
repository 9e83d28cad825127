#!/usr/bin/env bash
# Measures on the simulated notebook (x64), without its log; prints one line per ratio. The exit code is 1 when a limit
# is missed. Other work on the machine widens the spread: measure on a quiet one.
#
#   bench/run.sh [driver] [wifi] [wmi]    all of them without a word

source "$(dirname "${BASH_SOURCE[0]}")/../tools/lib.sh"
source "$ROOT/tools/notebook.sh"

# A prefix of its own: its WMI is Wine's, without the simulated firmware in front.
VEXA_PREFIX=${VEXA_PREFIX:-$ROOT/build/prefix}-bench
use_machine x64
"$ROOT/tools/setup.sh" x64 native
build_preset native vexa-scenario
build_preset x64 vexa_bench vexa-saio
start_prefix
install_scenario "$ROOT/bench/scenario.json"
install_product "$ROOT/build/x64/bench/vexa_bench.exe" "$ROOT/build/x64/notebook/driver/VexaSAIO.sys"
output=$(mktemp)
trap 'rm -f "$output"' EXIT
code=0
timeout 300 "$WINE" "$WINEPREFIX/drive_c/Vexa/vexa_bench.exe" "$@" </dev/null >"$output" 2>&1 || code=$?
stop_prefix
cat "$output"
exit "$code"
