#!/usr/bin/env python3
"""The catalogue, the gate, the headers and the made files agree; and each of these checks notices a fault.

usage: interface_test.py
"""

import copy
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "interface"), str(ROOT / "tests" / "artefacts")]
import catalogue
import gate
import generate
import headers
from pe_check import read_def

CACHE = pathlib.Path(os.environ.get("VEXA_CACHE") or
                     pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "vexa")
ZIG = os.environ.get("VEXA_ZIG") or str(CACHE / "zig-0.17.0" / "zig")
TARGETS = ("x86_64-windows-gnu", "aarch64-windows-gnu")
LANGUAGES = {"c": ("c11", headers.c_source), "c++": ("c++20", headers.cpp_source)}
PYTHON = sys.executable


def compile_errors(source, language, target=TARGETS[0], standard=None):
    """What the compiler says; empty when it accepts the source."""
    with tempfile.TemporaryDirectory() as folder:
        result = subprocess.run(
            [ZIG, "c++" if language == "c++" else "cc", "-target", target, "-x", language, f"-std={standard or LANGUAGES[language][0]}", "-Wall", "-Wextra",
             "-Wpedantic", "-Werror", "-I", str(ROOT / "include"), "-c", "-o", f"{folder}/out.o", "-"],
            input=source, capture_output=True, text=True, timeout=300)
        return "" if result.returncode == 0 else result.stderr or "failed"


def entry(top, name):
    return next(e for f in top["families"] for e in f["exports"] if e["name"] == name)


class Agreement(unittest.TestCase):
    def test_made_files_are_fresh(self):
        self.assertEqual(generate.stale(generate.made_files()), [], "run interface/generate.py")

    def test_nothing_locked_has_changed(self):
        result = subprocess.run([PYTHON, str(ROOT / "interface" / "gate.py")], capture_output=True, text=True)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)

    def test_definition_file_has_the_ordinals(self):
        exports = catalogue.load()
        for name, ordinal in read_def((ROOT / "VexaWinIO64.def").read_text()).items():
            self.assertEqual(ordinal, exports[name].ordinal, name)

    def test_buffers_have_the_capacity_of_their_constant(self):
        constants = headers.constants()
        for export in catalogue.load().values():
            for argument in export.arguments:
                if "capacity" in argument:
                    self.assertEqual(argument["capacity"], constants[argument["capacity_name"]], export.name)

    def test_headers_declare_what_the_catalogue_says(self):
        top = catalogue.read()
        exports = catalogue.load(top)
        for language, (_, source) in LANGUAGES.items():
            for target in TARGETS:
                with self.subTest(language=language, target=target):
                    text = source(exports, top["records"], headers.constants())
                    self.assertEqual(compile_errors(text, language, target), "")

    def test_cpp_header_compiles_alone(self):
        for target in TARGETS:
            with self.subTest(target=target):
                self.assertEqual(compile_errors("#include <vexa/vexa.hpp>\n", "c++", target, "c++23"), "")

    def test_every_family_has_its_header(self):
        included = set(re.findall(r'#include "(\w+\.h)"', (ROOT / "include/vexa/vexa.h").read_text()))
        self.assertEqual({f["header"] for f in catalogue.read()["families"]} | {"base.h"}, included)


class Faults(unittest.TestCase):
    """Each check above, on an interface that somebody broke."""

    def test_compiler_notices(self):
        def returns(name, kind):
            return lambda top: entry(top, name).update(returns=kind, reserved=[])

        for expected, language, change, constants in (
                ("Quillo_Read_Fan", "c", lambda top: entry(top, "Quillo_Read_Fan")["arguments"][0].update(type="uint32_t"), {}),
                ("RF_WiFiRssi", "c++", returns("RF_WiFiRssi", "int32_t"), {}),
                ("offset of VexaPdIcPartNumber.text", "c", lambda top: top["records"][1]["fields"][2].update(offset=4), {}),
                ("size of VexaText", "c++", lambda top: top["records"][0].update(size=1023), {}),
                ("VEXA_NO_ANSWER", "c", lambda top: None, {"VEXA_NO_ANSWER": 0})):
            top = copy.deepcopy(catalogue.read())
            change(top)
            source = LANGUAGES[language][1](catalogue.load(top), top["records"], {**headers.constants(), **constants})
            self.assertIn(expected, compile_errors(source, language))

    def test_gate_notices_each_kind_of_change(self):
        now = gate.current()
        broken, new = gate.compare(now, now)
        self.assertEqual((broken, new), ([], []))

        def after(change):
            then = copy.deepcopy(now)
            change(then)
            return gate.compare(now, then)

        rsoc = "BatteryHealthyTable_Rsoc"
        for change in (
                lambda t: t["exports"].pop(rsoc),
                lambda t: t["exports"][rsoc].update(ordinal=1),
                lambda t: t["exports"][rsoc].update(signature="int32_t BatteryHealthyTable_Rsoc(void)"),
                lambda t: t["exports"][rsoc]["reserved"].pop(),
                lambda t: t["exports"][rsoc]["reserved"][0].update(reason="not_present"),
                lambda t: t["exports"]["WMIGetSN"].update(capacity=512),
                lambda t: t["records"]["VexaText"].update(size=1025),
                lambda t: t["constants"].update(VEXA_NOT_AVAILABLE=0)):
            broken, new = after(change)
            self.assertEqual((len(broken), new), (1, []))
        broken, new = after(lambda t: t["constants"].update(VEXA_NEW=1))
        self.assertEqual((broken, len(new)), ([], 1))

    def test_stale_and_left_over_files_are_noticed(self):
        files = generate.made_files()
        path = "docs/reference/battery.md"
        self.assertEqual(generate.stale({**files, path: files[path] + "x"}), [path])
        without = {name: text for name, text in files.items() if name != path}
        self.assertEqual(generate.stale(without), [path])

    def test_catalogue_refuses_contradictions(self):
        revision, mac, add = "EC_ReadEcFwRev", "RF_AP_MAC", "wmiadd"
        for change in (
                lambda top: top["families"][1]["exports"].pop(),
                lambda top: entry(top, revision)["reserved"].append(entry(top, revision)["reserved"][0]),
                lambda top: entry(top, revision)["reserved"][0].update(reason="unknown"),
                lambda top: entry(top, revision)["reserved"][0].update(value=2**32),
                lambda top: entry(top, mac)["arguments"][0].update(capacity=14),
                lambda top: entry(top, mac)["arguments"][0].update(type="char"),
                lambda top: entry(top, add).update(routes={"x64": "driver"}),
                lambda top: entry(top, add).update(colour="red")):
            top = copy.deepcopy(catalogue.read())
            change(top)
            self.assertRaises(catalogue.CatalogueError, catalogue.load, top)


if __name__ == "__main__":
    outcome = unittest.main(exit=False, verbosity=2).result
    bad = len(outcome.failures) + len(outcome.errors)
    print(f"{outcome.testsRun - bad} passed, {bad} failed")
    sys.exit(1 if bad else 0)
