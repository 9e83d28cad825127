#!/usr/bin/env bash
# All exports of the built library, over and over, on a simulated notebook of its own; fails when anything grows.
#
#   tools/soak.sh [SECONDS] [x64|arm64]     an hour on x64 unless something else is said

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
source "$ROOT/tools/notebook.sh"

seconds=${1:-3600}
VEXA_PREFIX=${VEXA_PREFIX:-$ROOT/build/prefix}-soak
use_machine "${2:-x64}"

targets=(VexaWinIO64 soak_test vexa-firmware vexa-radios)
files=("$BUILT/VexaWinIO64.dll" "$BUILT/tests/soak_test.exe")
if [ "$MACHINE" = x64 ]; then
  targets+=(vexa-saio)
  files+=("$BUILT/notebook/driver/VexaSAIO.sys")
fi
"$ROOT/tools/setup.sh" x64 native
build_preset native vexa-scenario
build_preset "$PRESET" "${targets[@]}"

output=$(mktemp)
trap 'stop_prefix; rm -f "$output"' EXIT
stop_prefix
rm -rf "$WINEPREFIX"
start_prefix
install_scenario "$ROOT/notebook/scenarios/healthy-$MACHINE.json"
install_product "${files[@]}"
install_firmware
install_radios

code=0
timeout --kill-after=10 $((seconds + 300)) "$WINE" 'C:\Vexa\soak_test.exe' "$seconds" </dev/null >"$output" 2>&1 || code=$?
tr -d '\r' <"$output"
exit "$code"
