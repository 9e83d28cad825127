#!/usr/bin/env python3
"""docs/fleet.md against a real Prometheus on the loopback interface, over the readings of 20 simulated notebooks.

usage: fleet_test.py FOLDER     (NAME.prom of each notebook; see run.sh)
"""

import http.server
import json
import os
import pathlib
import re
import shutil
import socket
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import urllib.parse
import urllib.request

sys.dont_write_bytecode = True
import notebooks

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCS = ROOT / "docs" / "fleet"
TOOLS = pathlib.Path(os.environ.get("VEXA_PROMETHEUS") or pathlib.Path(
    os.environ.get("VEXA_CACHE") or pathlib.Path(os.environ.get("XDG_CACHE_HOME", pathlib.Path.home() / ".cache")) / "vexa") / "prometheus")
METRICS = {path.stem: path.read_text() for path in sorted(pathlib.Path(sys.argv.pop()).glob("*.prom"))}
OLD, OFF = "nb13", "nb21"  # whose file is two hours old; which is not reached
START_S = 60
WITH_CAPACITY = sum('key="battery.device_name",value' in text and "_full_charge_capacity 65535" not in text for text in METRICS.values())
# Of the names: cycle_count and the like are what the readings are called.
ACCEPTED = re.compile(r'^(vexahealth_(battery_cycle|driver_reference|fan)_count non-histogram.*|vexahealth_battery_gauge_chip .*|'
                      r'vexahealth_system_s_mode .*)$')


def promtool(*arguments, **options):
    return subprocess.run([TOOLS / "promtool", *arguments], capture_output=True, text=True, timeout=60, **options)


class Collectors:
    """Each notebook's text-file collector, on a loopback address of its own."""

    def __init__(self):
        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                name = self.server.notebook
                age = 7200 if name == OLD else 60
                body = METRICS[name] + ("# TYPE windows_textfile_mtime_seconds gauge\n"
                                        f'windows_textfile_mtime_seconds{{file="C:\\\\textfile\\\\vexahealth.prom"}} {time.time() - age}\n')
                self.send_response(200)
                self.send_header("Content-Type", "text/plain; version=0.0.4")
                self.end_headers()
                self.wfile.write(body.encode())

            def log_message(self, *_):
                pass

        self.servers, self.port = [], 0
        for i, name in enumerate(METRICS):
            server = http.server.ThreadingHTTPServer((f"127.0.1.{i + 1}", self.port), Handler)
            self.port = server.server_port
            server.notebook = name
            threading.Thread(target=server.serve_forever, daemon=True).start()
            self.servers.append(server)
        self.targets = {name: f"127.0.1.{i + 1}:{self.port}" for i, name in enumerate([*METRICS, OFF])}

    def close(self):
        for server in self.servers:
            server.shutdown()
            server.server_close()


class Prometheus:
    def __init__(self, folder, targets):
        shutil.copytree(DOCS, folder, dirs_exist_ok=True)
        config = folder / "prometheus.yml"
        text, found = re.subn(r"(scrape|evaluation)_interval: 1m", r"\1_interval: 4s", config.read_text())
        assert found == 2
        config.write_text(text)
        (folder / "targets").mkdir()
        groups = [{"targets": [address], "labels": {"instance": name}} for name, address in targets.items()]
        (folder / "targets" / "fleet.json").write_text(json.dumps(groups))
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            self.address = f"127.0.0.1:{probe.getsockname()[1]}"
        self.log = open(folder / "log", "w+")
        self.process = subprocess.Popen(
            [TOOLS / "prometheus", f"--config.file={config}", f"--storage.tsdb.path={folder / 'data'}", f"--web.listen-address={self.address}"],
            stdout=self.log, stderr=self.log)

    def ask(self, path, **parameters):
        url = f"http://{self.address}/api/v1/{path}?{urllib.parse.urlencode(parameters)}"
        with urllib.request.urlopen(url, timeout=10) as answer:
            return json.load(answer)["data"]

    def query(self, text):
        return self.ask("query", query=text)["result"]

    # All were scraped, and the rules evaluated since.
    def wait(self, count, batteries):
        end = time.monotonic() + START_S
        while time.monotonic() < end:
            try:
                if len(self.query("up")) == count and len(self.query("vexahealth:battery_capacity:ratio")) == batteries:
                    return
            except OSError:
                pass
            time.sleep(0.2)
        self.log.seek(0)
        raise AssertionError("the fleet was not seen:\n" + self.log.read())

    def close(self):
        self.process.terminate()
        self.process.wait(timeout=20)
        self.log.close()


def queries():
    """What stands before each query of the page, and the query."""
    return dict(re.findall(r"^([^\n]+):\n\n```promql\n(.*?)```", (ROOT / "docs" / "fleet.md").read_text(), re.DOTALL | re.MULTILINE))


