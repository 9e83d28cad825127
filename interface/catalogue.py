#!/usr/bin/env python3
"""The catalogue of the exports, exports.json: reads it, checks that it makes sense, and keeps its layout.

usage: catalogue.py [--format]

Without an option it checks; with --format it writes the file again in its one layout.
"""

import dataclasses
import json
import pathlib
import sys

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parents[1]
FILE = ROOT / "interface" / "exports.json"

MACHINES = ("x64", "arm64")
EFFECTS = ("reads", "writes", "clears", "selects")
DOUBTS = (None, "battery", "version")
RESULT_KINDS = {"number": {"bits", "signed", "unit", "scale"}, "flag": {"meaning"}, "text": set(), "done": set(),
                "record": set(), "nothing": set()}
TEXT_SHAPES = ("returned", "buffer", "two_buffers", "allocated")
RETURN_TYPES = ("uint32_t", "int32_t", "void", "VexaText")
# The role of an argument, and the C types that may have it.
ROLES = {"value": ("uint8_t", "uint32_t", "int32_t"), "buffer": ("char*", "wchar_t*"), "text": ("const wchar_t*",),
         "utf16": ("const void*",), "record": ("VexaPdIcPartNumber*",), "slots": ("uint32_t*",),
         "allocated": ("wchar_t**",)}
FAMILY_KEYS = {"family", "title", "header", "about", "defaults", "exports"}
DEFAULTED = ("routes", "needs_initialize", "minimum_table_version", "threads", "wait")
OPTIONAL = {"text": None, "doubt": None, "effect": "reads", "failing": ()}
# What an answer looks like of which only a part could be read.
FAILING = {"value", "fewer", "zero_bytes", "cut", "fewer_characters", "fewer_items", "fewer_counts", "items"}
EXPORT_KEYS = {"name", "summary", "returns", "arguments", "result", "reserved"}
ARGUMENT_KEYS = {"name", "type", "meaning"}
ARGUMENT_OPTIONAL = {"role", "unit", "range", "capacity", "capacity_name", "slots"}


class CatalogueError(Exception):
    """The catalogue contradicts itself; the text says where."""


@dataclasses.dataclass(frozen=True)
class Export:
    """One export, with what its family says for all of them filled in."""
    family: str
    ordinal: int
    name: str
    summary: str
    returns: str
    arguments: tuple
    result: dict
    reserved: tuple
    routes: dict
    needs_initialize: bool
    minimum_table_version: int | None
    threads: str
    wait: dict
    text: dict | None
    doubt: str | None
    effect: str
    failing: tuple

    @property
    def signature(self):
        inside = ", ".join(a["type"] for a in self.arguments) or "void"
        return f"{self.returns} {self.name}({inside})"

    @property
    def reserved_numbers(self):
        return [r for r in self.reserved if "value" in r]

    @property
    def reserved_texts(self):
        return [r for r in self.reserved if "text" in r]


def role(argument):
    return argument.get("role", "value")


def read():
    return json.loads(FILE.read_text(encoding="utf-8"))


def need(condition, where, what):
    if not condition:
        raise CatalogueError(f"{where}: {what}")


def check_arguments(where, arguments):
    names = [a.get("name") for a in arguments]
    need(len(set(names)) == len(names), where, "two arguments of one name")
    for a in arguments:
        at = f"{where}, argument {a.get('name')}"
        need(ARGUMENT_KEYS <= set(a) <= ARGUMENT_KEYS | ARGUMENT_OPTIONAL, at, "keys")
        need(role(a) in ROLES, at, f"unknown role {role(a)}")
        need(a["type"] in ROLES[role(a)], at, f"type {a['type']} with role {role(a)}")
        need((role(a) == "buffer") == ("capacity" in a), at, "buffers, and only they, have a capacity")
        need(("capacity" in a) == ("capacity_name" in a), at, "a capacity has a name")


def check_text(where, export):
    text = export.text
    need((export.result["kind"] == "text") == (text is not None), where, "texts, and only they, have a shape")
    if text is None:
        return
    need(text["shape"] in TEXT_SHAPES, where, "unknown shape of text")
    need(set(text) <= {"shape", "argument", "second", "capacity", "null_asks"}, where, "keys of text")
    need((text["shape"] == "returned") == (export.returns == "VexaText"), where, "shape and return type")
    if text["shape"] in ("buffer", "two_buffers"):
        buffers = {a["name"]: a for a in export.arguments if role(a) == "buffer"}
        named = [text["argument"]] + ([text["second"]] if text["shape"] == "two_buffers" else [])
        need(set(named) == set(buffers), where, "the text's arguments are the buffers")
        need(all(buffers[n]["capacity"] == text["capacity"] for n in named), where, "capacities differ")


def check_reserved(where, export, reasons):
    seen = set()
    for r in export.reserved:
        need({"reason", "when"} <= set(r) and ("value" in r) != ("text" in r), where, f"reserved {r}")
        need(set(r) <= {"reason", "when", "value", "text", "also_reading", "route"}, where, f"reserved {r}: keys")
        need(r["reason"] in reasons, where, f"unknown reason {r['reason']}")
        need("text" not in r or export.result["kind"] == "text", where, "a reserved text of no text")
        key = (r.get("value"), r.get("text"), r.get("route"))
        need(key not in seen, where, f"reserved twice: {key}")
        seen.add(key)
        if "value" in r:
            signed = export.returns == "int32_t"
            low, high = (-2**31, 2**31 - 1) if signed else (0, 2**32 - 1)
            need(export.returns != "VexaText" and low <= r["value"] <= high, where, f"value {r['value']}")
            need(not r.get("also_reading") or export.result["kind"] in ("number", "flag"), where, "ambiguity")
    if export.doubt:
        need(any(r.get("also_reading") for r in export.reserved), where, "a doubt about nothing")
        need(export.minimum_table_version is not None, where, "a doubt needs a least version")


