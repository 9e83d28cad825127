#!/usr/bin/env python3
"""Writes a row per export, with typical arguments and what the catalogue says of it and its answers, for the tests that
call them all. The build runs it.

usage: sweep.py OUT.inc
"""

import json
import pathlib
import sys

from catalogue import load, role

# Typical arguments by name; of the others it is 1.
TYPICAL = {"duty": "50", "level": "80", "offset": "0x50", "table": "0xBB", "holds_mutex": "0", "x": "41", "length": "10"}


def argument(a):
    kind = role(a)
    if kind == "value":
        return TYPICAL.get(a["name"], "1")
    if kind == "buffer":
        return f"a.{'Wide' if a['type'] == 'wchar_t*' else 'Narrow'}({a['capacity']})"
    if kind == "slots":
        return f"a.Slots({a['slots']})"
    return {"record": "a.Record()", "allocated": "a.Allocated()", "text": f"a.Text(\"{a['name']}\")",
            "utf16": "L\"Sweep\""}[kind]


def listed(items):
    return "{" + ", ".join(items) + "}"


def row(export):
    arguments = ", ".join(argument(a) for a in export.arguments)
    numbers = [f"{{{r['value'] & 0xFFFFFFFF:#x}u, \"{r.get('route', '')}\"}}" for r in export.reserved_numbers]
    texts = [json.dumps(r["text"]) for r in export.reserved_texts]
    facts = [f"\"{fact}\"" for fact in (export.family, export.result["kind"], export.threads, export.effect)]
    failing = [f"{{\"{f['as']}\", {f.get('value', 0)}u, \"{f.get('text', '')}\", \"{f.get('route', '')}\"}}"
               for f in export.failing]
    # A list of queries as long as an answer has no bound of its own.
    bounded = "each further" not in (export.wait["beyond"] or "")
    facts += [str(export.wait["ms"]) if bounded else "UINT32_MAX", str(export.minimum_table_version or 0)]
    facts += [listed(f"\"{route}\"" for route in export.routes.values()), listed(numbers), listed(texts), listed(failing)]
    return f"VEXA_EXPORT({export.name}, ({arguments}),\n            {', '.join(facts)})"


def rows(exports):
    return "\n".join(["// Made from interface/exports.json by interface/sweep.py."] + [row(e) for e in exports.values()]) + "\n"


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    out = pathlib.Path(sys.argv[1])
    out.parent.mkdir(parents=True, exist_ok=True)
    out.write_text(rows(load()), encoding="utf-8")
