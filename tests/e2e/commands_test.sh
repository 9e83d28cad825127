#!/usr/bin/env bash
# What vexahealth does beside showing readings once: watching, the doctor, the trace, completion in real shells.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
source "$ROOT/tools/notebook.sh"
source "$ROOT/tests/support/checks.sh"

use_machine x64
"$ROOT/tools/setup.sh" checks
install_notebook "$ROOT/notebook/scenarios/healthy-x64.json"

client() {  # client EXPECTED_CODE ARGUMENTS...
  local expected=$1
  shift
  run_program "$expected" "$WINE" "$WINEPREFIX/drive_c/Vexa/vexahealth.exe" "$@"
}
lines() { [ "$(grep -c -E "$1" "$work/out")" = "$2" ]; }

# Watching.
check "three samples" client 0 thermal --watch 0.2 --count 3
check "a row for each" lines '^time=[^ ]+ fan\.count=2 .*temperature\.cpu=52' 3
check "and nothing else" lines '' 3
check "no sample begins before the one before it ended, nor before its time" \
  python3 - "$work/out" <<'PY'
import datetime, sys
times = [datetime.datetime.fromisoformat(line.split()[0].removeprefix("time=").rstrip("Z")) for line in open(sys.argv[1])]
sys.exit(0 if all((b - a).total_seconds() > 0.17 for a, b in zip(times, times[1:])) else 1)
PY
check "one value again and again" client 0 get battery.rsoc --watch 0.2 --count 2
check "it is bare" lines '^84$' 2
check "samples as CSV" client 0 thermal --watch 0.2 --count 2 --format csv
check "with one header" lines '^time,fan.count,' 1
install_scenario "$ROOT/notebook/scenarios/silent-ec.json"
check "a silent EC is watched too" client 1 thermal --watch 0.2 --count 2
check "and says so" lines 'fan\.count=!no_answer' 2
install_scenario "$ROOT/notebook/scenarios/healthy-x64.json"

# The doctor.
folder=$WINEPREFIX/drive_c/Vexa
chmod go-w "$folder"
check "the doctor finds no problem" client 0 doctor
check "the service, the driver and the EC are well" lines '^  good +(service|driver file|start|EC) ' 4
check "both firmware classes are looked for" lines '^  (good|info) +WMI +ROOT.WMI (ATD_STS|VexaObxWmi_WMNB)' 2
check "the folder is for administrators" lines '^  good +folder ' 1
chmod go+w "$folder"
check "a folder that everyone can write is no problem yet" client 0 doctor
check "but a warning" lines '^  warning +folder +C:.Vexa can be written by ordinary users: Everyone' 1
chmod go-w "$folder"
install_scenario "$ROOT/notebook/scenarios/silent-ec.json"
check "a silent EC is a problem" client 1 doctor
check "told in its line" lines '^  problem +EC +it does not answer' 1
install_scenario "$ROOT/notebook/scenarios/healthy-x64.json"

# Wine has no event tracing.
check "no tracing, no trace" client 8 trace --seconds 1
check "which is said" grep -q -E '^vexahealth: .*event tracing' "$work/err"

# Completion: the words that each shell offers after "vexahealth get battery.rs", and for the first word.
script() { client 0 completion "$1" && cp "$work/out" "$work/completion.$1"; }
offers() { tr ' ' '\n' <"$work/offered" | grep -q -x -- "$1"; }
in_bash() {
  bash --norc -c 'source "$1"; COMP_WORDS=(vexahealth "${@:2}"); COMP_CWORD=$(($# - 1)); _vexahealth
    printf "%s\n" "${COMPREPLY[@]}"' bash "$work/completion.bash" "$@" >"$work/offered"
}
in_zsh() {
  zsh -f -c 'compdef() { }; compadd() { shift; print -l -- "$@" }; source "$1"; shift
    words=(vexahealth "$@"); CURRENT=$#words; _vexahealth' zsh "$work/completion.zsh" "$@" >"$work/offered"
}
in_fish() { fish --no-config -c "source '$work/completion.fish'; complete -C 'vexahealth $*'" </dev/null >"$work/offered"; }
for shell in bash zsh fish; do
  check "$shell: script" script "$shell"
  check "$shell: a key" "in_$shell" get battery.rs
  check "$shell: offers it" offers battery.rsoc
  check "$shell: the first word" "in_$shell" ""
  check "$shell: offers a command" offers thermal
  check "$shell: a setting's value" "in_$shell" settings set charge-limit ""
  check "$shell: offers 80" offers 80
done
check "powershell: script" script powershell
check "powershell: has every key" grep -q -F 'adapter.pdo.5.max_voltage' "$work/completion.powershell"

end_checks
