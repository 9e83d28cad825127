#!/usr/bin/env python3
"""Packs the check kit of a machine: one zip that runs the checks on real Windows and writes one report.

usage: check_kit.py x64|arm64 [--output FOLDER]     (after cmake --build --preset x64 and native)
"""

import argparse
import pathlib
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from package import ROOT, VERSION, shipped, write_archive

PROGRAMS = ("VexaWinIO64.dll", "VexaWinIO64.pdb", "vexahealth.exe", "client/client_core_test.exe", "tests/shell_test.exe",
            "notebook/firmware/firmware_test.exe", "notebook/firmware/vexa-firmware.dll", "tools/check-kit/check.exe")
X64_PROGRAMS = ("tests/e2e_test.exe", "bench/vexa_bench.exe")
SOURCES = ("tools/check-kit/parts.txt", "cmake/package/VexaWinIO64.wprp", "docs/fleet/collect.cmd")
TREES = ("bindings/python/vexawinio.py", "samples/python/sampling.py")


def scenario_images():
    tool = ROOT / "build" / "native" / "notebook" / "scenario" / "vexa-scenario"
    sources = sorted((ROOT / "notebook" / "scenarios").glob("*.json")) + sorted((ROOT / "tests" / "e2e" / "scenarios").glob("*.json"))
    images = {}
    with tempfile.TemporaryDirectory() as folder:
        for source in sources:
            image = pathlib.Path(folder) / f"{source.stem}.bin"
            subprocess.run([tool, "build", source, image], check=True, stdout=subprocess.DEVNULL)
            images[f"simulated/{image.name}"] = image.read_bytes()
    return images


def kit_files(machine):
    build = ROOT / "build" / machine
    programs = PROGRAMS + (X64_PROGRAMS if machine == "x64" else ())
    if missing := [name for name in programs if not (build / name).is_file()]:
        sys.exit(f"not built for {machine}: {', '.join(missing)}")
    files = {pathlib.PurePath(name).name: (build / name).read_bytes() for name in programs}
    files |= {pathlib.PurePath(name).name: shipped(ROOT / name) for name in SOURCES}
    files |= {name: (ROOT / name).read_bytes() for name in TREES}
    if machine == "x64":
        # Not beside the library, which would register it in place of the notebook's own driver.
        files["simulated/VexaSAIO.sys"] = (build / "notebook" / "driver" / "VexaSAIO.sys").read_bytes()
        files["simulated/x64_readings.tsv"] = (ROOT / "tests" / "data" / "x64_readings.tsv").read_bytes()
        files |= scenario_images()
    return files


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("machine", choices=("x64", "arm64"))
    parser.add_argument("--output", type=pathlib.Path, default=ROOT / "dist")
    arguments = parser.parse_args()
    arguments.output.mkdir(parents=True, exist_ok=True)
    name = f"VexaWinIO64-check-{VERSION}-{arguments.machine}"
    write_archive(arguments.output / f"{name}.zip", kit_files(arguments.machine), f"{name}/")


if __name__ == "__main__":
    main()
