#!/usr/bin/env bash
# vexahealth record: the recorded scenario, played back, gives the same status. x64, both routes.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
source "$ROOT/tools/notebook.sh"

use_machine x64
install_notebook

work=$ROOT/build/record-test
rm -rf "$work"
mkdir -p "$work"
disk=$WINEPREFIX/drive_c
config='HKLM\SOFTWARE\Vexa\Config'
kept='HKLM\SOFTWARE\Vexa\Vexa System Control Interface\VexaSystemAnalysis'

client() { timeout 120 "$WINE" "$disk/Vexa/vexahealth.exe" "$@" </dev/null 2>>"$work/errors"; }

# play FILE: a notebook that has just been given this scenario, and keeps nothing of the one before.
play() {
  quiet_wine reg delete "$kept" /f || true
  rm -f "$disk/vexa-notebook/scenario.bin" "$disk/vexa-notebook/firmware.json"
  install_scenario "$1"
}

# record NAME SCENARIO ROUTE OPTIONS...
record() {
  local name=$1 scenario=$2 route=$3 code=0
  shift 3
  quiet_wine reg add "$config" /v Arch /d "$route" /f
  play "$scenario"
  client status --json "$@" >"$work/$name.before" || true
  client record 'C:\Vexa\recorded.json' --show-serials "$@" || code=$?
  [ "$code" = 0 ] || echo "exit code $code" >"$work/$name.failed"
  mv "$disk/Vexa/recorded.json" "$work/$name.json"
  play "$work/$name.json"
  client status --json "$@" >"$work/$name.after" || true
}

for name in worn-battery no-battery old-table no-table silent-ec; do
  record "$name" "$ROOT/notebook/scenarios/$name.json" x64 --no-wait
done
record healthy-x64 "$ROOT/notebook/scenarios/healthy-x64.json" x64
record missing-values "$ROOT/tests/e2e/scenarios/missing-values.json" x64 --no-wait
# Masked: the same but for what is masked.
play "$ROOT/notebook/scenarios/healthy-x64.json"
client record 'C:\Vexa\recorded.json' || true
mv "$disk/Vexa/recorded.json" "$work/masked.json"
play "$work/masked.json"
cp "$work/healthy-x64.before" "$work/masked.before"
client status --json >"$work/masked.after" || true

record healthy-arm64 "$ROOT/notebook/scenarios/healthy-arm64.json" ARM64 --no-wait
quiet_wine reg add "$config" /v Arch /d x64 /f
quiet_wine reg delete "$kept" /f || true

python3 "$ROOT/tests/e2e/record_check.py" "$work"
