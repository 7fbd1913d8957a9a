"""The demo's driver with stand-ins for Wine, the host and the server."""

import json
import pathlib
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

import demo_path
import running
import stand_in


class DriverTest(unittest.TestCase):
    """Each test is a run in a tree of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.build = pathlib.Path(folder.name).resolve()
        self.file = self.build / "summary.json"
        self.environment = stand_in.make_build(self.build)

    def command(self, *options):
        return [sys.executable, demo_path.DRIVER, "--build", self.build, *options]

    def run_demo(self, *options, fault=""):
        return subprocess.run(self.command("--duration", "1", "--interval", "0.2", "--plain", *options), text=True,
                              env={**self.environment, "TELVAR_STAND_IN": fault}, capture_output=True, check=False,
                              timeout=100)

    def read_summary(self):
        return json.loads(self.file.read_text(encoding="ascii"))

    def assert_one_line(self, status, words, result):
        self.assertEqual(status, result.returncode, result)
        self.assertEqual(1, len(result.stderr.splitlines()), result)
        self.assertIn(words, result.stderr)

    def test_a_run_without_a_fault_succeeds(self):
        result = self.run_demo("--json", self.file)

        self.assertEqual((0, ""), (result.returncode, result.stderr), result)
        summary = self.read_summary()
        self.assertTrue(summary["ok"])
        self.assertEqual([], summary["problems"])
        self.assertIsNone(summary["outage"])
        self.assertEqual({"type": 8, "sent": 1, "arrived": 1, "different": 0, "refused": 0, "values": 9,
                          "median_ms": 1.5, "worst_ms": 1.5}, summary["types"]["eStartup"])

    def test_the_legacy_list_names_the_server_as_well(self):
        result = self.run_demo("--legacy", "--json", self.file)

        self.assertEqual((0, ""), (result.returncode, result.stderr), result)
        self.assertTrue(self.read_summary()["options"]["legacy"])
        self.assertIn("Kelbrin Server URL", (self.build / "registry").read_text(encoding="utf-8"))

    def test_the_screen_is_ascii_in_80_columns_without_progress(self):
        result = self.run_demo(fault="changed")

        self.assertTrue(result.stdout.isascii())
        self.assertNotIn("\r", result.stdout)
        self.assertLessEqual(max(len(line) for line in result.stdout.splitlines()), 80)

    def test_each_fault_of_an_item_fails_the_run(self):
        for fault, words in (("changed", "arrived with values"), ("missing", "did not arrive"),
                             ("surplus", "that no item of the host's stands for"), ("reply", "did not come back"), ("other server", "another server")):
            with self.subTest(fault=fault):
                result = self.run_demo("--json", self.file, fault=fault)

                self.assertEqual(1, result.returncode, result)
                self.assertIn(words, " ".join(self.read_summary()["problems"]))
                self.assertFalse(self.read_summary()["ok"])

    def test_a_host_that_does_not_start_is_told_with_its_own_words(self):
        result = self.run_demo("--json", self.file, fault="does not start")

        self.assert_one_line(1, "sample-host: the library is missing; build it", result)
        self.assertFalse(self.read_summary()["ok"])

    def test_a_host_that_ends_early_is_told(self):
        self.assert_one_line(1, "ended too early, with 3", self.run_demo(fault="ends early"))

    def test_an_outage_refuses_items_and_the_next_ones_arrive(self):
        result = self.run_demo("--json", self.file, "--outage", "--duration", "10")

        self.assertEqual(0, result.returncode, result)
        summary = self.read_summary()
        self.assertTrue(summary["outage"]["recovered"])
        self.assertGreaterEqual(summary["outage"]["refused"], 2)
        self.assertEqual(summary["outage"]["refused"], summary["types"]["eSample"]["refused"])

    def test_wrong_options_are_told_in_a_line_with_status_2(self):
        for options in (["--nothing"], ["--duration", "soon"], ["--duration", "0"], ["--interval", "nan"],
                        ["--port", "65536"], ["--port", "-1"], ["--outage"], ["--interval", "2"], ["more"],
                        ["--json", "/no such folder/file"]):
            with self.subTest(options=options):
                self.assert_one_line(2, "--help tells the options", self.run_demo(*options))

    def test_a_port_in_use_is_told(self):
        with socket.create_server(("127.0.0.1", 0)) as taken:
            result = self.run_demo("--port", str(taken.getsockname()[1]))

        self.assert_one_line(1, "choose another with --port", result)

    def test_the_port_that_is_asked_for_is_taken(self):
        with socket.create_server(("127.0.0.1", 0)) as taken:
            port = str(taken.getsockname()[1])

        self.assertIn(f"rmi://127.0.0.1:{port}/", self.run_demo("--port", port).stdout)

    def test_what_is_missing_is_told(self):
        for name, words in (("jre/bin/server/jvm.dll", "run tools/setup.sh"), ("bin/wineserver", "run tools/setup.sh"),
                            ("bridge/sample-host.exe", "run ./demo.sh"), ("CMakeCache.txt", "./demo.sh")):
            with self.subTest(name=name):
                (self.build / name).unlink()

                self.assert_one_line(1, words, self.run_demo())
                stand_in.make_build(self.build)

    def test_a_second_demo_in_the_tree_is_refused(self):
        first = subprocess.Popen(self.command("--plain"), env=self.environment, stdout=subprocess.PIPE, text=True)
        self.addCleanup(first.communicate)
        self.addCleanup(first.terminate)
        for line in first.stdout:
            if "eStartup" in line:
                break

        self.assert_one_line(1, "another demo runs", self.run_demo())

    def test_a_signal_ends_everything(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(signal=number):
                demo = subprocess.Popen(self.command(), env=self.environment, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True)
                for line in demo.stdout:
                    if "eStartup" in line:
                        break
                demo.send_signal(number)
                _, complaint = demo.communicate(timeout=60)

                self.assertEqual(128 + number, demo.returncode)
                self.assertIn("nothing that it started runs any more", complaint)
                self.assertEqual([], running.naming(self.build))

    def test_a_driver_that_is_killed_leaves_nothing_for_long(self):
        demo = subprocess.Popen(self.command("--plain"), env=self.environment, stdout=subprocess.PIPE, text=True)
        for line in demo.stdout:
            if "eStartup" in line:
                break
        demo.kill()
        demo.communicate(timeout=60)
        end = time.monotonic() + 30
        while running.naming(self.build) and time.monotonic() < end:
            time.sleep(0.1)

        self.assertEqual([], running.naming(self.build))


if __name__ == "__main__":
    unittest.main()
