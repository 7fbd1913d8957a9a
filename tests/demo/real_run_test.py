"""The demo with everything real, judged by its exit status and its summary file.

TELVAR_DEMO_BUILD names the build tree. One run at a time: they share the tree's folder demo/.
"""

import json
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import unittest

import demo_path
import running

BUILD = pathlib.Path(os.environ["TELVAR_DEMO_BUILD"])
TYPES = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 255}
KEPT = {0, 6}


class RealRunTest(unittest.TestCase):
    """Each test is a run, at whose end nothing may be left."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.file = pathlib.Path(folder.name) / "summary.json"

    def command(self, *options):
        return [sys.executable, demo_path.DRIVER, "--build", BUILD, "--json", self.file, *options]

    def run_well(self, *options):
        result = subprocess.run(self.command(*options), capture_output=True, text=True, check=False)
        print(result.stdout, result.stderr)
        self.assertEqual(0, result.returncode)
        self.assertEqual([], running.naming(BUILD / "demo"))
        summary = json.loads(self.file.read_text(encoding="ascii"))
        self.assertTrue(summary["ok"])
        self.assertEqual([], summary["problems"])
        return summary

    def assert_everything_arrived(self, summary):
        totals = summary["types"].values()
        self.assertEqual(TYPES, {total["type"] for total in totals})
        for total in totals:
            with self.subTest(type=total["type"]):
                arrived = 0 if total["type"] in KEPT else total["sent"] - total["refused"]
                self.assertGreater(total["sent"], 0)
                self.assertEqual((arrived, 0), (total["arrived"], total["different"]))
                self.assertEqual(arrived > 0, total["values"] > 0)
                self.assertGreaterEqual(total["worst_ms"], total["median_ms"])
                self.assertGreater(total["median_ms"], 0)

    def test_everything_arrives_over_tls(self):
        summary = self.run_well("--duration", "5", "--interval", "0.5")

        self.assert_everything_arrived(summary)
        self.assertEqual(0, sum(total["refused"] for total in summary["types"].values()))
        self.assertEqual(2, summary["replies"]["answer"])
        self.assertGreater(summary["replies"]["action"], 1)

    def test_everything_arrives_without_tls(self):
        summary = self.run_well("--duration", "3", "--interval", "0.5", "--plain")

        self.assert_everything_arrived(summary)
        self.assertTrue(summary["options"]["plain"])

    def test_everything_arrives_where_the_legacy_list_names(self):
        summary = self.run_well("--duration", "3", "--interval", "0.5", "--legacy")

        self.assert_everything_arrived(summary)
        self.assertTrue(summary["options"]["legacy"])

    def test_an_outage_refuses_items_and_the_next_ones_arrive(self):
        summary = self.run_well("--duration", "20", "--interval", "0.5", "--outage")

        self.assert_everything_arrived(summary)
        self.assertTrue(summary["outage"]["recovered"])
        self.assertGreaterEqual(summary["outage"]["refused"], 2)

    def test_signals_end_server_host_and_wine(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(signal=number):
                demo = subprocess.Popen(self.command(), stdout=subprocess.PIPE, text=True)
                for line in demo.stdout:
                    if "onStartup" in line:
                        break
                self.assertNotEqual([], running.naming(BUILD / "demo"))
                demo.send_signal(number)
                demo.communicate(timeout=100)

                self.assertEqual(128 + number, demo.returncode)
                self.assertEqual([], running.naming(BUILD / "demo"))


if __name__ == "__main__":
    unittest.main()
