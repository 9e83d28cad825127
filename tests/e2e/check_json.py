"""check_json.py FILE MIN_OK [KEY=EXPECTED...]: one JSON value whose readings have the promised shape.

EXPECTED is a reading's value when it is ok, else its status; library.NAME names a member of "library".
"""

import json
import sys

STATUSES = {"ok", "no_answer", "unsupported", "not_present", "not_collected", "error"}


def main(path, min_ok, *expectations):
    with open(path, encoding="utf-8") as file:
        report = json.load(file)  # refuses anything behind the value
    readings = report["readings"]
    problems = []
    for key, reading in readings.items():
        if set(reading) != {"value", "unit", "status", "source", "reason"}:
            problems.append(f"{key}: members {sorted(reading)}")
        elif reading["status"] not in STATUSES:
            problems.append(f"{key}: status {reading['status']}")
        elif (reading["value"] is None) == (reading["status"] == "ok"):
            problems.append(f"{key}: value {reading['value']} with status {reading['status']}")
    ok = sum(reading["status"] == "ok" for reading in readings.values())
    if ok < int(min_ok):
        problems.append(f"{ok} readings ok, not {min_ok}")
    for expectation in expectations:
        key, expected = expectation.split("=", 1)
        if key.startswith("library.") and key not in readings:
            actual = report["library"][key.removeprefix("library.")]
        else:
            reading = readings[key]
            actual = reading["value"] if reading["status"] == "ok" else reading["status"]
        if str(actual) != expected:
            problems.append(f"{key}: {actual}, not {expected}")
    print("\n".join(problems) if problems else f"{ok} of {len(readings)} readings ok")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