def instances(result):
    return {row["metric"]["instance"] for row in result}


class Fleet(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.collectors = Collectors()
        cls.server = Prometheus(pathlib.Path(cls.folder.name), cls.collectors.targets)
        try:
            cls.server.wait(len(METRICS) + 1, WITH_CAPACITY)
        except BaseException:
            cls.tearDownClass()
            raise
        cls.queries = queries()

    @classmethod
    def tearDownClass(cls):
        cls.server.close()
        cls.collectors.close()
        cls.folder.cleanup()

    def alerts(self):
        found = {}
        for alert in self.server.ask("alerts")["alerts"]:
            found.setdefault(alert["labels"]["alertname"], set()).add(alert["labels"]["instance"])
        return found

    def test_there_are_twenty_and_they_differ(self):
        self.assertEqual(list(METRICS), list(notebooks.fleet()))
        self.assertEqual(len(METRICS), 20)
        self.assertEqual(len(set(METRICS.values())), 20)

    def test_who_is_named(self):
        for heading, expected in (("Worn batteries", notebooks.WORN), ("Cells out of balance by more than 0.1 V", {"nb02"}),
                                  ("Embedded controllers that do not answer", notebooks.SILENT)):
            self.assertEqual(instances(self.server.query(self.queries[heading])), expected, heading)

    def test_most_worn(self):
        rows = self.server.query(self.queries["The three batteries that lost most"])
        self.assertEqual({row["metric"]["instance"]: round(float(row["value"][1]), 3) for row in rows},
                         {"nb20": 0.408, "nb17": 0.490, "nb02": 0.521})

    def test_stopped_fans(self):
        rows = self.server.query(self.queries["Fans that stand still on a hot processor"])
        self.assertEqual({(row["metric"]["instance"], row["metric"]["index"]) for row in rows}, notebooks.FAN_STOPPED)

    def test_firmware_revisions(self):
        rows = self.server.query(self.queries["Notebooks by revision of the EC's firmware"])
        expected = sum('key="ec.firmware_revision",value' in text for text in METRICS.values())
        self.assertEqual(sum(int(row["value"][1]) for row in rows), expected)
        self.assertGreater(expected, 10)

    def test_readings_by_status(self):
        rows = self.server.query(self.queries["Readings of the whole fleet by what became of them"])
        self.assertEqual({row["metric"]["status"] for row in rows},
                         {"ok", "no_answer", "unsupported", "not_present", "not_collected", "error"})

    def test_every_query_of_the_page_is_checked_here(self):
        source = pathlib.Path(__file__).read_text()
        self.assertEqual([heading for heading in self.queries if f'"{heading}"' not in source], [])
        self.assertEqual((ROOT / "docs" / "fleet.md").read_text().count("```promql"), len(self.queries))

    def test_alerts(self):
        expected = {"BatteryWorn": notebooks.WORN, "SilentEc": notebooks.SILENT,
                    "FanStopped": {name for name, _ in notebooks.FAN_STOPPED}, "NoReadings": {OLD, OFF} | notebooks.DOWN}
        # Each alert is evaluated by itself, the last one some seconds after the first.
        end = time.monotonic() + START_S
        while (found := self.alerts()) != expected and time.monotonic() < end:
            time.sleep(0.2)
        self.assertEqual(found, expected)

    def test_texts_that_nobody_asked_for_stay_out(self):
        rows = self.server.query("vexahealth_text_info")
        self.assertEqual({row["metric"]["key"] for row in rows}, {"battery.device_name", "battery.manufacturer", "ec.firmware_revision"})
        self.assertFalse([row for row in rows if "__tmp_keep" in row["metric"]])
        self.assertTrue(any('key="battery.manufacture_information",value' in text for text in METRICS.values()))

    def test_files_are_sound(self):
        for arguments in (("check", "rules", DOCS / "vexahealth.rules.yml"), ("check", "config", DOCS / "prometheus.yml"),
                          ("test", "rules", ROOT / "tests" / "fleet" / "rules_test.yml")):
            outcome = promtool(*arguments)
            self.assertEqual(outcome.returncode, 0, outcome.stdout + outcome.stderr)

    def test_metrics_are_well_formed(self):
        for name, text in METRICS.items():
            outcome = promtool("check", "metrics", input=text)
            remarks = [line for line in outcome.stderr.splitlines() if not ACCEPTED.match(line)]
            self.assertEqual(remarks, [], name)
            self.assertIn(outcome.returncode, (0, 3), name)


if __name__ == "__main__":
    outcome = unittest.main(argv=sys.argv[:1], exit=False, verbosity=2).result
    bad = len(outcome.failures) + len(outcome.errors)
    print(f"{outcome.testsRun - bad} passed, {bad} failed")
    sys.exit(1 if bad else 0)
