"""scenario_variants.py FOLDER: writes variants of the shipped scenarios, at least 40 with the shipped ones themselves.

Each changes one thing that the client's output depends on: registers, versions, failing exchanges, hostile texts.
Prints "NAME EXIT_CODE COMMAND FORMATS ROUTE" for each, the exit code being what the command promises for it; those of the
firmware's route come last.
"""

import json
import pathlib
import re
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from scenario_edit import SHIPPED, gauge, group, load, put, register, row

HOSTILE_NAMES = ["=cmd()", "\"},{\"", "<script>", "a,b;c\\\\y%s%n"]
HOSTILE_TERMINAL = "\u001b[2J\u202e\r\n\u009b31m<b>`\"'\\"


def variant(base, change):
    scenario = load(base)
    change(scenario)
    return scenario


def with_rule(on, then, **when):
    return lambda s: s.setdefault("rules", []).append({"on": on, "then": then, **when})


def table_version(number):
    def change(scenario):
        scenario["ec"]["healthy_table_version"] = number
    return change


def set_register(number, offset, **value):
    """Replaces what a group's registers from `offset` hold."""
    def change(scenario):
        if not register(scenario, number, offset):
            group(scenario, number)["registers"].append({"offset": offset})
        put(register(scenario, number, offset), **value)
    return change


def firmware_gauge(words):
    """Replaces words of the gauge that the firmware reads; None: all of it is gone."""
    def change(scenario):
        ec = scenario["firmware"]["ec"]
        if words is None:
            ec["gauge"], ec["tables"] = [], []
        for number, word in (words or {}).items():
            row(ec["gauge"], "register", number)["word"] = word
    return change


def radio_name(name):
    """The Wi-Fi adapter, its network and the network's name in one hostile text."""
    def change(scenario):
        wlan = scenario["radios"]["wlan"]["interfaces"][0]
        old = wlan["name"]
        wlan["name"] = name
        wlan["connection"].update(ssid={"hex": name_bytes(name)}, profile=name)
        for network in wlan["networks"]:
            network["ssid"] = {"hex": name_bytes(name)}
        for adapter in scenario["radios"]["network"]:
            if adapter["name"] == old:
                adapter["name"] = name
    return change


def name_bytes(name):
    return " ".join(f"{byte:02X}" for byte in name.encode("utf-8")[:32])


def product_name(name):
    """Every text of the firmware's tables in one hostile text."""
    def change(scenario):
        for table in scenario["firmware"]["tables"]:
            for entry in table["rows"]:
                for key, value in entry.items():
                    if isinstance(value, str) and table["properties"][key] == "string" and not value.isdigit():
                        entry[key] = name
    return change


def settings_variants():
    """Firmware that does not offer the quiet fan, refuses it, and forgets it: exit codes 5, 6 and 7."""
    def fan(**members):
        def change(scenario):
            device = next(d for d in scenario["firmware"]["devices"]["list"] if d["device"] == "0x00110019")
            device.update(members)
        return change
    yield "settings-5", variant("healthy-x64", fan(status=0))
    yield "settings-6", variant("healthy-x64", fan(accepts=[]))
    yield "settings-7", variant("healthy-x64", fan(mask=0))


def variants():
    """Name, scenario, exit code, command. On the firmware's route: those whose names begin with "arm64"."""
    for name in sorted(path.stem for path in SHIPPED.glob("*.json") if "arm64" not in path.stem):
        yield name, load(name), 1 if name == "silent-ec" else 0, "status"
    for version in (7, 9, 10, 13, 14, 22, 23, 255):
        yield f"version-{version}", variant("healthy-x64", table_version(version)), 0, "status"
    for what, offset, word in (("empty", 0x30, 0), ("full", 0x30, 100), ("overfull", 0x30, 101), ("rest", 0x38, 0),
                               ("discharge", 0x38, 0xF000), ("minus-one", 0x38, 0xFFFF), ("freezing", 0x34, 2631),
                               ("no-date", 0x54, 0), ("cell-dead", 0x4A, 0), ("new", 0x2E, 0)):
        yield what, variant("healthy-x64", set_register(1, offset, word=word)), 0, "status"
    for what, dword in (("none", 0), ("battery", 0x553201B4), ("variable", 0x991190FA), ("pps", 0xC1A4213C),
                        ("epr", 0xDFC096F0), ("spr", 0xE004B0E1), ("reserved", 0xF0000001), ("ones", 0xFFFFFFFF)):
        changed = variant("healthy-x64", set_register(6, 0x1E, dword=dword))
        yield f"contract-{what}", changed, 0, "adapter"
    for i, name in enumerate(HOSTILE_NAMES):
        yield f"name-{i}", variant("healthy-x64", lambda s: put(gauge(s, 0x21), text=name)), 0, "battery"
    controls = "1B 5B 32 4A 0D 0A 07 9B 33 31 6D FF FE 80"
    yield "name-controls", variant("healthy-x64", lambda s: put(gauge(s, 0x21), hex=controls)), 0, "battery"
    for i, name in enumerate((HOSTILE_NAMES[0], HOSTILE_NAMES[1], HOSTILE_TERMINAL)):
        yield f"radio-{i}", variant("healthy-x64", radio_name(name)), 0, "radio"
        yield f"product-{i}", variant("healthy-x64", product_name(name)), 0, "inventory"
    read = {"ec_command": "0xDD", "group": 1}
    for name, change, code in (
            ("one-read-fails", with_rule({**read, "offset": "0x31"}, {"fail": "0xC0000001"}), 0),
            ("fails-later", with_rule({"control_code": "0x80102070"}, {"driver_status": 5}, **{"from": 30}), 0),
            ("short-answers", with_rule({"control_code": "0x80102070"}, {"answer_length": 0}), 0),
            ("no-open", with_rule({"open": "VexaSAIO"}, {"fail": "0xC0000022"}), 1)):
        yield name, variant("healthy-x64", change), code, "status"
    for what, words, code in (("healthy", {}, 0), ("empty", {0x0D: 0, 0x0F: 0}, 0), ("failed-calls", {0x0D: 0, 0x09: 0}, 0),
                              ("discharge", {0x0A: 0xF000}, 0), ("silent", None, 1)):
        yield f"arm64-{what}", variant("healthy-arm64", firmware_gauge(words)), code, "status"


# Those that every format is looked at for; the others are compared as table and JSON.
IN_ALL_FORMATS = re.compile("healthy-x64|hostile-answers|silent-ec|no-battery|version-22|contract-spr|name-[01]|name-controls|radio-.|product-.|arm64-healthy")


def main(folder):
    out = pathlib.Path(folder)
    out.mkdir(parents=True, exist_ok=True)
    for name, scenario in settings_variants():
        (out / f"{name}.json").write_text(json.dumps(scenario), encoding="utf-8")
    for name, scenario, exit_code, command in variants():
        (out / f"{name}.json").write_text(json.dumps(scenario), encoding="utf-8")
        print(name, exit_code, command, "all" if IN_ALL_FORMATS.fullmatch(name) else "two",
              "ARM64" if name.startswith("arm64") else "x64")


if __name__ == "__main__":
    main(sys.argv[1])
