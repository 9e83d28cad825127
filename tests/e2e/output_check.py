"""output_check.py SCHEMA KEYS.json FOLDER: checks what vexahealth printed for many scenarios.

FOLDER holds, per scenario NAME: NAME.json (--json), NAME.txt (table), for some also NAME.ndjson, NAME.csv and NAME.prom, and
NAME.codes with the expected exit code and the actual ones; NAME.document is JSON alone. Every JSON value must satisfy the
schema; every format must carry the same facts; nothing may hold a control character. The last line is "N passed, N failed".
"""

import csv
import json
import pathlib
import re
import sys

import jsonschema

sys.dont_write_bytecode = True
from client_output import CONTROL, MOVING, run

WORDS = {"ok": "", "no_answer": "no answer", "unsupported": "unsupported", "not_present": "not present",
         "not_collected": "not collected", "error": "error"}
SCALES = {"mV": 1000, "mA": 1000, "mW": 1000}


def volts(value):
    return f"{value // 1000}.{value % 1000:03d} V"


def shown(key, reading):
    """How the table words a value, worked out from its unit alone: one text, or several of which one must stand there."""
    value, unit = reading["value"], reading["unit"]
    if isinstance(value, bool):
        return ("yes", "on") if value else ("no", "off")
    if isinstance(value, str):
        return value if len(value) < 30 and re.fullmatch(r"[A-Za-z0-9 .:_()-]*", value) else None
    if unit == "mV":
        return volts(value)
    if unit == "mA":
        return f"{value:+d} mA" if key == "battery.current" and value else f"{value} mA"
    if unit == "%":
        return f"{value} %"
    if unit == "0.1 K":
        return f"({value // 10}.{value % 10} K)"
    if unit in ("W", "°C", "RPM", "dBm", "Mbit/s", "MT/s"):
        return f"{value} {unit}"
    if unit is None and not key.endswith(".word"):
        return (str(value), *(f"0x{value:0{digits}x}" for digits in (2, 4, 8)), "none" if value == 0 else str(value))
    return None if unit is None else str(value)


