"""The shipped scenarios, and places in them that tests change."""

import json
import pathlib

SHIPPED = pathlib.Path(__file__).resolve().parents[2] / "notebook" / "scenarios"


def load(name):
    return json.loads((SHIPPED / f"{name}.json").read_text(encoding="utf-8"))


def row(rows, key, number):
    """The row in which this key, decimal or a hexadecimal text, is the number; None without one."""
    return next((r for r in rows if int(str(r[key]), 0) == number), None)


def group(scenario, number):
    return row(scenario["ec"]["groups"], "group", number)


def register(scenario, number, offset):
    return row(group(scenario, number)["registers"], "offset", offset)


def gauge(scenario, number):
    """Of the EC, else of the firmware."""
    section = scenario.get("ec") or scenario["firmware"]["ec"]
    return row(section["gauge"], "register", number)


def put(entry, **value):
    """Replaces what a register holds."""
    for kind in ("byte", "word", "dword", "text", "hex", "status"):
        entry.pop(kind, None)
    entry.update(value)
