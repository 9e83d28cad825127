#!/usr/bin/env bash
# ./run as a newcomer uses it, and what its client prints.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"
source "$ROOT/tests/support/checks.sh"

machine=$1
option=()
[ "$machine" = arm64 ] && option=(--arm64)
run() {  # run EXPECTED_CODE ARGUMENTS...
  local expected=$1
  shift
  run_program "$expected" "$ROOT/run" "${option[@]}" "$@"
}
json() { python3 "$ROOT/tests/e2e/check_json.py" "$work/out" "$@"; }

if [ "$machine" = x64 ]; then
  check "battery table" run 0
  check "battery table shows the charge" grep -q -E 'State of charge +84 %' "$work/out"
  check "json" run 0 --json
  check "json has at least 20 readings" json 20 battery.rsoc=84 battery.temperature=3033 ec.table_version=28
  check "silent EC" run 1 --scenario silent-ec --json
  check "silent EC is no answer" json 1 battery.rsoc=no_answer battery.fully_charged=no_answer
  check "no table" run 0 --scenario no-table --json
  check "no table is unsupported, never 0" json 5 battery.rsoc=unsupported battery.serial_number=unsupported
  check "no battery" run 0 --scenario no-battery --json
  check "no battery is not present" json 5 battery.rsoc=not_present
  check "hostile answers" run 0 --scenario hostile-answers --json
  check "hostile answers are one JSON value" json 1
  printf '{\n  "ec": {\n    "default": 300\n  }\n}\n' >"$work/broken.json"
  check "broken scenario is refused" run 1 --scenario "$work/broken.json"
  check "broken scenario names file and line" grep -q "broken.json:3: " "$work/err"
  check "missing scenario is refused" run 1 --scenario "$work/absent.json"
  check "healthy again" run 0 --json
  check "usage error" run 2 --no-such-option
  check "adapter" run 0 adapter
  check "an object of the contract is decoded, its word beside" \
    grep -q -F 'Object 5                  pps 3.3-21 V, 5 A, 105 W (0xc9a42164)' "$work/out"
  check "thermal" run 0 thermal --json
  check "two fans turn" json 4 fan.count=2 fan.1.speed=3120 fan.2.speed=2870 fan.3.speed=not_present temperature.cpu=52
  check "inventory" run 0 inventory --json
  check "inventory and radio tell one adapter" json 25 "inventory.wifi_adapter=Vexa Wi-Fi 6E Adapter 160MHz" \
    inventory.memory_speed=5200 inventory.external_monitors=1 inventory.hdd=not_present
else
  check "battery table" run 0
  check "battery table shows the charge" grep -q -E 'State of charge +84 %' "$work/out"
  check "json" run 0 --json
  check "json has at least 15 readings" json 15 library.route=ARM64 battery.rsoc=84 battery.temperature=3033 \
    battery.fully_charged=unsupported ec.table_version=unsupported adapter.pdo.1.word=unsupported \
    fan.1.speed=3120 fan.2.speed=unsupported temperature.cpu=52
  check "inventory" run 0 inventory --json
  check "inventory tells the machine" json 25 "inventory.product=Vexa Arclight 14 A" inventory.cpu_architecture=ARM64
fi
check "radio" run 0 radio
check "access points are drawn by signal" grep -q -E '^  5 GHz, -50 to -60 dBm +1 █$' "$work/out"
check "the link and Bluetooth are told" grep -q -E '^  (Signal +-52 dBm|Connected devices +3)$' "$work/out"
check "one bare value" run 0 get battery.rsoc
check "it is the bare value" test "$(cat "$work/out")" = 84

# The firmware's own state, as a person would look at it.
firmware_level() {
  grep -A 1 '"control"' "$ROOT/build/prefix-$machine/drive_c/vexa-notebook/firmware-state.json" |
    grep -B 1 '"device": 1179735' | grep -q "\"control\": $1,"
}
check "charge limit is accepted" run 0 settings set charge-limit 80
check "the firmware keeps the charge limit" firmware_level 80
check "dry run changes nothing" run 0 settings set charge-limit 60 --dry-run
check "the firmware keeps the charge limit still" firmware_level 80
check "a charge limit outside the set is refused" run 2 settings set charge-limit 70
check "quiet fan is switched" run 0 settings set quiet-fan on
check "settings are shown" run 0 settings

end_checks
