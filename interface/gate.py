#!/usr/bin/env python3
"""The interface gate: what programs out there rely on may grow, but not change.

usage: gate.py [--lock]

locked.json holds the ordinal, signature, reserved values and buffer capacity of each export, the size and offsets of each
record, and the value of each constant. Without an option it is compared with the catalogue and the headers. With --lock,
what is new is added to it; something that changed is never overwritten. Whoever means to break programs edits locked.json
by hand, and says so in the change log.
"""

import json
import sys

import catalogue
import headers

FILE = catalogue.ROOT / "interface" / "locked.json"


def export_facts(export):
    reserved = [{k: r[k] for k in ("value", "text", "reason", "route", "also_reading") if k in r} for r in export.reserved]
    reserved.sort(key=lambda r: (r.get("value", -2**32), r.get("text", ""), r.get("route", "")))
    return {"ordinal": export.ordinal, "signature": export.signature, "result": export.result,
            "capacity": export.text["capacity"] if export.text else None, "reserved": reserved}


def current():
    top = catalogue.read()
    return {"exports": {e.name: export_facts(e) for e in catalogue.load(top).values()},
            "records": {r["name"]: {"size": r["size"], "fields": r["fields"]} for r in top["records"]},
            "constants": headers.constants()}


def compare(locked, now):
    """Two lists of texts: what changed or is gone, and what is new."""
    broken, new = [], []
    for group in now:
        for name in sorted(locked.get(group, {}).keys() | now[group].keys()):
            have, want = now[group].get(name), locked.get(group, {}).get(name)
            if want is None:
                new.append(f"{group}: {name}")
            elif have is None:
                broken.append(f"{group}: {name} is gone")
            elif have != want:
                broken.append(f"{group}: {name} was {json.dumps(want)}, is {json.dumps(have)}")
    return broken, new


def layout(locked):
    groups = []
    for group, members in locked.items():
        lines = ",\n".join(f"    {json.dumps(name)}: {json.dumps(members[name])}" for name in sorted(members))
        groups.append(f"  {json.dumps(group)}: {{\n{lines}\n  }}")
    return "{\n" + ",\n".join(groups) + "\n}\n"


def main():
    if sys.argv[1:] not in ([], ["--lock"]):
        sys.exit(__doc__)
    locked = json.loads(FILE.read_text()) if FILE.exists() else {}
    now = current()
    broken, new = compare(locked, now)
    for line in broken:
        print(f"FAIL {line}")
    if sys.argv[1:] == ["--lock"]:
        merged = {group: {**now[group], **locked.get(group, {})} for group in now}
        FILE.write_text(layout(merged))
        print(f"{len(new)} added")
    else:
        for line in new:
            print(f"FAIL {line} is not locked yet: run interface/gate.py --lock")
    if broken or (new and not sys.argv[1:]):
        sys.exit(1)


if __name__ == "__main__":
    main()