def check_failing(where, export):
    for f in export.failing:
        need({"as", "when"} <= set(f) <= {"as", "when", "value", "text", "route"}, where, f"failing {f}: keys")
        need(f["as"] in FAILING, where, f"failing {f}")
        need(("value" in f) == (f["as"] == "value") and ("text" in f) == (f["as"] == "items"), where, f"failing {f}")


def check_export(export, top):
    where = export.name
    check_arguments(where, export.arguments)
    need(export.returns in RETURN_TYPES, where, f"return type {export.returns}")
    kind = export.result.get("kind")
    need(kind in RESULT_KINDS and set(export.result) - {"kind"} == RESULT_KINDS[kind], where, "result")
    need((export.returns == "void") <= (kind in ("nothing", "text")), where, "nothing returned, but a result")
    need(set(export.routes) == set(MACHINES) and set(export.routes.values()) <= set(top["routes"]), where, "routes")
    need(export.threads in top["threads"], where, "threads")
    need(set(export.wait) == {"ms", "beyond"} and export.wait["ms"] >= 0, where, "wait")
    need(export.effect in EFFECTS and export.doubt in DOUBTS, where, "effect or doubt")
    need((kind == "done") <= (export.effect != "reads" or export.family == "lifecycle"), where, "an action has an effect")
    check_text(where, export)
    check_reserved(where, export, top["reasons"])
    check_failing(where, export)


def resolve(family, entry, ordinals):
    where = entry.get("name", "an export without a name")
    known = EXPORT_KEYS | set(DEFAULTED) | set(OPTIONAL)
    need(EXPORT_KEYS <= set(entry) <= known, where, f"keys: {sorted(set(entry) ^ EXPORT_KEYS)}")
    need(where in ordinals, where, "not in docs/exports.txt")
    fields = {key: entry.get(key, default) for key, default in OPTIONAL.items()}
    fields |= {key: entry.get(key, family["defaults"].get(key)) for key in DEFAULTED}
    fields |= {key: entry[key] for key in EXPORT_KEYS - {"arguments", "reserved"}}
    return Export(family=family["family"], ordinal=ordinals[where], arguments=tuple(entry["arguments"]),
                  reserved=tuple(entry["reserved"]), **fields)


def ordinals():
    """An ordinal is the place of a name in docs/exports.txt."""
    return {name: i + 1 for i, name in enumerate((ROOT / "docs" / "exports.txt").read_text().split())}


def load(top=None):
    """Every export by name, in the order of the ordinals; CatalogueError when the file contradicts itself."""
    top = top or read()
    places = ordinals()
    exports = {}
    for family in top["families"]:
        need(set(family) == FAMILY_KEYS and set(family["defaults"]) == set(DEFAULTED), family.get("family"), "keys")
        names = [entry["name"] for entry in family["exports"]]
        need(names == sorted(names, key=places.get), family["family"], "exports are not in the order of the list")
        for entry in family["exports"]:
            export = resolve(family, entry, places)
            need(export.name not in exports, export.name, "stands twice")
            check_export(export, top)
            exports[export.name] = export
    need(set(exports) == set(places), "catalogue", f"lacks {sorted(set(places) - set(exports))}")
    return dict(sorted(exports.items(), key=lambda item: item[1].ordinal))


def layout(top):
    """The one layout of the file: a line per fact, a line per argument and reserved value."""
    inline = lambda value: json.dumps(value, ensure_ascii=False)

    def block(value, indent):
        pad = " " * indent
        if isinstance(value, list) and value and isinstance(value[0], dict):
            return "[\n" + ",\n".join(f"{pad}  {inline(v)}" for v in value) + f"\n{pad}]"
        return inline(value)

    def members(entry, indent, skip=()):
        pad = " " * indent
        return ",\n".join(f"{pad}{inline(k)}: {block(v, indent)}" for k, v in entry.items() if k not in skip)

    families = []
    for family in top["families"]:
        exports = ",\n".join("        {\n" + members(e, 10) + "\n        }" for e in family["exports"])
        families.append("    {\n" + members(family, 6, ("exports",)) + ',\n      "exports": [\n' + exports + "\n      ]\n    }")
    def header(value):
        if not isinstance(value, dict):
            return block(value, 2)
        return "{\n" + ",\n".join(f"    {inline(k)}: {inline(v)}" for k, v in value.items()) + "\n  }"

    head = ",\n".join(f"  {inline(k)}: {header(v)}" for k, v in top.items() if k != "families")
    return "{\n" + head + ',\n  "families": [\n' + ",\n".join(families) + "\n  ]\n}\n"


def main():
    top = read()
    try:
        exports = load(top)
    except CatalogueError as error:
        sys.exit(f"exports.json: {error}")
    if sys.argv[1:] == ["--format"]:
        FILE.write_text(layout(top), encoding="utf-8")
    elif sys.argv[1:]:
        sys.exit(__doc__)
    print(f"{len(exports)} exports")


if __name__ == "__main__":
    main()
