#!/usr/bin/env bash
# vexahealth report on several scenarios: whole, harmless, masked, and the same facts as `vexahealth all`. x64.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
source "$ROOT/tools/notebook.sh"

use_machine x64
install_notebook

work=$ROOT/build/report-test
rm -rf "$work"
mkdir -p "$work"
client=$WINEPREFIX/drive_c/Vexa/vexahealth.exe

# client FILE ARGUMENTS...: its output into the file, its exit code behind those before.
run_client() {
  local file=$1 code=0
  shift
  rm -f "$WINEPREFIX/drive_c/vexa-notebook/scenario.bin"
  install_scenario "$scenario"
  timeout 120 "$WINE" "$client" "$@" </dev/null >"$file" 2>/dev/null || code=$?
  echo "$code" >>"$work/$name.codes"
}

for name in healthy-x64 worn-battery no-battery silent-ec hostile-answers; do
  scenario=$ROOT/notebook/scenarios/$name.json
  run_client "$work/$name.all" all --json --no-wait
  run_client "$work/$name.html" report --no-wait
done
name=healthy-x64
scenario=$ROOT/notebook/scenarios/$name.json
run_client "$work/$name.shown" report --no-wait --show-serials
run_client "$work/$name.printed" report --no-wait --output 'C:\Vexa\report.html'
mv "$WINEPREFIX/drive_c/Vexa/report.html" "$work/$name.file"
run_client "$work/refused" report --no-wait --output 'C:\no such folder\report.html'
run_client "$work/$name.data" report --no-wait --json

python3 "$ROOT/tests/e2e/report_check.py" "$work" "$ROOT/docs/report.md"
