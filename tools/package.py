#!/usr/bin/env python3
"""Packs what was built: one zip per machine, and one NuGet package over both.

usage: package.py [--output FOLDER]     (tools/package.sh builds first)

The same files give the same archives: entries are sorted and carry the date of the commit.
"""

import argparse
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys
import time
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
PARTS = ROOT / "cmake" / "package"
MACHINES = ("x64", "arm64")
VERSION = re.search(r"project\(VexaWinIO64 VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text()).group(1)
TREES = ("include", "docs", "bindings", "samples")


def git(*arguments):
    return subprocess.run(["git", "-C", str(ROOT), *arguments], capture_output=True, text=True, check=True).stdout.strip()


def commit_time():
    return int(os.environ.get("SOURCE_DATE_EPOCH") or git("log", "-1", "--format=%ct"))


def shipped(path):
    """A file as Windows wants it: the interpreter of command files misses labels between bare line feeds."""
    data = path.read_bytes()
    return data.replace(b"\n", b"\r\n") if path.suffix == ".cmd" else data


def tree(folder):
    """Committed files below a folder, by their path from the root."""
    return {name: shipped(ROOT / name) for name in git("ls-files", "-z", folder).split("\0") if name}


def digest(data):
    return hashlib.sha256(data).hexdigest()


def bill_of_materials(name, files):
    """SPDX 2.3: the product, what is linked into it, and every file."""
    def package(identity, title, version, license_id, what):
        return {"SPDXID": f"SPDXRef-{identity}", "name": title, "versionInfo": version, "downloadLocation": "NOASSERTION",
                "filesAnalyzed": False, "licenseConcluded": license_id, "licenseDeclared": license_id,
                "copyrightText": "NOASSERTION", "comment": what}

    zig = re.search(r"ZIG_VERSION=([\d.]+)", (ROOT / "tools" / "setup.sh").read_text()).group(1)
    linked = [package("llvm-libcxx", "libc++, libc++abi, libunwind, compiler-rt", f"of ziglang {zig}", "Apache-2.0 WITH LLVM-exception",
                      "C++ runtime, linked into the DLL and the client"),
              package("mingw-w64", "mingw-w64", f"of ziglang {zig}", "ZPL-2.1", "C runtime start-up, linked into the DLL and the client"),
              package("nlohmann-json", "nlohmann-json", "3.11", "MIT", "JSON, compiled into the DLL and the client"),
              package("cli11", "CLI11", "2.1", "BSD-3-Clause", "options, compiled into the client")]
    product = package("VexaWinIO64", "VexaWinIO64", VERSION, "MIT", f"commit {git('rev-parse', 'HEAD')}")
    listed = [{"SPDXID": f"SPDXRef-File-{i}", "fileName": f"./{path}", "licenseConcluded": "NOASSERTION", "copyrightText": "NOASSERTION",
               "checksums": [{"algorithm": "SHA1", "checksumValue": hashlib.sha1(data).hexdigest()},
                             {"algorithm": "SHA256", "checksumValue": digest(data)}]}
              for i, (path, data) in enumerate(sorted(files.items()))]
    relations = [{"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES", "relatedSpdxElement": product["SPDXID"]}]
    relations += [{"spdxElementId": product["SPDXID"], "relationshipType": "STATIC_LINK", "relatedSpdxElement": p["SPDXID"]} for p in linked]
    relations += [{"spdxElementId": product["SPDXID"], "relationshipType": "CONTAINS", "relatedSpdxElement": f["SPDXID"]} for f in listed]
    created = time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(commit_time()))
    return json.dumps({"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": name,
                       "documentNamespace": f"urn:vexawinio64:{name}:{git('rev-parse', 'HEAD')}",
                       "creationInfo": {"created": created, "creators": ["Tool: tools/package.py"]},
                       "packages": [product, *linked], "files": listed, "relationships": relations}, indent=1).encode() + b"\n"


