"""include/vexa/vexa.hpp: one method per export over the hand-written template."""

import catalogue
import reference
from catalogue import role

TEMPLATE = catalogue.ROOT / "interface" / "templates" / "vexa.hpp"
# Start() and Session, and one written by hand.
BY_HAND = {"InitializeWinIo", "ShutdownWinIo", "HealthyTable_Read_Fan"}
DOUBT = {None: "kNone", "battery": "kBattery", "version": "kVersion"}


def constant(reason):
    return "Reason::k" + "".join(word.capitalize() for word in reason.split("_"))


def number(value):
    value &= 0xFFFFFFFF
    return f"0x{value:X}u" if value > 9999 else f"{value}u"


def numbers(export):
    rows = [f"{{{number(r['value'])}, {constant(r['reason'])}{', true' if r.get('also_reading') else ''}}}"
            for r in export.reserved_numbers]
    return "Table{{" + ", ".join(rows) + "}}" if rows else "{}"


def texts(export):
    rows = [f"{{\"{r['text']}\", {constant(r['reason'])}}}" for r in export.reserved_texts]
    return "Texts{{" + ", ".join(rows) + "}}" if rows else "{}"


def facts(export):
    flag = lambda value: "true" if value else "false"
    return (f"    {{\"{export.name}\", {export.minimum_table_version or 0}, {flag(export.routes['arm64'] != 'none')}, "
            f"{flag(export.doubt)}}},")


def parameters(export):
    """Declared, and passed on."""
    declared, passed = [], []
    for a in export.arguments:
        if role(a) == "value":
            default = " = 1" if a["name"] in ("com_flag", "initialize_com") else ""
            declared.append(f"{a['type']} {a['name']}{default}")
            passed.append(a["name"])
        elif role(a) == "text":
            declared.append(f"const std::wstring& {a['name']}")
            passed.append(f"{a['name']}.c_str()")
        elif role(a) == "utf16":
            declared = [f"std::wstring_view {a['name']}"]
    return ", ".join(declared), "".join(f", {p}" for p in passed)


def call(export, passed):
    """Type of the answer, and the call that gives it."""
    function, place, kind = f"decltype(&::{export.name})", f"{export.ordinal - 1}", export.result["kind"]
    if kind in ("number", "flag"):
        value = "bool" if kind == "flag" else "int32_t" if export.result["signed"] else "uint32_t"
        return f"Answer<{value}>", f"Number<{value}, {function}>({place}, {numbers(export)}, detail::Doubt::{DOUBT[export.doubt]}{passed})"
    if kind == "done":
        return "Answer<void>", f"Done<{function}>({place}, {numbers(export)}{passed})"
    if kind == "record":
        record = export.arguments[0]["type"].rstrip("*")
        return f"Answer<{record}>", f"Filled<{record}, {function}>({place})"
    if kind == "nothing":
        return "void", f"Line<{function}>({place}, text)"
    shape, capacity = export.text["shape"], export.text["capacity"]
    if shape == "returned":
        return "Answer<std::string>", f"Returned<{function}>({place}, {texts(export)})"
    if shape == "allocated":
        return "Answer<std::wstring>", f"Allocated<{function}>({place}{passed})"
    if shape == "two_buffers":
        return "Answer<DiskUsage>", f"TwoTexts<{function}>({place}, {capacity}{passed})"
    if export.text.get("null_asks"):
        return "Answer<std::wstring>", f"LongText<{function}>({place}, {capacity}, {numbers(export)}, {texts(export)}{passed})"
    char = "wchar_t" if any(a["type"] == "wchar_t*" for a in export.arguments) else "char"
    text = "std::wstring" if char == "wchar_t" else "std::string"
    return f"Answer<{text}>", f"Text<{char}, {function}>({place}, {capacity}, {numbers(export)}, {texts(export)}{passed})"


def wrapped(comment):
    """A comment of at most 120 columns."""
    lines, line = [], "  //"
    for word in comment.split():
        if len(line) + 1 + len(word) > 118:
            lines.append(line)
            line = "  //"
        line += f" {word}"
    return lines + [line]


def split_call(answer, expression):
    """One statement, over as many lines as 120 columns ask for."""
    keyword = "" if answer == "void" else "return "
    line = f"    {keyword}{expression};"
    if len(line) <= 120:
        return [line]
    head, tail = expression.split(">(", 1)
    lines, line = [f"    {keyword}{head}>("], "       "
    for piece in tail.replace("}, ", "},\0").replace("{}, ", "{},\0").split("\0"):
        if len(line) + 1 + len(piece) > 118:
            lines.append(line)
            line = "       "
        line += f" {piece}"
    return lines + [line + ";"]


def method(export):
    declared, passed = parameters(export)
    answer, expression = call(export, passed)
    unit = reference.unit_text(export) if export.result["kind"] == "number" and export.result["unit"] else ""
    lines = wrapped(f"{export.summary}{' A ' + unit + '.' if unit else ''}")
    lines.append(f"  {answer} {export.name}({declared}) const {{")
    if "Table{{" in expression:
        lines.append(f"    using Table = std::array<detail::Reserved, {len(export.reserved_numbers)}>;")
    if "Texts{{" in expression:
        lines.append(f"    using Texts = std::array<detail::ReservedText, {len(export.reserved_texts)}>;")
    return lines + split_call(answer, expression) + ["  }"]


def header(exports, top):
    methods = []
    for family in top["families"]:
        methods += [f"  // ---- {family['title']} ----", ""]
        for export in exports.values():
            if export.family == family["family"] and export.name not in BY_HAND:
                methods += method(export) + [""]
    reasons = [f"  {constant(name)[8:]},  // {meaning}" for name, meaning in top["reasons"].items()]
    names = [f'    case {constant(name)}: return "{name}";' for name in top["reasons"]]
    text = TEMPLATE.read_text(encoding="utf-8")
    for mark, made in (("REASONS", reasons), ("REASON_NAMES", names), ("METHODS", methods),
                       ("EXPORTS", [facts(export) for export in exports.values()])):
        text = text.replace(f"@{mark}@", "\n".join(made))
    return text.replace("@COUNT@", str(len(exports)))