class Check:
    def __init__(self, schema, keys):
        self.validator = jsonschema.Draft202012Validator(schema)
        self.keys = {key["key"]: key for key in keys["keys"]}
        self.problems = []

    def fail(self, text):
        self.problems.append(text)

    def read(self, path):
        text = path.read_bytes().decode("utf-8")
        if CONTROL.search(text):
            self.fail(f"{path.name}: a control character: {CONTROL.search(text)[0]!r}")
        return text

    def scenario(self, path):
        document = json.loads(self.read(path.with_suffix(".json")))
        self.schema(document)
        self.complete(document)
        self.table(document, self.read(path.with_suffix(".txt")))
        for end, look in (("ndjson", self.lines), ("csv", self.records), ("prom", self.prometheus)):
            if path.with_suffix(f".{end}").exists():
                look(document, self.read(path.with_suffix(f".{end}")))
        self.codes(path.read_text())

    def schema(self, document):
        for error in self.validator.iter_errors(document):
            self.fail(f"schema: {'/'.join(map(str, error.absolute_path))}: {error.message[:200]}")

    def complete(self, document):
        expected = {key for key, row in self.keys.items() if document["command"] in row["commands"]}
        if set(document["readings"]) != expected:
            self.fail(f"keys differ: {sorted(expected ^ set(document['readings']))}")

    def table(self, document, text):
        """Each reading's line stands in its section, with its value and its status in words."""
        sections, title = {}, None
        for line in text.split("\n"):
            if line and not line.startswith(" "):
                title = line
            lines = sections.setdefault(title, [])
            if line.startswith("   "):
                lines[-1] += " " + line.strip()  # the rest of a long value
            else:
                lines.append(line)
        for key, reading in document["readings"].items():
            row = self.keys[key]
            if row["detail"]:
                continue
            start = f"  {row['label']}  "
            lines = [line + " " for line in sections.get(row["section"], []) if (line + "  ").startswith(start)]
            if len(lines) != 1:
                self.fail(f"table: {key} has {len(lines)} lines")
                continue
            line = lines[0]
            if reading["status"] != "ok" and f" {WORDS[reading['status']]}" not in line:
                self.fail(f"table: {key} is not {reading['status']}: {line}")
            if reading["status"] == "ok" and re.search(r"  (no answer|unsupported|not present|not collected|error)\b", line):
                self.fail(f"table: {key} is ok: {line}")
            if reading["status"] == "ok" and key not in MOVING:
                words = shown(key, reading)
                choices = (words,) if isinstance(words, str) else words
                if choices is not None and not any(re.search(f" {re.escape(choice)}[ ,]", line) for choice in choices):
                    self.fail(f"table: {key} does not show {words}: {line}")

    def lines(self, document, text):
        readings = {}
        for line in text.splitlines():
            value = json.loads(line)
            readings[value["key"]] = {name: value[name] for name in value if name not in ("time", "key")}
        self.same("ndjson", document, readings)

    def records(self, document, text):
        rows = list(csv.DictReader(text.splitlines()))
        readings = {row["key"]: row for row in rows}
        if list(readings) != list(document["readings"]):
            self.fail("csv: other keys")
            return
        for key, reading in document["readings"].items():
            row = readings[key]
            if (row["status"], row["unit"], row["source"]) != (reading["status"], reading["unit"] or "", reading["source"]):
                self.fail(f"csv: {key}: {row}")
            value = reading["value"]
            if key in MOVING or (isinstance(value, str) and shown(key, reading) is None):
                continue
            words = "" if value is None else value if isinstance(value, str) else str(value).lower()
            if row["value"] != words:
                self.fail(f"csv: {key} is {row['value']}, not {words}")

    def same(self, what, document, readings):
        for key, reading in document["readings"].items():
            if key not in MOVING and readings.get(key) != reading:
                self.fail(f"{what}: {key} is {readings.get(key)}, not {reading}")

    def prometheus(self, document, text):
        samples = {}
        for line in text.splitlines():
            if line.startswith("#"):
                continue
            match = re.fullmatch(r'([a-z_][a-z0-9_]*(?:\{(?:[a-z]+="(?:[^"\\]|\\.)*",?)*\})?) (-?[0-9.]+)', line)
            if not match:
                self.fail(f"prometheus: {line}")
                continue
            samples[match[1]] = float(match[2])
        if samples.get("vexahealth_up") is None:
            self.fail("prometheus: no vexahealth_up")
        for key, reading in document["readings"].items():
            if key in MOVING:
                continue
            metric = self.keys[key]["metric"]
            if metric.startswith("vexahealth_text_info"):
                told = [name for name in samples if name.startswith(metric.removesuffix("}") + ",")]
                if len(told) != (reading["value"] is not None):
                    self.fail(f"prometheus: {key}: {told}")
                continue
            actual = samples.get(metric)
            if reading["value"] is None:
                expected = None
            elif reading["unit"] == "0.1 K":
                expected = reading["value"] / 10 - 273.15
            else:
                expected = int(reading["value"]) / SCALES.get(reading["unit"], 1)
            if (actual is None) != (expected is None) or (actual is not None and abs(actual - expected) > 1e-9):
                self.fail(f"prometheus: {key} is {actual}, not {expected}")

    def codes(self, text):
        expected, *actual = text.split()
        if any(code != expected for code in actual):
            self.fail(f"exit codes {actual}, not {expected}")


def main(schema, keys, folder):
    schema = json.loads(pathlib.Path(schema).read_text(encoding="utf-8"))
    keys = json.loads(pathlib.Path(keys).read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)

    def problems(path):
        check = Check(schema, keys)
        if path.suffix == ".codes":
            check.scenario(path)
        else:
            check.schema(json.loads(check.read(path)))
        return check.problems

    paths = sorted(path for end in ("codes", "document") for path in pathlib.Path(folder).glob(f"*.{end}"))
    run((path.name, lambda path=path: problems(path)) for path in paths)


if __name__ == "__main__":
    main(*sys.argv[1:])
