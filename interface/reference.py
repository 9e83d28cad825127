"""The reference pages: one per family, and the index of all exports."""

import catalogue

MADE = "<!-- Made by interface/generate.py from interface/exports.json: change that. -->\n"


def cell(text):
    return str(text).replace("|", "\\|")


def declaration(export):
    inside = ", ".join(f"{a['type']} {a['name']}" for a in export.arguments) or "void"
    return f"{export.returns} {export.name}({inside});"


def number_text(value):
    return f"{value} (0x{value:X})" if value > 9999 else f"{value}"


def unit_text(export):
    result = export.result
    if result["kind"] != "number":
        return {"flag": "0 or 1", "text": "text", "done": "1: done", "record": "1: the record is filled",
                "nothing": "nothing"}[result["kind"]]
    sign = "signed " if result["signed"] else ""
    scale = f"{result['scale']:g} " if result["scale"] != 1 else ""
    unit = f", in {scale}{result['unit']}" if result["unit"] else ""
    return f"{sign}number of {result['bits']} bits{unit}"


def wait_text(wait):
    bound = f"at most {wait['ms']} ms" if wait["ms"] else "the library waits for nothing"
    if wait["beyond"]:
        return f"{bound}; not bounded by the library: {wait['beyond']}"
    return bound


def route_text(export, top):
    x64, arm64 = (top["routes"][export.routes[machine]] for machine in catalogue.MACHINES)
    return x64 if x64 == arm64 else f"x64: {x64}. ARM64: {arm64}"


def argument_lines(export):
    for a in export.arguments:
        facts = [a["meaning"]]
        if "range" in a:
            facts.append(f"{a['range'][0]} to {a['range'][1]}")
        if "unit" in a:
            facts.append(f"in {a['unit']}")
        if "capacity" in a:
            kind = "bytes" if a["type"] == "char*" else "characters"
            facts.append(f"at least `{a['capacity_name']}` ({a['capacity']}) {kind}")
        if "slots" in a:
            facts.append(f"{a['slots']} slots are always enough")
        yield f"- `{a['name']}`: {'; '.join(facts)}."


def reserved_lines(export):
    if not export.reserved:
        yield "No special answer."
        return
    yield "| answer | reason | when |"
    yield "|---|---|---|"
    for r in export.reserved:
        shown = number_text(r["value"]) if "value" in r else f"\"{r['text']}\""
        if r.get("also_reading"):
            shown += ", also a true reading"
        yield f"| {cell(shown)} | `{r['reason']}` | {cell(r['when'])} |"


FAILING = {"fewer": "a smaller number", "zero_bytes": "the number with 0 in that byte's place", "cut": "the text up to there", "fewer_items": "the text without those pieces",
           "fewer_characters": "the text without those characters",
           "fewer_counts": "smaller numbers in the text"}


def failing_lines(export):
    """What it answers when something failed, but that is no special answer."""
    for f in export.failing:
        shown = FAILING.get(f["as"]) or f"`{f.get('text', f.get('value'))}`"
        route = f", on {f['route']}" if "route" in f else ""
        yield f"Otherwise, when something fails: {shown}{route}, when {f['when']}."


def export_section(export, top):
    version = export.minimum_table_version
    rows = [("gives", unit_text(export)), ("from", route_text(export, top)),
            ("`InitializeWinIo` first", "yes, on x64" if export.needs_initialize else "no"),
            ("least table version", "-" if version is None else version),
            ("threads", top["threads"][export.threads]), ("waits", wait_text(export.wait)),
            ("ordinal", export.ordinal)]
    if export.effect != "reads":
        rows.insert(1, ("effect", {"writes": "changes a setting or the hardware", "clears": "reading clears what was read",
                                   "selects": "changes which fan or sensor is selected, for all programs"}[export.effect]))
    lines = [f"## {export.name}", "", export.summary, "", "```c", declaration(export), "```", ""]
    lines += list(argument_lines(export)) + ([""] if export.arguments else [])
    lines += ["| | |", "|---|---|"] + [f"| {name} | {cell(value)} |" for name, value in rows] + [""]
    failing = list(failing_lines(export))
    return lines + list(reserved_lines(export)) + ([""] + failing if failing else []) + [""]


def family_page(family, exports, top):
    lines = [MADE, f"# {family['title']}", "", family["about"], "", f"Header: `vexa/{family['header']}`.", ""]
    lines += ["| export | gives |", "|---|---|"]
    lines += [f"| [`{e.name}`](#{e.name.lower()}) | {cell(e.summary)} |" for e in exports] + [""]
    for export in exports:
        lines += export_section(export, top)
    return "\n".join(lines).rstrip() + "\n"


def index_page(exports, top):
    lines = [MADE, "# Reference", "",
             f"The {len(exports)} exports of `{top['library']}`, as `interface/exports.json` has them for programs.", "",
             "| family | exports |", "|---|---|"]
    for family in top["families"]:
        lines.append(f"| [{family['title']}]({family['family']}.md) | {len(family['exports'])} |")
    lines += ["", "## Reasons", "",
              "An answer that is no reading has one of these reasons; [Reading a missing value](../missing-values.md) tells more.", "",
              "| reason | meaning |", "|---|---|"]
    lines += [f"| `{name}` | {meaning} |" for name, meaning in top["reasons"].items()]
    lines += ["", "## All exports", "", "| ordinal | export | family |", "|---|---|---|"]
    lines += [f"| {e.ordinal} | [`{e.name}`]({e.family}.md#{e.name.lower()}) | {e.family} |" for e in exports.values()]
    return "\n".join(lines) + "\n"


def pages(exports, top):
    """Path from the root of the checkout, and text."""
    made = {"docs/reference/README.md": index_page(exports, top)}
    for family in top["families"]:
        mine = [e for e in exports.values() if e.family == family["family"]]
        made[f"docs/reference/{family['family']}.md"] = family_page(family, mine, top)
    return made
