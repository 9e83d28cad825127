"""How a binding calls an export: the same decisions for every language."""

import dataclasses

from catalogue import role

# Opening and closing is the binding's own; reading the fans takes an array.
BY_HAND = {"InitializeWinIo", "ShutdownWinIo", "HealthyTable_Read_Fan"}


@dataclasses.dataclass(frozen=True)
class Plan:
    # number, flag, done, record, line, returned, narrow, wide, long, two or allocated
    shape: str
    capacity: int
    # Of the caller's values and texts, in order, the COM flag last.
    arguments: tuple
    # Value as unsigned 32 bits, reason, also a true reading.
    numbers: tuple
    texts: tuple
    # "battery" or "version", the least version, whether ARM64 machines have a source.
    doubt: tuple | None


def shape(export):
    kind = export.result["kind"]
    if kind == "nothing":
        return "line"
    if kind != "text":
        return kind
    text = export.text
    if text["shape"] in ("returned", "allocated"):
        return text["shape"]
    if text["shape"] == "two_buffers":
        return "two"
    if text.get("null_asks"):
        return "long"
    return "wide" if any(a["type"] == "wchar_t*" for a in export.arguments) else "narrow"


def plan(export):
    numbers = {}
    for r in export.reserved_numbers:
        numbers.setdefault(r["value"] & 0xFFFFFFFF, (r["reason"], bool(r.get("also_reading"))))
    doubt = None
    if export.doubt:
        doubt = (export.doubt, export.minimum_table_version, export.routes["arm64"] != "none")
    return Plan(shape(export), (export.text or {}).get("capacity") or 0,
                tuple(a for a in export.arguments if role(a) in ("value", "text")),
                tuple((value, *rest) for value, rest in numbers.items()),
                tuple((r["text"], r["reason"]) for r in export.reserved_texts), doubt)


def is_com_flag(argument):
    return argument["name"] in ("com_flag", "initialize_com")
