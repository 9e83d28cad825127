#!/usr/bin/env python3
"""docs_test.py on pages made for it: what runs, what is refused, what differs."""

import sys
import unittest

sys.dont_write_bytecode = True
from docs_test import blocks, dead_links, fault

SHOWN = "```sh\nprintf 'a\\nb\\nc\\n'\n```\n\n```text\n{}\n```"
# A page, and a part of what is wrong with it; None: nothing is.
PAGES = [
    ("```sh\ntrue\n```", None),
    ("```sh\nfalse\ntrue\n```", "exit code 1"),
    ("```sh\nfalse | true\n```", "exit code 1"),
    ("<!-- exit 3 -->\n```sh\nexit 3\n```", None),
    ("<!-- exit 3 -->\n```sh\ntrue\n```", "not 3"),
    ("```bat\nx\n```", "say why"),
    ("```\nx\n```", "say why"),
    ("<!-- not run: Windows only -->\n```bat\nx\n```", None),
    ("<!-- not run: Windows only -->\ntext\n```bat\nx\n```", "say why"),
    ("<!-- not run -->\n```bat\nx\n```", "unknown remark"),
    ("```sh\ntrue\n```\nBut:\n```text\nx\n```", None),
    *((SHOWN.format(good), None) for good in ("a\nb\nc", "a\n...", "...\nc", "a\n...\nc", "...\nb\n...")),
    *((SHOWN.format(bad), "does not print") for bad in ("a\nb", "b\nc", "a\nc", "...\nb", "c\n...\na", "a\nb\nc\nd", "...\nx")),
]


class Pages(unittest.TestCase):
    def test_blocks(self):
        for page, expected in PAGES:
            with self.subTest(page):
                found = next((why for why, _ in map(fault, blocks("page", page)) if why), None)
                self.assertEqual(found is None, expected is None, found)
                self.assertIn(expected or "", found or "")
        with self.assertRaises(ValueError):
            blocks("page", "```sh\ntrue\n")

    def test_dead_links(self):
        page = "[a](decisions.md#packages) [b](no-such-page.md) [c](https://example.com/x) [d](#here)\n```c\na[0](gone)\n```\n"
        self.assertEqual(dead_links("docs/README.md", page), ["no-such-page.md"])


if __name__ == "__main__":
    outcome = unittest.main(exit=False, verbosity=1).result
    bad = len(outcome.failures) + len(outcome.errors)
    print(f"{outcome.testsRun - bad} passed, {bad} failed")
    sys.exit(1 if bad else 0)
