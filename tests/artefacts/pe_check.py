#!/usr/bin/env python3
"""Checks the shipped DLLs from outside: exports, size, security flags, imports, version, PDB, trace metadata.

usage: pe_check.py [ROOT] [--x64 FILE] [--arm64 FILE]

ROOT is the checkout (the one that holds this file). A DLL that is not given is taken from ROOT/build/x64 and
ROOT/build/arm64. The images are read by pefile (tools/setup.sh checks). One line per check: "ok NAME" or "FAIL NAME: why".
"""

import argparse
import pathlib
import re
import sys
import uuid

import pefile

sys.dont_write_bytecode = True  # the checkout stays as it is
from pe_file import codeview, imports, pdb_identity, stack_checks
from trace_blob import read_trace_blobs

LARGEST = 350 * 1024
# Of a 64-bit module.
DYNAMIC_BASE, HIGH_ENTROPY_VA, NX_COMPAT = 0x0040, 0x0020, 0x0100
MACHINES = {"x64": 0x8664, "arm64": 0xAA64}
# The C++ runtime is part of the DLL; the others are missing on systems that the DLL must load on.
BANNED_DLLS = re.compile(r"(libc\+\+|libstdc\+\+|libunwind|libgcc|msvcp|vcruntime).*"
                         r"|(wlanapi|bluetoothapis|wldp)\.dll", re.IGNORECASE)
BANNED_FUNCTIONS = {"IsWow64Process2", "GetPackagesByPackageFamily"}
WRITABLE, EXECUTABLE = 0x80000000, 0x20000000
SYSTEM_FOLDER_ONLY = 0x800  # for imported libraries
DEFAULT_COOKIE = 0x00002B992DDFA232  # what loaders replace
LEAST_STACK_CHECKS = 200
PROVIDER = uuid.UUID("f952fc4a-5222-4dbb-9302-c9b9dd9d7c9c")

counts = {True: 0, False: 0}


def check(name, good, why=""):
    good = bool(good)
    counts[good] += 1
    print(f"ok {name}" if good else f"FAIL {name}: {why}")


def same(name, found, expected):
    """Lists and sets show what is missing and what is too much; everything else is shown whole."""
    why = f"{found!r}, not {expected!r}"
    if isinstance(expected, (set, dict)):
        have, want = (set(value.items()) if isinstance(value, dict) else value for value in (found, expected))
        why = f"missing {sorted(want - have)}, too much {sorted(have - want)}"
    check(name, found == expected, why)


def read_def(text):
    """Name and ordinal of each export."""
    exports = text.split("EXPORTS", 1)[1]
    rows = re.findall(r"^\s+(\w+)\s+@(\d+)\s*$", exports, re.MULTILINE)
    return {name: int(ordinal) for name, ordinal in rows}


def declared_functions(text):
    """Functions that a header declares; its comments and macros are no declarations."""
    text = re.sub(r"/\*.*?\*/", "", text, flags=re.DOTALL)
    text = re.sub(r"^\s*#(?:.*\\\n)*.*$", "", text, flags=re.MULTILINE)
    return re.findall(r"^[A-Za-z_][\w\s*]*?\b(\w+)\s*\([^()]*\)\s*VEXA_NOEXCEPT\s*;", text, re.MULTILINE)


def check_lists(root, exports, full_list):
    def_lines = (root / "VexaWinIO64.def").read_text().split("EXPORTS", 1)[1]
    entries = [line for line in def_lines.splitlines() if line.strip() and not line.strip().startswith(";")]
    same("def/every-line-is-read", len(exports), len(entries))
    same("def/has-the-whole-list", set(exports), set(full_list))
    same("list/is-sorted-without-doubles", full_list, sorted(set(full_list)))
    same("def/ordinals-are-places-in-the-list", exports,
         {name: full_list.index(name) + 1 for name in exports if name in full_list})
    declared = [name for header in sorted((root / "include" / "vexa").glob("*.h"))
                for name in declared_functions(header.read_text())]
    same("headers/declare-the-exports", set(declared), set(exports))
    same("headers/declare-each-once", len(declared), len(set(declared)))


def check_trace(name, image):
    try:
        providers, events = read_trace_blobs(image)
    except ValueError as error:
        check(f"{name}/trace-metadata", False, error)
        return
    same(f"{name}/trace-provider", providers, [{"guid": PROVIDER, "size": 17, "name": "VexaSysAnlsSrv"}])
    same(f"{name}/trace-events", events, [
        {"channel": 11, "level": level, "opcode": 0, "keyword": 0, "size": 20, "tag": 0, "name": "VexaWinDll",
         "fields": [("wstr", 1)]} for level in (1, 2, 3, 4, 5)])


