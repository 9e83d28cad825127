#!/usr/bin/env bash
# A fleet of 20 simulated notebooks, each read by `collect.cmd`, looked at through a real Prometheus on the loopback
# interface: the rules and queries of docs/fleet.md name exactly the notebooks that they should.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
source "$ROOT/tools/notebook.sh"

use_machine x64
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
install_notebook
folder=$WINEPREFIX/drive_c/Vexa
sed 's/$/\r/' "$ROOT/docs/fleet/collect.cmd" >"$folder/collect.cmd"
textfile=$WINEPREFIX/drive_c/textfile
rm -rf "$textfile"
mkdir -p "$work/scenarios" "$work/metrics" "$textfile"

look() {
  timeout --kill-after=10 100 "$WINE" cmd /c 'C:\Vexa\look.bat' </dev/null >"$work/log" 2>&1 || true
  [ ! -f "$textfile/vexahealth.new" ] || die "$name: an unfinished file is left"
  mv "$textfile/vexahealth.prom" "$work/metrics/$name.prom" || die "$name: no readings were written"
}

while read -r name route version; do
  case $route in
    x64) install_scenario "$work/scenarios/$name.json" ;;
    *) MACHINE=arm64 install_scenario "$work/scenarios/$name.json" ;;
  esac
  printf '@reg add HKLM\\SOFTWARE\\Vexa\\Config /v Arch /d %s /f > NUL\r\n@call C:\\Vexa\\collect.cmd C:\\textfile\r\n' "$route" >"$folder/look.bat"
  look
  for _ in 1 2 3 4 5; do
    [ "$route" = x64 ] && ! grep -q -x "vexahealth_driver_version $version" "$work/metrics/$name.prom" || break
    sleep 1
    look
  done
done < <(python3 "$ROOT/tests/fleet/notebooks.py" "$work/scenarios")
rm -f "$folder"/look.bat "$folder"/collect.cmd
timeout 60 "$WINE" reg delete 'HKLM\SOFTWARE\Vexa\Config' /v Arch /f </dev/null >/dev/null 2>&1 || true

python3 "$ROOT/tests/fleet/fleet_test.py" "$work/metrics"
