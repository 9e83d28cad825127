#!/usr/bin/env python3
"""A fleet of 20 notebooks that differ, as scenarios, and what the queries of docs/fleet.md must say of them.

usage: notebooks.py FOLDER     writes FOLDER/NAME.json; prints "NAME ROUTE DRIVER_VERSION" for each

The driver's version tells the notebooks apart: the driver keeps a scenario as long as a handle of the one before is open.
"""

import json
import pathlib
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from scenario_edit import gauge, group, load, put, register

CAPACITY, CYCLES, PACK_VOLTAGE = 0x42, 0x2E, 0x36
NO_ANSWER = 5

WORN = {"nb02", "nb03", "nb05", "nb07", "nb09", "nb17", "nb20"}
SILENT = {"nb11", "nb19"}
FAN_STOPPED = {("nb14", "2"), ("nb20", "1")}
DOWN = {"nb11"}


def base(name):
    scenario = load(name)
    for part in scenario.get("ec", {}).get("groups", []):
        if "handshake" in part:
            part["handshake"]["ready_on_poll"] = 1  # each further one is a second of waiting
    return scenario


def changed(name="healthy-x64", capacity=None, cycles=None, failure=None, device=None, silent=None, fan=None, hot=False):
    scenario = base(name)
    if capacity is not None:
        register(scenario, 1, CAPACITY)["word"] = capacity
    if cycles is not None:
        register(scenario, 1, CYCLES)["word"] = cycles
    if failure is not None:
        gauge(scenario, 0x53)["dword"] = failure
    if device is not None:
        gauge(scenario, 0x21)["text"] = device
    if silent is not None:
        put(register(scenario, 1, silent), status=NO_ANSWER)
    fans = next((part for part in group(scenario, 2).get("lists", []) if part["name"].startswith("fans")), None)
    if fan is not None:
        fans["items"][fan][0]["word"] = 0
    if hot:
        register(scenario, 2, 0x00)["byte"] = 93
    return scenario


def firmware_capacity(value):
    scenario = base("healthy-arm64")
    gauge(scenario, 0x10)["word"] = value
    return scenario


# The best battery of the kind VXB4S51-N14 holds 4896, so 60 % of it are 2937.6.
def fleet():
    return {
        "nb01": changed(),
        "nb02": base("worn-battery"),
        "nb03": changed(capacity=2937),
        "nb04": changed(capacity=2938),
        "nb05": changed(cycles=1000),
        "nb06": changed(cycles=999),
        "nb07": changed(failure=0x00000010),
        "nb08": changed(capacity=2550, device="VXB3S41-N13"),  # the best of its kind
        "nb09": changed(capacity=1500, device="VXB3S41-N13"),
        "nb10": base("no-battery"),
        "nb11": base("silent-ec"),
        "nb12": base("no-table"),
        "nb13": base("old-table"),
        "nb14": changed(fan=1, hot=True),
        "nb15": changed(fan=1),  # cool enough to stand still
        "nb16": base("healthy-arm64"),
        "nb17": firmware_capacity(2400),
        "nb18": base("hostile-answers"),
        "nb19": changed(silent=PACK_VOLTAGE),
        "nb20": changed(capacity=2000, fan=0, hot=True),
    }


def main():
    folder = pathlib.Path(sys.argv[1])
    for version, (name, scenario) in enumerate(fleet().items(), 0x10001):
        route = "x64" if "driver" in scenario else "ARM64"
        if route == "x64":
            scenario["driver"]["version"] = version
        (folder / f"{name}.json").write_text(json.dumps(scenario))
        print(name, route, version)


if __name__ == "__main__":
    main()
