"""A sampling loop as a service would have it: one JSON line per sample, a reason in place of each missing value.

usage: sampling.py VexaWinIO64.dll [SECONDS [COUNT]]
"""

import json
import os
import sys
import time

sys.path.insert(0, os.environ.get("VEXA_PYTHON", os.path.join(os.path.dirname(__file__), "..", "..", "bindings", "python")))
import vexawinio

READINGS = {
    "charge_percent": "BatteryHealthyTable_Rsoc",
    "current_mA": "BatteryHealthyTable_Current",
    "voltage_mV": "BatteryHealthyTable_PackageVoltage",
    "temperature_dK": "BatteryHealthyTable_Temperature",
    "fully_charged": "BatteryHealthyTable_FullCharged",
    "on_external_power": "Power_Read_ACDCMode",
    "manufacturer": "BatteryHealthyTable_ManufactureName",
    "network": "RF_Net_Connected_Type",
}


def sample(library):
    values, missing = {}, {}
    for key, export in READINGS.items():
        try:
            values[key] = getattr(library, export)()
        except vexawinio.Missing as why:
            missing[key] = why.reason
    return {"values": values, "missing": missing}


def main():
    path = os.path.abspath(sys.argv[1])
    seconds = float(sys.argv[2]) if len(sys.argv) > 2 else 60
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 0  # 0: for ever
    library = vexawinio.Library(path)
    library.TraceOutput("sampling begins")
    with library.session():
        due = time.monotonic()
        taken = 0
        while True:
            print(json.dumps(sample(library)), flush=True)
            taken += 1
            if taken == count:
                return
            # A sample that took longer than the interval skips the turns it missed: samples never overlap or pile up.
            due = max(due + seconds, time.monotonic())
            time.sleep(max(0.0, due - time.monotonic()))


if __name__ == "__main__":
    main()
