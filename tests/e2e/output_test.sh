#!/usr/bin/env bash
# What vexahealth prints for many scenarios, in every format: valid against the schema, complete, the same facts
# everywhere, and the promised exit code. x64, since only its driver can play every fault.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
source "$ROOT/tools/notebook.sh"

use_machine x64
"$ROOT/tools/setup.sh" checks
install_notebook

work=$ROOT/build/output-test
image=$WINEPREFIX/drive_c/vexa-notebook/scenario.bin
rm -rf "$work"
mkdir -p "$work/scenarios" "$work/out" "$WINEPREFIX/drive_c/Vexa/alone"
passed=0
failed=0

# client FILE ARGUMENTS...: its output into the file, its exit code to standard output.
client() {
  local file=$1 code=0
  shift
  timeout 60 "$WINE" "${program:-$WINEPREFIX/drive_c/Vexa/vexahealth.exe}" "$@" </dev/null >"$file" 2>"$work/err" || code=$?
  echo "$code"
}

# The driver reads a scenario when its first handle is opened, and counts its rules from there only when the file is new.
fresh() { [ ! -f "$image" ] || touch "$image"; }

# set_route x64|ARM64: where the library asks from now on.
set_route() {
  route=$1
  quiet_wine reg add 'HKLM\SOFTWARE\Vexa\Config' /v Arch /d "$route" /f
  quiet_wine reg delete 'HKLM\SOFTWARE\Vexa\Vexa System Control Interface\VexaSystemAnalysis' /f || true
}

"$CHECKS_PYTHON" "$ROOT/tests/e2e/scenario_variants.py" "$work/scenarios" >"$work/list"
route=x64
while read -r name expected command formats wanted_route; do
  [ "$route" = "$wanted_route" ] || set_route "$wanted_route"
  install_scenario "$work/scenarios/$name.json"
  options=()
  [ "$command" != status ] && [ "$command" != battery ] || options=(--no-wait)
  codes=()
  for format in json:json txt:table ndjson:ndjson csv:csv prom:prometheus; do
    [ "$formats" = all ] || [ "${format#*:}" = json ] || [ "${format#*:}" = table ] || continue
    fresh
    codes+=("$(client "$work/out/$name.${format%%:*}" "$command" "${options[@]}" --format "${format#*:}")")
  done
  echo "$expected" "${codes[@]}" >"$work/out/$name.codes"
done <"$work/list"
set_route x64

verdict() {  # verdict NAME OK
  if [ "$2" = 0 ]; then passed=$((passed + 1)); else echo "FAIL $1"; failed=$((failed + 1)); fi
}

# document NAME EXPECTED_CODE ARGUMENTS...: one JSON value with this exit code, whatever it tells.
document() {
  local name=$1 expected=$2 code
  shift 2
  code=$(client "$work/out/$name.document" "$@")
  verdict "$name: exit code $code, not $expected" "$([ "$code" = "$expected" ]; echo $?)"
}

install_scenario "$ROOT/notebook/scenarios/silent-ec.json"
document get-1 1 get battery.rsoc --json
install_scenario "$ROOT/notebook/scenarios/healthy-x64.json"
document help 0 --help --json
document version 0 --version --json
document keys 0 keys --json
document all 0 all --json --no-wait
document report 0 report --json --no-wait
document report-shown 0 report --json --no-wait --show-serials
document settings 0 settings --json
document get 0 get battery.rsoc --json
document usage-2 2 status --bogus --json
document usage-key 2 get no.such.key --format json
document usage-set 2 settings set charge-limit 70 --json
document doctor 0 doctor --json
document trace 8 trace --json
document dry-run 0 settings set charge-limit 80 --dry-run --json
document change 0 settings set charge-limit 80 --json
for code in 5 6 7; do
  install_scenario "$work/scenarios/settings-$code.json"
  document "settings-$code" "$code" settings set quiet-fan on --json
done

# No library beside the client; one that is none; one that can't be written to.
cp "$BUILT/vexahealth.exe" "$WINEPREFIX/drive_c/Vexa/alone/"
program=$WINEPREFIX/drive_c/Vexa/alone/vexahealth.exe
for command in status radio settings "settings set quiet-fan on" "get battery.rsoc" doctor --version; do
  document "alone-${command// /-}" 3 $command --json
done
echo "no library" >"$WINEPREFIX/drive_c/Vexa/alone/VexaWinIO64.dll"
document "damaged" 3 all --json
unset program
rm -rf "$WINEPREFIX/drive_c/Vexa/alone"
code=$(client /dev/full --version)
verdict "full disk: exit code $code, not 4" "$([ "$code" = 4 ]; echo $?)"

"$CHECKS_PYTHON" "$ROOT/tools/readings_page.py" <"$work/out/keys.document" >"$work/readings.md"
verdict "docs/readings.md is not what the client lists" "$(cmp "$work/readings.md" "$ROOT/docs/readings.md" >&2; echo $?)"

install_scenario "$ROOT/notebook/scenarios/healthy-x64.json"
"$CHECKS_PYTHON" "$ROOT/tests/e2e/output_check.py" "$ROOT/docs/schema/vexahealth-1.schema.json" "$work/out/keys.document" "$work/out" \
  >"$work/result" || true
sed '$d' "$work/result"
read -r good _ bad _ < <(tail -n 1 "$work/result")
echo "$((passed + good)) passed, $((failed + bad)) failed"
[ "$((failed + bad))" = 0 ]
