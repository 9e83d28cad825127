"""The least library with another library's import table.

same_imports.py make DLL SOURCE    writes its source
same_imports.py check DLL TWIN     compares the two tables
"""

import pathlib
import sys

import pefile

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "tests" / "artefacts"))
from pe_file import imports as imports_of  # noqa: E402


def imports(path):
    tables = imports_of(pefile.PE(path))
    return {dll.lower(): sorted(functions) for dll, functions in tables.items()}


def make(dll, source):
    names = sorted({name for functions in imports(dll).values() for name in functions})
    lines = [f"extern void* __imp_{name};" for name in names]
    lines.append("__declspec(dllexport) void** const imported[] = {")
    lines += [f"  &__imp_{name}," for name in names]
    lines += ["};", ""]
    pathlib.Path(source).write_text("\n".join(lines))


def check(dll, twin):
    wanted, found = imports(dll), imports(twin)
    if wanted == found:
        return
    for name in sorted(wanted.keys() | found.keys()):
        lacking = set(wanted.get(name, ())) - set(found.get(name, ()))
        more = set(found.get(name, ())) - set(wanted.get(name, ()))
        if lacking or more:
            print(f"{name}: lacks {sorted(lacking)}, has besides {sorted(more)}")
    sys.exit(1)


{"make": make, "check": check}[sys.argv[1]](*sys.argv[2:])
