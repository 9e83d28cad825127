#!/usr/bin/env python3
"""Mutation testing of the deciding code: changes one place of a file at a time and sees whether a test notices.

    tests/mutation/run.sh [--sample N] [--seed S] [--least PERCENT] [FILE...]

The mutants are universalmutator's, drawn at random until N of a file were tried (all of them with 0). Each is built
into core_test under the sanitizers; one that core_test lets through also runs the fuzz targets' corpus. A mutant that
does not compile, or that the optimizer turns into the original's object code, does not count. A mutant whose tests hang
counts as noticed. The survivors are listed at the end; the exit code is 1 when fewer than PERCENT were noticed.
"""

import argparse
import pathlib
import random
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
FILES = [
    "ec/catalogue.cc", "ec/firmware_revision.h", "ec/table_row.h", "frame/trace_metadata.h",
    "inventory/texts.cc", "radio/antenna_records.cc", "radio/bss_list.cc", "radio/count_text.cc", "radio/elements.cc",
    "radio/max_rate.cc", "radio/peripheral_class.cc", "radio/rate_tables.cc", "radio/scan_classifier.cc",
    "system/texts.h", "wmi/firmware_answer.cc",
]
TARGETS = ("elements", "bss_list", "antenna_records")
BUILD_SECONDS = 300
TEST_SECONDS = 60


def run(command, seconds, folder):
    """The exit code of a command; None when it hung."""
    try:
        return subprocess.run(command, cwd=folder, timeout=seconds, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode
    except subprocess.TimeoutExpired:
        return None


def is_code(line):
    return not re.match(r"\s*(//|#|namespace|using |$)", line)


class Tree:
    """A copy of the sources with a build folder of its own."""

    def __init__(self, folder):
        self.folder = folder
        self.build = folder / "build"
        shutil.rmtree(folder, ignore_errors=True)
        names = subprocess.run(["git", "-C", ROOT, "ls-files", "-z"], check=True, capture_output=True, text=True)
        for name in filter(None, names.stdout.split("\0")):
            if (ROOT / name).is_file():
                (folder / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(ROOT / name, folder / name)
        subprocess.run(["cmake", "-G", "Ninja", "-S", folder, "-B", self.build, "-DCMAKE_CXX_COMPILER=clang++-19",
                        "-DCMAKE_C_COMPILER=clang-19", "-DCMAKE_CXX_FLAGS=-O0 -w", "-DVEXA_CLIENT=OFF"],
                       check=True, stdout=subprocess.DEVNULL)
        if self.make("core_test", *(f"{t}_replay" for t in TARGETS)) != 0 or not self.passes():
            sys.exit("the unchanged tree does not pass")

    def make(self, *targets):
        return run(["ninja", "-C", self.build, *targets], BUILD_SECONDS, self.folder)

    def passes(self):
        """Whether every test passes; the slower ones run only when the quick ones do."""
        if run([self.build / "tests/core_test"], TEST_SECONDS, self.folder) != 0:
            return False
        if self.make(*(f"{t}_replay" for t in TARGETS)) != 0:
            return False
        return all(run([self.build / f"fuzz/{t}_replay", self.folder / "fuzz/corpus" / t], TEST_SECONDS, self.folder)
                   == 0 for t in TARGETS)

    def compiles(self, name):
        """Whether a header compiles alone; a source file is told by its build."""
        return name.endswith(".cc") or run(["clang++-19", "-std=c++23", "-w", "-fsyntax-only", "-x", "c++", "-I.",
                                            "-Iinclude", name], BUILD_SECONDS, self.folder) == 0

    def object_code(self, name):
        """The optimized object code of a source file; nothing for a header."""
        if not name.endswith(".cc"):
            return None
        out = self.folder / "mutant.o"
        subprocess.run(["clang++-19", "-std=c++23", "-w", "-O2", "-c", "-I.", "-Iinclude", name, "-o", out],
                       cwd=self.folder, check=True)
        return out.read_bytes()


def mutants(name, work):
    """(line number, old line, new line, text) of every distinct mutant of a file."""
    folder = work / "mutants" / name
    folder.mkdir(parents=True, exist_ok=True)
    original = (ROOT / name).read_text()
    subprocess.run([pathlib.Path(sys.executable).parent / "mutate", ROOT / name, "cpp", "--noCheck", "--mutantDir",
                    folder], check=True, stdout=subprocess.DEVNULL, cwd=work)
    old = original.splitlines()
    seen = {original}
    for path in sorted(folder.iterdir()):
        text = path.read_text()
        new = text.splitlines()
        place = next((i for i, pair in enumerate(zip(old, new)) if pair[0] != pair[1]), None)
        if text in seen or place is None or not is_code(old[place]):
            continue
        seen.add(text)
        yield place + 1, old[place].strip(), new[place].strip(), text


def test_file(tree, name, work, sample, seed):
    """(killed, same, invalid, survivors) of one file."""
    drawn = list(mutants(name, work))
    random.Random(f"{seed}{name}").shuffle(drawn)
    path = tree.folder / name
    original = path.read_text()
    code = tree.object_code(name)
    killed = same = invalid = 0
    survivors = []
    for number, old, new, text in drawn:
        if sample and killed + len(survivors) == sample:
            break
        path.write_text(text)
        if not tree.compiles(name) or tree.make("core_test") != 0:
            invalid += 1
        elif not tree.passes():
            killed += 1
        elif code is not None and tree.object_code(name) == code:
            same += 1
        else:
            survivors.append(f"{name}:{number}: {old}  ->  {new}")
    path.write_text(original)
    return killed, same, invalid, survivors


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int, default=40)
    parser.add_argument("--seed", default="1")
    parser.add_argument("--least", type=float, default=85)
    parser.add_argument("--work", type=pathlib.Path, default=ROOT / "build/mutation")
    parser.add_argument("files", nargs="*", default=FILES)
    options = parser.parse_args()
    work = options.work.resolve()
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)
    tree = Tree(work / "tree")
    total = noticed = 0
    survivors = []
    for name in options.files:
        killed, same, invalid, alive = test_file(tree, name, work, options.sample, options.seed)
        noticed += killed
        total += killed + len(alive)
        survivors += alive
        print(f"{name:28} {killed:4} of {killed + len(alive):4} noticed, {same} the same code, {invalid} don't compile",
              flush=True)
    percent = 100 * noticed / max(total, 1)
    print(*survivors, sep="\n")
    print(f"{noticed} of {total} mutants noticed, {percent:.1f} %")
    return 0 if percent >= options.least else 1


if __name__ == "__main__":
    sys.exit(main())