def machine_files(machine):
    build = ROOT / "build" / machine
    files = {f"bin/{name}": (build / name).read_bytes() for name in ("VexaWinIO64.dll", "VexaWinIO64.pdb", "vexahealth.exe", "vexahealth.pdb")}
    files |= {f"lib/{name}": (build / name).read_bytes() for name in ("VexaWinIO64.lib", "VexaWinIO64.dll.a")}
    files["lib/VexaWinIO64.def"] = (ROOT / "VexaWinIO64.def").read_bytes()
    config = "lib/cmake/VexaWinIO64/VexaWinIO64Config"
    files[f"{config}.cmake"] = (PARTS / "VexaWinIO64Config.cmake").read_bytes()
    files[f"{config}Version.cmake"] = (
        f'set(PACKAGE_VERSION "{VERSION}")\nif(PACKAGE_FIND_VERSION VERSION_LESS_EQUAL PACKAGE_VERSION AND '
        f'PACKAGE_FIND_VERSION_MAJOR EQUAL {VERSION.split(".")[0]})\n  set(PACKAGE_VERSION_COMPATIBLE TRUE)\nendif()\n').encode()
    files["lib/pkgconfig/vexawinio64.pc"] = (PARTS / "vexawinio64.pc.in").read_text().replace("@VERSION@", VERSION).encode()
    files["share/VexaWinIO64.wprp"] = (PARTS / "VexaWinIO64.wprp").read_bytes()
    for name in ("LICENSE", "CHANGELOG.md", "README.md"):
        files[name] = (ROOT / name).read_bytes()
    files["interface/exports.json"] = (ROOT / "interface" / "exports.json").read_bytes()
    for folder in TREES:
        files |= tree(folder)
    return files


def nuget_files(by_machine):
    x64 = by_machine["x64"]
    native = {f"build/native/{name}": data for name, data in x64.items() if name.startswith("include/")}
    native["build/native/VexaWinIO64.targets"] = (PARTS / "VexaWinIO64.targets").read_bytes()
    for machine, files in by_machine.items():
        native[f"build/native/lib/{machine}/VexaWinIO64.lib"] = files["lib/VexaWinIO64.lib"]
        native[f"runtimes/win-{machine}/native/VexaWinIO64.dll"] = files["bin/VexaWinIO64.dll"]
    native["LICENSE"] = x64["LICENSE"]
    native["VexaWinIO64.nuspec"] = f"""<?xml version="1.0" encoding="utf-8"?>
<package xmlns="http://schemas.microsoft.com/packaging/2013/05/nuspec.xsd">
  <metadata>
    <id>VexaWinIO64</id>
    <version>{VERSION}</version>
    <authors>VexaWinIO64</authors>
    <license type="file">LICENSE</license>
    <description>Notebook health library: headers, import libraries and DLLs for x64 and ARM64.</description>
    <tags>native</tags>
  </metadata>
</package>
""".encode()
    native["[Content_Types].xml"] = b"""<?xml version="1.0" encoding="utf-8"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">
  <Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml" />
  <Default Extension="nuspec" ContentType="application/octet" />
  <Default Extension="h" ContentType="application/octet" />
  <Default Extension="hpp" ContentType="application/octet" />
  <Default Extension="lib" ContentType="application/octet" />
  <Default Extension="dll" ContentType="application/octet" />
  <Default Extension="targets" ContentType="application/octet" />
  <Override PartName="/LICENSE" ContentType="application/octet" />
</Types>
"""
    native["_rels/.rels"] = b"""<?xml version="1.0" encoding="utf-8"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
  <Relationship Type="http://schemas.microsoft.com/packaging/2010/07/manifest" Target="/VexaWinIO64.nuspec" Id="R1" />
</Relationships>
"""
    return native


def write_archive(path, files, top=""):
    date = time.gmtime(max(commit_time(), 315532800))[:6]
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name in sorted(files):
            entry = zipfile.ZipInfo(top + name, date)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            archive.writestr(entry, files[name])
    print(path)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--output", type=pathlib.Path, default=ROOT / "dist")
    output = parser.parse_args().output
    output.mkdir(parents=True, exist_ok=True)
    by_machine = {machine: machine_files(machine) for machine in MACHINES if (ROOT / "build" / machine / "VexaWinIO64.dll").is_file()}
    if not by_machine:
        sys.exit("nothing is built: run tools/package.sh")
    for machine, files in by_machine.items():
        name = f"VexaWinIO64-{VERSION}-{machine}"
        files["sbom.spdx.json"] = bill_of_materials(name, files)
        files["SHA256SUMS"] = "".join(f"{digest(data)}  {path}\n" for path, data in sorted(files.items())).encode()
        write_archive(output / f"{name}.zip", files, f"{name}/")
    if set(by_machine) == set(MACHINES):
        write_archive(output / f"VexaWinIO64.{VERSION}.nupkg", nuget_files(by_machine))


if __name__ == "__main__":
    main()
