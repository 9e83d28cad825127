#!/usr/bin/env python3
"""Checks the lines of samples/python/sampling.py on the healthy notebook.

usage: check_samples.py FILE COUNT
"""

import json
import sys

lines = [json.loads(line) for line in open(sys.argv[1], encoding="utf-8")]
assert len(lines) == int(sys.argv[2]), f"{len(lines)} samples"
for line in lines:
    values = line["values"]
    assert values["charge_percent"] == 84, values
    assert values["temperature_dK"] == 3033, values
    assert isinstance(values["fully_charged"], bool), values
    assert isinstance(values["manufacturer"], str) and values["manufacturer"], values
    assert set(values) | set(line["missing"]) >= {"network", "on_external_power", "current_mA", "voltage_mV"}, line
