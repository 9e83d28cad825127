"""Calls every export that only reads, on Windows: each gives a value of the type that the catalogue tells, or a reason.

usage: every_export.py VexaWinIO64.dll
"""

import os
import sys

sys.path.insert(0, os.environ["VEXA_PYTHON"])
import vexawinio

# Changes something, or wants an argument.
SKIPPED = ("Adapter_Clear", "Adapter_Set", "Adapter_Read_Power_Data_Flag", "Power_Set", "HealthyTable_Set", "WMISet", "StopWinIo",
           "InitializeWinIo", "ShutdownWinIo", "TraceOutput", "WOA_EC_write")
GIVEN = {"wmiadd": (0xFFFFFFFF,), "Adapter_Read_PDO": (0,), "Quillo_Read_Fan": (0,), "WOA_EC_read": (1, 3),
         "RF_USBISTYPEC": ("USB\\ABSENT",)}
TYPES = {"number": int, "flag": bool, "returned": str, "narrow": str, "wide": str, "long": str, "allocated": str, "two": tuple,
         "record": vexawinio.VexaPdIcPartNumber}

library = vexawinio.Library(sys.argv[1])
values = reasons = 0
with library.session():
    assert library.wmiadd(0xFFFFFFFF) == 0
    assert library.GetIoDllVersion() == 0x00010001
    for name, row in vexawinio.EXPORTS.items():
        if name.startswith(SKIPPED):
            continue
        try:
            value = getattr(library, name)(*GIVEN.get(name, ()))
        except OSError as fault:
            raise AssertionError(f"{name}: {fault}") from fault
        except vexawinio.Missing as missing:
            assert missing.reason in vexawinio.REASONS, (name, missing.reason)
            reasons += 1
            continue
        expected = list if name == "HealthyTable_Read_Fan" else TYPES[row[2]]
        assert isinstance(value, expected), (name, value)
        values += 1
assert values >= 30, values
print(f"{values} values, {reasons} reasons")
print("every export answered")
