#!/usr/bin/env bash
# The Windows check kit, packed and unpacked: its verdicts on commands that pass, fail, hang and are not there, and the
# parts that can run under Wine.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
source "$ROOT/tools/notebook.sh"
source "$ROOT/tests/support/checks.sh"

use_machine x64
kit() {  # kit EXPECTED_CODE ARGUMENTS...: the report in report
  local expected=$1
  shift
  run_program "$expected" "$WINE" "$kit/check.exe" "$@" || return 1
  tr -d '\r' <"$kit/report.txt" >"$work/report" || true
}
reported() { grep -q -x -F -- "$1" "$work/report"; }

start_prefix
install_scenario "$ROOT/notebook/scenarios/healthy-x64.json"
kit=$WINEPREFIX/drive_c/kit
rm -rf "$kit"
python3 "$ROOT/tools/check_kit.py" x64 --output "$work" >&2
python3 -m zipfile -e "$work"/*.zip "$work/unpacked"
mv "$work"/unpacked/* "$kit"

cat >"$kit/parts.txt" <<'END'
[good]
title: passes
run: cmd /c echo from a command
[bad]
title: fails, and goes on
run: cmd /c exit 3
run: cmd /c echo after
[hangs]
title: is ended, with what it started
limit: 1
run: cmd /c cmd /c for /l %i in (0,0,1) do @rem forever
[named]
title: not by itself
named-only: yes
run: cmd /c exit 3
[absent]
title: a program that is not there
run: no-such-program.exe
[absent-too]
title: the same, for reading only
show: no-such-program.exe
look: nothing
[elsewhere]
title: for the other machine
machine: arm64
run: cmd /c exit 3
[held]
title: a device that nobody has
hold: \\.\NoSuchDevice
run: cmd /c exit 0
END
check "verdicts" kit 1 good bad absent absent-too elsewhere held
check "a command that passes" printed "ok good"
check "its output is in the report" reported "from a command"
check "a command that fails" printed "FAIL bad"
check "its exit code is in the report" reported "(exit code 3)"
check "the next command runs all the same" reported "after"
check "a program that is not there" printed "FAIL absent"
check "the same for reading" printed "look absent-too: nothing"
check "another machine's part" printed "skip elsewhere: it is for arm64"
check "a device that can't be held" printed 'FAIL held: \\.\NoSuchDevice can'"'t be opened"
check "the sum" printed "1 passed, 3 failed"
check "without a name" kit 1
check "a part that wants its name" printed "skip named: it runs only when it is named"
check "a command that hangs" printed "FAIL hangs"
check "its end is in the report" reported "(ended after 1 s)"
nothing_forever() { ! pgrep -f '@rem forever' >/dev/null; }
check "and nothing of it is left" nothing_forever
check "an unknown part" kit 2 no-such-part
for line in 'neither' '[ok' '[]' 'title: before any part' $'[a]\n[a]' $'[a]\nlimit: 0' $'[a]\nlimit: x' $'[a]\nmachine: x86' \
  $'[a]\nnamed-only: no' $'[a]\ncolour: red'; do
  printf '%s\n' "$line" >"$kit/parts.txt"
  check "a list with ${line//$'\n'/ } is refused" kit 2
done

# Those of the kit's own parts that need neither a real notebook nor minutes.
cp "$ROOT/tools/check-kit/parts.txt" "$kit/"
check "without the driver" kit 0 battery
check "the part is left out" printed "skip battery: it wants a copy of the notebook's own VexaSAIO.sys beside check.exe"
cp "$kit/simulated/VexaSAIO.sys" "$kit/"
check "the kit" kit 0 machine client battery gauge-names thermal system architecture fleet
check "the kit's tests ran" printed "ok client"
check "the kit's readings are in the report" reported "VXB2-CELLCO"
check "the collector's file" reported "vexahealth_up 1"
check "the driver's service is there now" kit 0 end-to-end
check "and is not replaced" grep -q -F "skip end-to-end: the service VexaSAIO is registered" "$work/out"
rm -rf "$kit"
end_checks
