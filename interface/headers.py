"""What the public headers say besides functions: their constants. And the compiler's word on what they declare."""

import re

from catalogue import ROOT

FOLDER = ROOT / "include" / "vexa"
# Macros of the headers that are no constants.
PLUMBING = re.compile(r"VEXA_(\w+_H_|BEGIN_DECLS|END_DECLS|NOEXCEPT)$")


def constants():
    """Name and value of each constant: a number, or a text."""
    found, aliases = {}, {}
    for header in sorted(FOLDER.glob("*.h")):
        text = re.sub(r"/\*.*?\*/", "", header.read_text(), flags=re.DOTALL)
        for name, value in re.findall(r"^#define (VEXA_\w+)[ \t]+(\S.*?)[ \t]*$", text, re.MULTILINE):
            if PLUMBING.match(name):
                continue
            if value.startswith("VEXA_"):
                aliases[name] = value
            elif value.startswith('"'):
                found[name] = value.strip('"')
            else:
                found[name] = int(value.strip("()").rstrip("uU"), 0)
    found |= {name: found[value] for name, value in aliases.items()}
    return dict(sorted(found.items()))


def c_number(value):
    return f"{value}" if -2**31 < value < 2**31 else f"{value}u" if value > 0 else f"({value + 1} - 1)"


def _record_checks(records):
    for record in records:
        name = record["name"]
        yield f"sizeof({name}) == {record['size']}", f"size of {name}"
        for field in record["fields"]:
            member = f"{name}.{field['name']}"
            yield f"offsetof({name}, {field['name']}) == {field['offset']}", f"offset of {member}"
            size = field["count"] * {"char": 1, "uint32_t": 4}[field["type"]]
            yield f"sizeof((({name}*)0)->{field['name']}) == {size}", f"size of {member}"


def _shared_checks(records, constant_values):
    yield from _record_checks(records)
    for name, value in constant_values.items():
        if isinstance(value, int):
            yield f"(int64_t){name} == {value}LL", name
        else:
            yield f"sizeof({name}) == {len(value) + 1}", name


def c_source(exports, records, constant_values):
    """A C translation unit that compiles when, and only when, the headers declare what the catalogue says."""
    lines = ["#include <vexa/vexa.h>"]
    lines += [f'_Static_assert({condition}, "{what}");' for condition, what in _shared_checks(records, constant_values)]
    for e in exports.values():
        inside = ", ".join(a["type"] for a in e.arguments) or "void"
        lines.append(f"extern {e.returns} (*const check_{e.name})({inside});")
        lines.append(f"{e.returns} (*const check_{e.name})({inside}) = &{e.name};")
    return "\n".join(lines) + "\n"


def cpp_source(exports, records, constant_values):
    """The same in C++, where the exact type counts and noexcept is a part of it."""
    lines = ["#include <string_view>", "#include <type_traits>", "#include <vexa/vexa.h>"]
    lines += [f'static_assert({condition}, "{what}");' for condition, what in _record_checks(records)]
    lines += [f'static_assert(std::string_view({name}) == "{value}", "{name}");'
              for name, value in constant_values.items() if isinstance(value, str)]
    for e in exports.values():
        inside = ", ".join(a["type"] for a in e.arguments)
        lines.append(f'static_assert(std::is_same_v<decltype(&{e.name}), {e.returns} (*)({inside}) noexcept>, "{e.name}");')
    return "\n".join(lines) + "\n"
