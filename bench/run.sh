#!/usr/bin/env bash
# Measures on the simulated notebook (x64), without its log; prints one line per ratio, and after several runs the medians
# over them. The exit code is 1 when a limit is missed. Other work on the machine widens the spread: measure on a quiet
# one.
#
#   bench/run.sh [-n RUNS] [driver] [wifi] [trace] [wmi] [load] [client] [firmware]    all of them without a word

source "$(dirname "${BASH_SOURCE[0]}")/../tools/lib.sh"
source "$ROOT/tools/notebook.sh"

runs=1
if [ "${1:-}" = -n ]; then
  runs=$2
  shift 2
fi
[ "$#" != 0 ] || set -- driver wifi trace wmi load client firmware

"$ROOT/tools/setup.sh" x64 native checks
build_preset native vexa-scenario
build_preset x64 vexa_bench same_imports first_line VexaWinIO64 vexahealth vexa-saio vexa-firmware
readonly X64=$ROOT/build/x64
output=$(mktemp)
all=$(mktemp)
trap 'rm -f "$output" "$all"' EXIT
code=0

# measure SCENARIO WORD...: the groups on a notebook with that scenario.
measure() {
  start_prefix
  install_scenario "$1"
  shift
  install_product "$X64/bench/vexa_bench.exe" "$X64/bench/same_imports.dll" "$X64/bench/first_line.exe" \
    "$X64/VexaWinIO64.dll" "$X64/vexahealth.exe" "$X64/notebook/driver/VexaSAIO.sys"
  timeout 300 "$WINE" "$WINEPREFIX/drive_c/Vexa/vexa_bench.exe" "$@" </dev/null >"$output" 2>&1 || code=1
  tr -d '\r' <"$output" | tee -a "$all"
}

groups=()
firmware=no
for word; do
  if [ "$word" = firmware ]; then firmware=yes; else groups+=("$word"); fi
done
prefix=${VEXA_PREFIX:-$ROOT/build/prefix}
for ((run = 1; run <= runs; ++run)); do
  echo "run $run of $runs: $(nproc) processors, load $(cut -d ' ' -f 1 /proc/loadavg)"
  # Prefixes of their own: the WMI of the first is Wine's, without the simulated firmware in front.
  if [ "${#groups[@]}" != 0 ]; then
    VEXA_PREFIX=$prefix-bench
    use_machine x64
    measure "$ROOT/bench/scenario.json" "${groups[@]}"
  fi
  if [ "$firmware" = yes ]; then
    VEXA_PREFIX=$prefix-bench-firmware
    use_machine x64
    start_prefix
    install_firmware
    measure "$ROOT/bench/firmware.json" firmware
  fi
done
for part in bench bench-firmware; do
  VEXA_PREFIX=$prefix-$part
  use_machine x64
  stop_prefix
done
[ "$runs" = 1 ] || python3 "$ROOT/bench/summary.py" "$all"
exit "$code"
