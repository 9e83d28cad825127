"""bindings/rust/src/lib.rs."""

import catalogue
from plan import BY_HAND, plan

TEMPLATE = catalogue.ROOT / "interface" / "templates" / "lib.rs"
TYPES = {"uint8_t": "u8", "uint32_t": "u32", "int32_t": "i32", "VexaText": "VexaText", "char*": "*mut u8", "wchar_t*": "*mut u16",
         "const wchar_t*": "*const u16", "const void*": "*const c_void", "uint32_t*": "*mut u32",
         "VexaPdIcPartNumber*": "*mut VexaPdIcPartNumber", "wchar_t**": "*mut *mut u16"}
FIELDS = {"char": "u8", "uint32_t": "u32"}
COVERED = ("number", "flag", "done", "narrow", "wide", "long", "returned")


def reason(name):
    return "Reason::" + "".join(word.capitalize() for word in name.split("_"))


def record(one):
    lines = ["    #[repr(C)]", "    #[derive(Clone, Copy)]", f"    pub struct {one['name']} {{"]
    for f in one["fields"]:
        kind = FIELDS[f["type"]]
        lines.append(f"        pub {f['name']}: {'[%s; %d]' % (kind, f['count']) if f['count'] > 1 else kind},")
    return lines + ["    }", ""]


def function_type(export):
    inside = ", ".join(TYPES[a["type"]] for a in export.arguments)
    back = "" if export.returns == "void" else f" -> {TYPES[export.returns]}"
    return f"    pub type {export.name} = unsafe extern \"C\" fn({inside}){back};"


def method(export):
    p = plan(export)
    declared = "".join(f", {a['name']}: {'&str' if a['type'] == 'const wchar_t*' else TYPES[a['type']]}" for a in p.arguments)
    given = ", ".join(f"wide({a['name']}.as_ref()).as_ptr()" if a["type"] == "const wchar_t*" else a["name"] for a in p.arguments)
    numbers = "&[" + ", ".join(f"(0x{v:X}, {reason(why)}, {str(also).lower()})" for v, why, also in p.numbers) + "]"
    texts = "&[" + ", ".join(f'("{text}", {reason(why)})' for text, why in p.texts) + "]"
    signed = export.result.get("signed")
    answer = {"number": "i32" if signed else "u32", "flag": "bool", "done": "()"}.get(p.shape, "String")
    call = f"unsafe {{ function({given}) }}"
    if p.shape in ("number", "flag"):
        doubt = "Doubt::None"
        if p.doubt:
            arm = f", {str(p.doubt[2]).lower()}" if p.doubt[0] == "battery" else ""
            doubt = f"Doubt::{p.doubt[0].capitalize()}({p.doubt[1]}{arm})"
        source = f"{call} as u32" if export.returns == "int32_t" else call
        convert = {"i32": ".map(|a| a as i32)", "bool": ".map(|a| a != 0)", "u32": ""}[answer]
        body = f"self.judge({source}, {numbers}, {doubt}){convert}"
    elif p.shape == "done":
        body = f"self.done({call}, {numbers})"
    elif p.shape == "returned":
        body = f"self.returned({call}, {texts})"
    else:
        inner = f"unsafe {{ function({', '.join(filter(None, ['text', given]))}) }}"
        inner = f"{{ {inner}; 1 }}" if export.returns == "void" else inner
        body = f"self.{p.shape}({p.capacity}, |text| {inner}, {numbers}, {texts})"
    return [f"    /// {export.summary}", f"    pub fn {export.name}(&self{declared}) -> Answer<{answer}> {{",
            f"        let function = unsafe {{ self.get::<raw::{export.name}>(\"{export.name}\") }}?;", f"        {body}", "    }", ""]


def source(exports, top):
    methods, records = [], []
    for export in exports.values():
        if export.name not in BY_HAND and plan(export).shape in COVERED:
            methods += method(export)
    for one in top["records"]:
        records += record(one)
    reasons = []
    for name, meaning in top["reasons"].items():
        reasons += [f"    /// {meaning}", f"    {reason(name)[8:]},"]
    text = TEMPLATE.read_text(encoding="utf-8")
    for mark, made in (("REASONS", reasons), ("RECORDS", records), ("TYPES", [function_type(e) for e in exports.values()]),
                       ("METHODS", methods[:-1])):
        text = text.replace(f"@{mark}@", "\n".join(made))
    return text