def check_protection(name, pe):
    """Of the library and of the client."""
    characteristics = pe.OPTIONAL_HEADER.DllCharacteristics
    for flag, bit in (("dynamic-base", DYNAMIC_BASE), ("high-entropy-va", HIGH_ENTROPY_VA), ("nx-compat", NX_COMPAT)):
        check(f"{name}/{flag}", characteristics & bit, hex(characteristics))
    both = [section.Name for section in pe.sections if section.Characteristics & WRITABLE and section.Characteristics & EXECUTABLE]
    same(f"{name}/no-section-writable-and-executable", both, [])
    config = getattr(pe, "DIRECTORY_ENTRY_LOAD_CONFIG", None)
    check(f"{name}/load-configuration", config, "none")
    if config:
        same(f"{name}/imports-from-the-system-folder-only", config.struct.DependentLoadFlags, SYSTEM_FOLDER_ONLY)
        cookie = config.struct.SecurityCookie - pe.OPTIONAL_HEADER.ImageBase
        same(f"{name}/canary-is-the-loaders-to-seed", hex(pe.get_qword_at_rva(cookie)), hex(DEFAULT_COOKIE))
        section = pe.get_section_by_rva(cookie)
        check(f"{name}/canary-is-writable", section.Characteristics & WRITABLE, hex(section.Characteristics))
    checks = stack_checks(pe)
    check(f"{name}/functions-look-at-the-canary", checks >= LEAST_STACK_CHECKS, f"only {checks} do")


def read_image(machine, name, path):
    """None, and a failed check, for a file that is missing."""
    if not path.is_file():
        check(f"{name}/is-there", False, f"no file {path}")
        return None
    pe = pefile.PE(path)
    same(f"{name}/machine", hex(pe.FILE_HEADER.Machine), hex(MACHINES[machine]))
    same(f"{name}/pefile-has-no-complaint", pe.get_warnings(), [])
    check_protection(name, pe)
    return pe


def check_dll(name, path, exports, full_list, version):
    pe = read_image(name, name, path)
    if pe is None:
        return
    size = path.stat().st_size
    check(f"{name}/size", size <= LARGEST, f"{size} bytes, more than {LARGEST}")

    symbols = pe.DIRECTORY_ENTRY_EXPORT.symbols
    found = {symbol.name.decode(): symbol.ordinal for symbol in symbols if symbol.name}
    same(f"{name}/exports-the-whole-list", set(found), set(full_list))
    same(f"{name}/exports-and-ordinals", found, exports)
    same(f"{name}/no-export-without-a-name", [symbol.ordinal for symbol in symbols if not symbol.name], [])

    imported = imports(pe)
    check(f"{name}/imports", imported, "none found")
    same(f"{name}/no-banned-dll", [dll for dll in imported if BANNED_DLLS.fullmatch(dll)], [])
    functions = {function for of_dll in imported.values() for function in of_dll}
    same(f"{name}/no-banned-function", functions & BANNED_FUNCTIONS, set())

    fixed = getattr(pe, "VS_FIXEDFILEINFO", None)
    check(f"{name}/version-resource", fixed, "none")
    if fixed:
        high, low = fixed[0].FileVersionMS, fixed[0].FileVersionLS
        same(f"{name}/file-version", (high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF), version)
        same(f"{name}/file-type-is-dll", fixed[0].FileType, 2)

    debug = codeview(pe)
    pdb = path.with_suffix(".pdb")
    check(f"{name}/debug-directory", debug, "no CodeView record")
    check(f"{name}/pdb", pdb.is_file(), f"no file {pdb.name}")
    if debug and pdb.is_file():
        same(f"{name}/pdb-fits", pdb_identity(pdb), debug["guid"])
        check(f"{name}/pdb-has-no-folder", not re.search(r"[/\\]", debug["pdb"]), debug["pdb"])
    check_trace(name, path.read_bytes())


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    checkout = pathlib.Path(__file__).resolve().parents[2]
    parser.add_argument("root", nargs="?", type=pathlib.Path, default=checkout)
    for machine in MACHINES:
        parser.add_argument(f"--{machine}", type=pathlib.Path)
    arguments = parser.parse_args()
    root = arguments.root

    full_list = (root / "docs" / "exports.txt").read_text().split()
    exports = read_def((root / "VexaWinIO64.def").read_text())
    project = re.search(r"project\(VexaWinIO64 VERSION (\d+)\.(\d+)\.(\d+)\.(\d+)",
                        (root / "CMakeLists.txt").read_text())
    version = tuple(map(int, project.groups())) if project else None
    check_lists(root, exports, full_list)
    for machine in MACHINES:
        path = getattr(arguments, machine) or root / "build" / machine / "VexaWinIO64.dll"
        try:
            check_dll(machine, path, exports, full_list, version)
            read_image(machine, f"{machine}-client", path.with_name("vexahealth.exe"))
        except (pefile.PEFormatError, AttributeError) as error:  # a table that is not there is an attribute that is not
            check(f"{machine}/is-a-pe-file", False, error)
    print(f"{counts[True]} passed, {counts[False]} failed")
    return 1 if counts[False] else 0


if __name__ == "__main__":
    sys.exit(main())
