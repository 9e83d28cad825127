"""record_check.py FOLDER: compares the status before and after a recording was played back, per name.

The last line is "N passed, N failed".
"""

import json
import pathlib
import sys

sys.dont_write_bytecode = True
from client_output import MOVING, run

MASKED = {"battery.serial_number", "battery.manufacture_information"}
# Readings that must be there for the comparison to mean something: how many are ok, at least.
LEAST = {"healthy-x64": 90, "masked": 90, "worn-battery": 50, "missing-values": 30, "no-battery": 60, "old-table": 30,
         "no-table": 5, "silent-ec": 1, "healthy-arm64": 20}


def differences(folder, name):
    before, after = (json.loads((folder / f"{name}.{end}").read_bytes()) for end in ("before", "after"))
    if (folder / f"{name}.failed").exists():
        yield (folder / f"{name}.failed").read_text().strip()
    ok = sum(reading["status"] == "ok" for reading in before["readings"].values())
    if ok < LEAST[name]:
        yield f"only {ok} readings are ok"
    for document in (before, after):
        del document["time"]
        for key in MOVING:
            document["readings"].pop(key)
    different = {key for key, reading in before["readings"].items() if after["readings"][key] != reading}
    for key in sorted(different - (MASKED if name == "masked" else set())):
        yield f"{key}: {before['readings'][key]} became {after['readings'][key]}"
    if name == "masked" and different != MASKED:
        yield f"not masked: {MASKED - different}"
    del before["readings"], after["readings"]
    if before != after:
        yield f"{before} became {after}"


def main():
    folder = pathlib.Path(sys.argv[1])
    run((name, lambda name=name: differences(folder, name)) for name in LEAST)


main()
