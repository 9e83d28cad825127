"""report_check.py FOLDER DOCS.md: checks what report_test.sh let vexahealth write.

Per scenario NAME the folder holds NAME.html (report), NAME.all (all --json) and NAME.codes. The last line is
"N passed, N failed".
"""

import html.parser
import json
import pathlib
import re
import sys

sys.dont_write_bytecode = True
from client_output import CONTROL, MOVING, run

VOID = {"meta", "br"}
CHANGING = MOVING | {"inventory.cpu_load", "inventory.gpu_load"}
MASKED = "masked: it tells this machine from others"
EXPECTED = {
    "healthy-x64": {"controller": "good", "battery_wear": "good", "cell_balance": "good", "adapter_power": "good",
                    "fans": "good", "wifi_signal": "good", "readings": "good"},
    "worn-battery": {"battery_wear": "watch", "cell_balance": "act", "battery_protection": "watch",
                     "processor_temperature": "watch", "adapter_power": "not_there"},
    "no-battery": {"battery_wear": "not_there", "cell_balance": "not_there", "fans": "not_there",
                   "adapter_power": "good"},
    "silent-ec": {"controller": "act", "battery_wear": "unknown", "fans": "unknown", "readings": "watch"},
    "hostile-answers": {"readings": "watch", "battery_wear": "unknown", "battery_temperature": "unknown"},
}


class Page(html.parser.HTMLParser):
    """Elements closed in order, the text, and what the page would load."""

    def __init__(self, text):
        super().__init__()
        self.open, self.problems, self.text, self.data, self.ids = [], [], "", "", []
        self.feed(text)
        if self.open:
            self.problems.append(f"not closed: {self.open}")

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if tag not in VOID:
            self.open.append(tag)
        if tag == "section":
            self.ids.append(attributes["id"])
        if tag == "script" and attributes != {"type": "application/json", "id": "vexahealth-data"}:
            self.problems.append(f"script {attributes}")
        for name, value in attributes.items():
            if name.startswith("on") or name == "src" or (name == "href" and not value.startswith("#")):
                self.problems.append(f"{tag} {name}={value}")

    def handle_startendtag(self, tag, attributes):
        pass

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.problems.append(f"</{tag}> at {self.getpos()}")

    def handle_data(self, data):
        if self.open and self.open[-1] == "script":
            self.data += data
        elif not self.open or self.open[-1] != "style":
            self.text += data + " "


def words(text):
    return re.sub(r"\s+", " ", text)


def check_scenario(folder, name, docs):
    problems = []
    text = (folder / f"{name}.html").read_bytes().decode("utf-8")
    everything = json.loads((folder / f"{name}.all").read_bytes())
    page = Page(text)
    problems += page.problems
    if CONTROL.search(text):
        problems.append("a control character")
    if page.ids != ["verdicts", "battery", "adapter", "thermal", "radio", "settings", "inventory", "controller",
                    "missing"]:
        problems.append(f"sections {page.ids}")
    data = json.loads(page.data)
    problems += [f"no style for {part}" for part in ("@media print", "prefers-color-scheme: dark") if part not in text]
    for key, reading in everything["readings"].items():
        reported = data["readings"].get(key)
        if reported is None:
            problems.append(f"{key} is missing")
        elif key not in CHANGING and reported != reading and reported["reason"] != MASKED:
            problems.append(f"{key}: {reported} for {reading}")
        elif reading["status"] == "ok" and reported["reason"] == MASKED and isinstance(reading["value"], str):
            problems += [f"{key} is not masked" for piece in re.split("[;,]", reading["value"])
                         if len(piece.strip()) > 5 and piece.strip() in text]
    levels = {verdict["id"]: verdict["level"] for verdict in data["verdicts"]}
    problems += [f"{verdict}: {levels.get(verdict)}, not {level}" for verdict, level in EXPECTED[name].items()
                 if levels.get(verdict) != level]
    for verdict in data["verdicts"]:
        if verdict["finding"] not in words(page.text):
            problems.append(f"{verdict['id']}: its finding is not in the page")
        if words(verdict["rule"]) not in docs:
            problems.append(f"{verdict['id']}: its rule is not in the docs as it stands: {verdict['rule']}")
    codes = (folder / f"{name}.codes").read_text().split()
    if codes[0] != codes[1]:
        problems.append(f"exit codes {codes}")
    return problems


def check_files(folder):
    """--output, --show-serials, --json and a file that can't be written."""
    problems = []
    shown = (folder / "healthy-x64.shown").read_bytes().decode("utf-8")
    serial = json.loads((folder / "healthy-x64.all").read_bytes())["readings"]["inventory.serial_number"]["value"]
    if serial not in shown or "holds serial numbers" not in shown:
        problems.append("--show-serials does not show them")
    if (folder / "healthy-x64.printed").read_bytes() or (folder / "refused").read_bytes():
        problems.append("--output also prints")
    moving = re.compile(r"\d{4}-\d\d-\d\d[T ]\d\d:\d\d(:\d\d(\.\d+Z)?)?|\d+ %|\"value\": \d+")
    still = [moving.sub("", (folder / f"healthy-x64.{end}").read_bytes().decode("utf-8")) for end in ("file", "html")]
    if still[0] != still[1]:
        problems.append("--output writes something else")
    data = json.loads((folder / "healthy-x64.data").read_bytes())
    if data["command"] != "report" or len(data["verdicts"]) != 11 or data["serials"] != "masked":
        problems.append("--json is not the data")
    codes = (folder / "healthy-x64.codes").read_text().split()[2:]
    if codes != ["0", "0", "4", "0"]:
        problems.append(f"exit codes {codes}")
    return problems


def main():
    folder, docs = pathlib.Path(sys.argv[1]), words(pathlib.Path(sys.argv[2]).read_text(encoding="utf-8"))
    checks = {name: lambda name=name: check_scenario(folder, name, docs) for name in EXPECTED}
    checks["files"] = lambda: check_files(folder)
    run(checks.items())


main()
