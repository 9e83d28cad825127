"""bindings/python/vexawinio.py."""

import catalogue
from catalogue import role
from plan import BY_HAND, is_com_flag, plan

TEMPLATE = catalogue.ROOT / "interface" / "templates" / "vexawinio.py"
TYPES = {"uint8_t": "u8", "uint32_t": "u32", "int32_t": "i32", "void": "None", "VexaText": "VexaText", "char*": "text8",
         "wchar_t*": "text16", "const wchar_t*": "text16", "const void*": "text8", "uint32_t*": "ctypes.POINTER(u32)",
         "VexaPdIcPartNumber*": "ctypes.POINTER(VexaPdIcPartNumber)", "wchar_t**": "ctypes.POINTER(memory)"}
FIELDS = {"char": "ctypes.c_char", "uint32_t": "u32"}


def record(one):
    fields = ", ".join(f'("{f["name"]}", {FIELDS[f["type"]]}{" * " + str(f["count"]) if f["count"] > 1 else ""})'
                       for f in one["fields"])
    return f"class {one['name']}(ctypes.Structure):\n    _fields_ = [{fields}]\n"


def pairs(items):
    return "{" + ", ".join(items) + "}"


def row(export):
    p = plan(export)
    types = "".join(TYPES[a["type"]] + ", " for a in export.arguments).strip()
    defaults = "(" + ", ".join("1" if is_com_flag(a) else "None" for a in p.arguments) + (",)" if len(p.arguments) == 1 else ")")
    numbers = pairs(f'0x{v:X}: ("{reason}", {also})' for v, reason, also in p.numbers)
    texts = pairs(f'"{text}": "{reason}"' for text, reason in p.texts)
    capacity = p.capacity if p.shape in ("narrow", "wide", "long", "two") else None
    return (f'    "{export.name}": ({TYPES[export.returns]}, ({types}), "{p.shape}", {capacity}, '
            f"{bool(export.result.get('signed'))}, {numbers}, {texts}, {p.doubt}, {defaults}),")


def module(exports, top):
    text = TEMPLATE.read_text(encoding="utf-8")
    summaries = [f"    {e.name!r}: {e.summary!r}," for e in exports.values()
                 if e.name not in BY_HAND and not any(role(a) == "utf16" for a in e.arguments)]
    for mark, made in (("REASONS", ", ".join(f'"{r}"' for r in top["reasons"])),
                       ("RECORDS", "\n\n".join(record(r) for r in top["records"])),
                       ("TABLE", "\n".join(row(e) for e in exports.values())), ("SUMMARIES", "\n".join(summaries))):
        text = text.replace(f"@{mark}@", made)
    return text
