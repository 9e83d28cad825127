"""bindings/csharp/VexaWinIO.cs."""

import catalogue
from plan import BY_HAND, is_com_flag, plan

TEMPLATE = catalogue.ROOT / "interface" / "templates" / "VexaWinIO.cs"
TYPES = {"uint8_t": "byte", "uint32_t": "uint", "int32_t": "int", "void": "void", "VexaText": "VexaText", "char*": "byte[]",
         "wchar_t*": "[In, Out] char[]", "const wchar_t*": "string", "const void*": "string", "uint32_t*": "[In, Out] uint[]",
         "VexaPdIcPartNumber*": "VexaPdIcPartNumber*", "wchar_t**": "out IntPtr"}
FIELDS = {"char": "byte", "uint32_t": "uint"}


def reason(name):
    return "Reason." + "".join(word.capitalize() for word in name.split("_"))


def record(one):
    lines = ["  [StructLayout(LayoutKind.Sequential)]", f"  public struct {one['name']} {{"]
    for f in one["fields"]:
        many = f["count"] > 1
        lines.append(f"    public {'fixed ' if many else ''}{FIELDS[f['type']]} {f['name']}{'[%d]' % f['count'] if many else ''};")
    return lines + ["  }", ""]


def declaration(export):
    inside = ", ".join(f"{TYPES[a['type']]} {a['name']}" for a in export.arguments)
    return ["  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]",
            f"  public static extern {TYPES[export.returns]} {export.name}({inside});"]


def numbers(p):
    rows = [f"R(0x{v:X}, {reason(why)}{', true' if also else ''})" for v, why, also in p.numbers]
    return "new[] { " + ", ".join(rows) + " }" if rows else "new Reserved[0]"


def body(export, p):
    """Type of the answer, and the expression that gives it."""
    given = [a["name"] for a in p.arguments]
    call = f"Native.{export.name}({', '.join(given)})"
    if p.shape in ("number", "flag"):
        signed = export.result.get("signed")
        to = "bool" if p.shape == "flag" else "int" if signed else "uint"
        convert = {"bool": "a => a != 0", "int": "a => unchecked((int)a)", "uint": "a => a"}[to]
        source = f"unchecked((uint){call})" if export.returns == "int32_t" else call
        doubt = ""
        if p.doubt:
            doubt = f", Doubt.{p.doubt[0].capitalize()}, {p.doubt[1]}, {str(p.doubt[2]).lower()}"
        return to, f"Number(() => {source}, {convert}, {numbers(p)}{doubt})"
    if p.shape == "done":
        return "bool", f"Done(() => {call}, {numbers(p)})"
    texts = "".join(f", T(\"{text}\", {reason(why)})" for text, why in p.texts)
    if p.shape == "returned":
        return "string", f"Returned(() => {call}{texts})"
    if p.shape == "allocated":
        return "string", f"Allocated((out IntPtr t) => Native.{export.name}(out t, {', '.join(given)}))"
    if p.shape == "two":
        return "string[]", f"Two((a, b) => Native.{export.name}(a, b, {', '.join(given)}), {p.capacity})"
    inner = f"Native.{export.name}({', '.join(['text'] + given)})"
    inner = f"{{ {inner}; return 1; }}" if export.returns == "void" else inner
    maker = {"narrow": "Narrow", "wide": "Wide", "long": "Long"}[p.shape]
    return "string", f"{maker}(text => {inner}, {p.capacity}, {numbers(p)}{texts})"


def method(export):
    p = plan(export)
    names = {"uint8_t": "byte", "uint32_t": "uint", "int32_t": "int", "const wchar_t*": "string"}
    declared = ", ".join(f"{names[a['type']]} {a['name']}{' = 1' if is_com_flag(a) else ''}" for a in p.arguments)
    lines = [f"  // {export.summary}"]
    if p.shape == "record":
        kind = "Native." + export.arguments[0]["type"].rstrip("*")
        return lines + [f"  public Answer<{kind}> {export.name}() {{", f"    var record = new {kind}();", "    uint answer;", "    try {",
                        f"      answer = Native.{export.name}(&record);", "    } catch (EntryPointNotFoundException) {",
                        f"      return new Answer<{kind}>(Reason.MissingExport);", "    }",
                        f"    return answer == 1 ? new Answer<{kind}>(record) : new Answer<{kind}>(Reason.NoAnswer);", "  }", ""]
    answer, expression = body(export, p)
    return lines + [f"  public Answer<{answer}> {export.name}({declared}) {{", f"    return {expression};", "  }", ""]


def source(exports, top):
    text = TEMPLATE.read_text(encoding="utf-8")
    declarations, methods, records = [], [], []
    for export in exports.values():
        declarations += declaration(export)
        if export.name not in BY_HAND and plan(export).shape != "line":
            methods += method(export)
    for one in top["records"]:
        records += record(one)
    reasons = [f"  {reason(name)[7:]},  // {meaning}" for name, meaning in top["reasons"].items()]
    for mark, made in (("REASONS", reasons), ("RECORDS", records), ("DECLARATIONS", declarations), ("METHODS", methods)):
        text = text.replace(f"@{mark}@", "\n".join(made))
    return text
