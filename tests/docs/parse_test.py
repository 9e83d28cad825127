#!/usr/bin/env python3
"""docs_test.py on pages made for it: what runs, what is refused, what differs."""

import sys
import unittest

sys.dont_write_bytecode = True
from docs_test import blocks, dead_links, difference, fault


def first_fault(text):
    return next((why for why, _ in map(fault, blocks("page", text)) if why), None)


class Pages(unittest.TestCase):
    def test_commands_run(self):
        self.assertIsNone(first_fault("```sh\ntrue\n```"))
        self.assertIn("exit code 1", first_fault("```sh\nfalse\ntrue\n```"))
        self.assertIn("exit code 1", first_fault("```sh\nfalse | true\n```"))
        self.assertIn("exit code 127", first_fault("```sh\nno-such-command\n```"))

    def test_expected_exit_codes(self):
        self.assertIsNone(first_fault("<!-- exit 3 -->\n```sh\nexit 3\n```"))
        self.assertIn("not 3", first_fault("<!-- exit 3 -->\n```sh\ntrue\n```"))

    def test_what_does_not_run_says_why(self):
        for language in ("", "bat", "powershell"):
            self.assertIn("say why", first_fault(f"```{language}\nx\n```"))
            self.assertIsNone(first_fault(f"<!-- not run: Windows only -->\n```{language}\nx\n```"))
            self.assertIn("unknown remark", first_fault(f"<!-- not run -->\n```{language}\nx\n```"))
        self.assertIn("say why", first_fault("<!-- not run: Windows only -->\ntext\n```bat\nx\n```"))

    def test_what_is_shown_is_printed(self):
        shown = "```sh\nprintf 'a\\nb\\nc\\n'\n```\n\n```text\n{}\n```"
        for good in ("a\nb\nc", "a\n...", "...\nc", "a\n...\nc", "...\nb\n..."):
            self.assertIsNone(first_fault(shown.format(good)), good)
        for bad in ("a\nb", "b\nc", "a\nc", "...\nb", "c\n...\na", "a\nb\nc\nd", "..."+"\nx"):
            self.assertIn("does not print", first_fault(shown.format(bad)), bad)

    def test_text_elsewhere_is_no_output(self):
        self.assertIsNone(first_fault("```sh\ntrue\n```\nBut:\n```text\nx\n```"))

    def test_a_block_without_an_end(self):
        with self.assertRaises(ValueError):
            blocks("page", "```sh\ntrue\n")

    def test_dead_links(self):
        page = "[a](decisions.md#packages) [b](no-such-page.md) [c](https://example.com/x) [d](#here)\n```c\na[0](gone)\n```\n"
        self.assertEqual(dead_links("docs/README.md", page), ["no-such-page.md"])

    def test_nothing_printed(self):
        self.assertIsNone(difference("\n", ""))


if __name__ == "__main__":
    outcome = unittest.main(exit=False, verbosity=1).result
    bad = len(outcome.failures) + len(outcome.errors)
    print(f"{outcome.testsRun - bad} passed, {bad} failed")
    sys.exit(1 if bad else 0)
