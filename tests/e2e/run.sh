#!/usr/bin/env bash
# Runs e2e_test.exe on a simulated notebook of its own. The arguments are GoogleTest's; its text goes to
# standard output.
#
# VEXA_NATIVE_BUILD  folder of the native build    (build/native)
# VEXA_PREFIX        where the Wine prefix is made (build/prefix), with "-e2e-x64" behind it

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
source "$ROOT/tools/notebook.sh"

scenario_tool=${VEXA_NATIVE_BUILD:-$ROOT/build/native}/notebook/scenario/vexa-scenario
VEXA_PREFIX=${VEXA_PREFIX:-$ROOT/build/prefix}-e2e
use_machine x64

output=$(mktemp)
trap 'stop_prefix; rm -f "$output"' EXIT

stop_prefix
rm -rf "$WINEPREFIX"
start_prefix
install_product "$BUILT/tests/e2e_test.exe" "$BUILT/VexaWinIO64.dll" "$BUILT/notebook/driver/VexaSAIO.sys"
images=$WINEPREFIX/drive_c/vexa-notebook
mkdir -p "$images"
cp "$ROOT/tests/data/x64_readings.tsv" "$images/"
for file in "$ROOT"/notebook/scenarios/*.json "$ROOT"/tests/e2e/scenarios/*.json; do
  name=${file##*/}
  "$scenario_tool" build "$file" "$images/${name%.json}.bin" >&2 || die "$name is refused"
done

code=0
program=$WINEPREFIX/drive_c/Vexa/e2e_test.exe
timeout --kill-after=10 300 "$WINE" "$program" "$@" </dev/null >"$output" 2>&1 || code=$?
tr -d '\r' <"$output"
[ "$code" != 124 ] || say "e2e_test.exe did not end within 300 s"
exit "$code"
