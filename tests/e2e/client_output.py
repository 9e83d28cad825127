"""What the checks of the client's output have in common."""

import re
import sys

# Nothing that is printed may hold one: line feeds apart, they steer a terminal or turn text around.
CONTROL = re.compile("[\x00-\x09\x0b-\x1f\x7f-\x9f\u202a-\u202e\u2066-\u2069\u200e\u200f]")
# What changes between two runs of the client.
MOVING = {"system.local_time", "driver.reference_count"}


def run(checks, shown=12):
    """Runs (name, function that gives its problems) one by one; the last line is "N passed, N failed"."""
    counts = [0, 0]
    for name, check in checks:
        problems = list(check())
        counts[bool(problems)] += 1
        print(f"{'FAIL' if problems else 'ok'} {name}", *problems[:shown], sep="\n     ")
    print(f"{counts[0]} passed, {counts[1]} failed")
    sys.exit(counts[1] != 0)
