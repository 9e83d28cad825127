#!/usr/bin/env python3
"""The packages: complete, the same twice, and free of the builder's folders.

usage: package_test.py     (after cmake --build --preset x64 and arm64)
"""

import hashlib
import json
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree
import zipfile

import pefile

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "artefacts"))
from pe_file import codeview
MACHINES = ("x64", "arm64")
EXPECTED = ("bin/VexaWinIO64.dll", "bin/VexaWinIO64.pdb", "bin/vexahealth.exe", "lib/VexaWinIO64.lib", "lib/VexaWinIO64.dll.a",
            "lib/VexaWinIO64.def", "lib/cmake/VexaWinIO64/VexaWinIO64Config.cmake", "lib/pkgconfig/vexawinio64.pc",
            "include/vexa/vexa.h", "include/vexa/vexa.hpp", "docs/reference/battery.md", "share/VexaWinIO64.wprp",
            "bindings/python/vexawinio.py", "sbom.spdx.json", "SHA256SUMS", "LICENSE")


def members(path):
    with zipfile.ZipFile(path) as archive:
        top = archive.namelist()[0].split("/")[0] + "/" if path.suffix == ".zip" else ""
        return {name.removeprefix(top): archive.read(name) for name in archive.namelist()}


class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.outputs = [pathlib.Path(cls.folder.name) / name for name in ("first", "second")]
        for output in cls.outputs:
            subprocess.run([sys.executable, str(ROOT / "tools" / "package.py"), "--output", str(output)], check=True,
                           stdout=subprocess.DEVNULL)
        cls.archives = {machine: members(next(cls.outputs[0].glob(f"*-{machine}.zip"))) for machine in MACHINES}

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_same_files_give_the_same_archives(self):
        for first in self.outputs[0].iterdir():
            self.assertEqual(first.read_bytes(), (self.outputs[1] / first.name).read_bytes(), first.name)

    def test_archives_are_complete(self):
        for machine, files in self.archives.items():
            self.assertEqual([name for name in EXPECTED if name not in files], [], machine)
            self.assertEqual(len(re.findall(rb"(?<!\r)\n", files["docs/fleet/collect.cmd"])), 0, machine)

    def test_checksums_cover_every_file(self):
        for files in self.archives.values():
            sums = dict(reversed(line.split("  ", 1)) for line in files["SHA256SUMS"].decode().splitlines())
            self.assertEqual(set(sums), set(files) - {"SHA256SUMS"})
            for name, value in sums.items():
                self.assertEqual(value, hashlib.sha256(files[name]).hexdigest(), name)

    def test_bill_of_materials_lists_every_file(self):
        for files in self.archives.values():
            bill = json.loads(files["sbom.spdx.json"])
            listed = {f["fileName"][2:]: f["checksums"][1]["checksumValue"] for f in bill["files"]}
            expected = {n: hashlib.sha256(d).hexdigest() for n, d in files.items() if n not in ("SHA256SUMS", "sbom.spdx.json")}
            self.assertEqual(listed, expected)
            known = {"SPDXRef-DOCUMENT"} | {p["SPDXID"] for p in bill["packages"]} | {f["SPDXID"] for f in bill["files"]}
            for relation in bill["relationships"]:
                self.assertLessEqual({relation["spdxElementId"], relation["relatedSpdxElement"]}, known)

    def test_nothing_names_the_builders_folder(self):
        here = str(ROOT).encode()
        for machine, files in self.archives.items():
            for name, data in files.items():
                if not name.endswith(".pdb"):
                    self.assertNotIn(here, data, f"{machine} {name}")

    def test_identity_is_made_from_the_image_alone(self):
        """Stamped again over another identity and time stamp, as another folder's link would leave them, nothing differs."""
        for machine, files in self.archives.items():
            for name in ("VexaWinIO64.dll", "vexahealth.exe"):
                image, pdb = (pathlib.Path(self.folder.name) / part for part in (name, "other.pdb"))
                data = files[f"bin/{name}"]
                identity = codeview(pefile.PE(data=data))["guid"].bytes_le
                stamp = data[(header := struct.unpack_from("<I", data, 0x3C)[0]) + 8:header + 12]
                self.assertNotIn(stamp, (bytes(4), b"\xFF" * 4))
                image.write_bytes(data.replace(identity, bytes(range(16))).replace(stamp, b"time"))
                pdb.write_bytes(bytes(range(16)))
                subprocess.run([sys.executable, str(ROOT / "tools" / "stamp_image.py"), str(image), str(pdb)], check=True)
                self.assertEqual(image.read_bytes(), data, f"{machine} {name}")
                self.assertEqual(pdb.read_bytes(), identity)

    def test_nuget_layout(self):
        files = members(next(self.outputs[0].glob("*.nupkg")))
        for machine in MACHINES:
            self.assertEqual(files[f"runtimes/win-{machine}/native/VexaWinIO64.dll"], self.archives[machine]["bin/VexaWinIO64.dll"])
            self.assertIn(f"build/native/lib/{machine}/VexaWinIO64.lib", files)
        self.assertIn("build/native/include/vexa/vexa.h", files)
        for name, data in files.items():
            if name.endswith((".nuspec", ".targets", ".xml", ".rels")):
                xml.etree.ElementTree.fromstring(data)

    def test_every_known_gap_names_its_check(self):
        parts = set(re.findall(r"^\[([a-z-]+)\]$", (ROOT / "tools" / "check-kit" / "parts.txt").read_text(), re.MULTILINE))
        rows = re.findall(r"^\| (.*) \| (.*) \|$", (ROOT / "docs" / "known-gaps.md").read_text(), re.MULTILINE)[1:]
        self.assertGreater(len(rows), 20)
        for gap, check in rows:
            named = re.findall(r"`check ([a-z-]+)`", check)
            self.assertTrue(named or check.startswith("No command: "), f"no check for: {gap}")
            self.assertLessEqual(set(named), parts, gap)

    def test_recorder_profile_names_the_provider(self):
        profile = xml.etree.ElementTree.fromstring(self.archives["x64"]["share/VexaWinIO64.wprp"])
        self.assertEqual([p.get("Name") for p in profile.iter("EventProvider")], ["f952fc4a-5222-4dbb-9302-c9b9dd9d7c9c"])


if __name__ == "__main__":
    outcome = unittest.main(exit=False, verbosity=2).result
    bad = len(outcome.failures) + len(outcome.errors)
    print(f"{outcome.testsRun - bad} passed, {bad} failed")
    sys.exit(1 if bad else 0)
