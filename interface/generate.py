#!/usr/bin/env python3
"""Writes everything that is made from the catalogue, or with --check says which of the committed files are stale.

usage: generate.py [--check]
"""

import sys

import catalogue
import cpp
import csharp_binding
import python_binding
import reference
import rust_binding

# Folders that hold made files only: a file in them that nothing makes is stale too.
MADE_FOLDERS = ("docs/reference",)


def made_files():
    """Path from the root of the checkout, and text."""
    top = catalogue.read()
    exports = catalogue.load(top)
    files = {"interface/exports.json": catalogue.layout(top)}
    files |= reference.pages(exports, top)
    files["include/vexa/vexa.hpp"] = cpp.header(exports, top)
    files["bindings/python/vexawinio.py"] = python_binding.module(exports, top)
    files["bindings/csharp/VexaWinIO.cs"] = csharp_binding.source(exports, top)
    files["bindings/rust/src/lib.rs"] = rust_binding.source(exports, top)
    return files


def stale(files):
    """Paths that are not as they would be written now, and files that nothing makes any more."""
    root = catalogue.ROOT
    found = [path for path, text in files.items()
             if not (root / path).is_file() or (root / path).read_text(encoding="utf-8") != text]
    for folder in MADE_FOLDERS:
        found += [str(file.relative_to(root)) for file in (root / folder).glob("*") if str(file.relative_to(root)) not in files]
    return found


def main():
    if sys.argv[1:] not in ([], ["--check"]):
        sys.exit(__doc__)
    files = made_files()
    old = stale(files)
    if sys.argv[1:] == ["--check"]:
        for path in old:
            print(f"FAIL {path} is stale: run interface/generate.py")
        sys.exit(1 if old else 0)
    for path in old:
        file = catalogue.ROOT / path
        if path in files:
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(files[path], encoding="utf-8")
        else:
            file.unlink()
        print(path)


if __name__ == "__main__":
    main()
