#!/usr/bin/env python3
"""Makes docs/readings.md from the client's own list: ./run keys --json | tools/readings_page.py > docs/readings.md"""

import json
import sys

HEAD = """<!-- Made by tools/readings_page.py from "vexahealth keys --json"; ./test compares them. -->

# Readings

Every reading of `vexahealth`: its key in `get` and in the formats for programs, the unit of its value there, the library's export
that it comes from, and its Prometheus metric (in base units). [The command line](client.md) tells what a status means.
"""


def page(keys):
    lines, section = [HEAD], None
    for row in keys:
        if row["section"] != section:
            section = row["section"]
            commands = " and ".join(f"`{name}`" for name in row["commands"] if name != "all")
            lines += [f"## {section}", "", f"Shown by {commands}.", "", "| key | unit | label | export | metric |",
                      "|---|---|---|---|---|"]
        lines.append(f"| `{row['key']}` | {row['unit'] or ''} | {row['label']} | `{row['source']}` | `{row['metric']}` |")
        if row is keys[-1] or keys[keys.index(row) + 1]["section"] != section:
            lines.append("")
    return "\n".join(lines[:-1]) + "\n"


if __name__ == "__main__":
    sys.stdout.write(page(json.load(sys.stdin)["keys"]))
