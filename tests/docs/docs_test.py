#!/usr/bin/env python3
"""Runs the commands of the documentation, and compares what they print with what the pages show.

usage: docs_test.py [PAGE...]     (all Markdown files; the x64, ARM64 and native builds are there)

A block of "sh" runs from the root of the checkout; "vexahealth" in it is ./run, in a folder that is thrown away. A block of "text" right after it is what it prints,
where a line "..." stands for any lines. In a comment right before a block:

  not run: REASON     it does not run here; the reason is for the reader
  exit N              it ends with N instead of 0

Links between the pages lead somewhere. Blocks of other languages are no commands; a block of Windows commands must say why it is not run.
"""

import dataclasses
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
SHIMS = pathlib.Path(__file__).resolve().parent / "bin"
LIMIT_S = 300
NO_COMMANDS = {"c", "cpp", "csharp", "json", "promql", "python", "rust", "text", "yaml", "xml", "cmake"}


@dataclasses.dataclass
class Block:
    page: str
    line: int
    language: str
    body: str
    remark: str
    shown: str | None = None


def blocks(page, text):
    """The fenced blocks of a page."""
    found, lines, i, remark = [], text.split("\n"), 0, ""
    adjacent = False  # nothing but blank lines since the last block
    while i < len(lines):
        line = lines[i]
        if fence := re.match(r"^(`{3,})(\w*)\s*$", line):
            end = next((k for k in range(i + 1, len(lines)) if lines[k].rstrip() == fence[1]), None)
            if end is None:
                raise ValueError(f"{page}:{i + 1}: a block without an end")
            block = Block(page, i + 1, fence[2], "\n".join(lines[i + 1:end]) + "\n", remark)
            if block.language == "text" and adjacent and found[-1].language == "sh" and not remark:
                found[-1].shown = block.body
            found.append(block)
            i, adjacent, remark = end, True, ""
        elif comment := re.match(r"^<!-- (.*) -->$", line):
            remark = comment[1]
        elif line.strip():
            adjacent, remark = False, ""
        i += 1
    return found


def difference(shown, printed):
    """The first line of `shown` that `printed` lacks at its place; None when there is none."""
    printed = printed.split("\n")
    at, gap = 0, False
    for line in shown.rstrip("\n").split("\n"):
        if line.strip() == "...":
            gap = True
            continue
        if gap:
            at = next((k for k in range(at, len(printed)) if printed[k].rstrip() == line.rstrip()), len(printed))
        if at >= len(printed) or printed[at].rstrip() != line.rstrip():
            return line
        at, gap = at + 1, False
    rest = [line for line in printed[at:] if line.strip()]
    return None if gap or not rest else f"(and no more, but there is {rest[0]!r})"


def run(commands, folder):
    """Exit code (None: no end in time), output, errors. What the commands started ends with them."""
    environment = os.environ | {"PATH": f"{SHIMS}:{os.environ['PATH']}", "VEXA_DOCS_FOLDER": str(folder)}
    with open(folder / "out", "w+b") as out, open(folder / "err", "w+b") as err:
        shell = subprocess.Popen(["bash", "-euo", "pipefail", "-c", commands], cwd=ROOT, env=environment, stdin=subprocess.DEVNULL,
                                 stdout=out, stderr=err, start_new_session=True)
        try:
            code = shell.wait(LIMIT_S)
        except subprocess.TimeoutExpired:
            code = None
            os.killpg(shell.pid, signal.SIGKILL)
            shell.wait()
        texts = []
        for file in (out, err):
            file.seek(0)
            texts.append(file.read().decode("utf-8", "replace"))
    return code, *texts


def fault(block):
    """What is wrong with a block; None when nothing is. The second value: whether it ran."""
    reason = re.match(r"^not run: (.+)$", block.remark)
    expected = re.match(r"^exit (\d+)$", block.remark)
    if block.remark and not reason and not expected:
        return f"unknown remark {block.remark!r}", False
    if block.language in NO_COMMANDS or reason:
        return None, False
    if block.language != "sh":
        return f"commands of {block.language or 'no language'!r} do not run here: say why, or write sh", False
    with tempfile.TemporaryDirectory() as folder:
        code, out, err = run(block.body, pathlib.Path(folder))
    if code is None:
        return f"no end within {LIMIT_S} s", True
    wanted = int(expected[1]) if expected else 0
    if code != wanted:
        return f"exit code {code}, not {wanted}\n{out[-800:]}{err[-800:]}", True
    missing = difference(block.shown, out) if block.shown is not None else None
    return (f"does not print: {missing}\n{out[-1500:]}" if missing else None), True


def dead_links(page, text):
    """Links to files that are not there; those that a block shows are no links."""
    text = re.sub(r"^(`{3,}).*?^\1$", "", text, flags=re.DOTALL | re.MULTILINE)
    targets = [target.split("#")[0] for target in re.findall(r"\]\(([^)\s]+)\)", text) if "://" not in target]
    return [target for target in targets if target and not (ROOT / page).parent.joinpath(target).exists()]


def git(*arguments):
    return subprocess.run(["git", "-C", str(ROOT), *arguments], capture_output=True, text=True, check=True).stdout


def main():
    pages = sys.argv[1:] or [name for name in git("ls-files", "-co", "--exclude-standard", "*.md").split("\n") if name]
    before, passed, failed = git("status", "--porcelain"), 0, 0

    def tell(name, why):
        nonlocal passed, failed
        print(f"FAIL {name}: {why}" if why else f"ok {name}", flush=True)
        passed, failed = (passed, failed + 1) if why else (passed + 1, failed)

    for page in pages:
        tell(f"{page}: links", " ".join(dead_links(page, (ROOT / page).read_text())) or None)
        for block in blocks(page, (ROOT / page).read_text()):
            why, ran = fault(block)
            if why or ran:
                tell(f"{page}:{block.line}", why)
    tell("the checkout is as it was", None if git("status", "--porcelain") == before else git("status", "--porcelain"))
    print(f"{passed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
