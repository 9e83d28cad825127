"""Medians over several runs: for every comparison the median of its medians and of its quartiles, and the least and
the greatest median."""

import re
import statistics
import sys

LINE = re.compile(r"(?P<name>.+?) +(?:ratio|difference) (?P<value>[-\d.]+)(?P<unit> ns)? "
                  r"\(quartiles (?P<low>[-\d.]+) to (?P<high>[-\d.]+), (?P<limit>no limit|limit [\d.]+)\), "
                  r"(?P<own>[\d.e+]+) us, bare (?P<bare>[\d.e+]+) us")

found = {}
with open(sys.argv[1], encoding="utf-8") as output:
    for line in output:
        if match := LINE.match(line):
            found.setdefault(match["name"], []).append(match)

for name, matches in found.items():
    def numbers(part):
        return [float(match[part]) for match in matches]
    values = numbers("value")
    print(f"{name:40} {statistics.median(values):.3f}{matches[0]['unit'] or ''} of {len(values)} runs "
          f"({min(values):.3f} to {max(values):.3f}), quartiles {statistics.median(numbers('low')):.3f} to "
          f"{statistics.median(numbers('high')):.3f}, {matches[0]['limit']}, "
          f"{statistics.median(numbers('own')):.4g} us, bare {statistics.median(numbers('bare')):.4g} us")
