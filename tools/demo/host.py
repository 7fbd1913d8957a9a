"""The sample host under Wine, and the events that it prints."""

import json
import queue
import subprocess
import threading
import time

import processes
from endings import DemoFailure
from wine import PRODUCT

_JAVA_NOTE = "Picked up JAVA_TOOL_OPTIONS"


class SampleHost:
    """A running host. Its lines are read by a thread, which notes when each one came."""

    def __init__(self, tree, prefix):
        self._tree = tree
        self._prefix = prefix
        self._process = None
        self._reader = None
        self._lines = queue.Queue()
        self.log = tree.host_log
        self.started = None

    def start(self, location, chosen):
        """Starts it; the events come from then on."""
        arguments = ["--duration", chosen.duration, "--interval", chosen.interval, "--product", PRODUCT,
                     *location.host_options()]
        with open(self.log, "ab") as log:
            self._process = processes.start(self._prefix.command(self._tree.host, *arguments),
                                            self._prefix.environment, stdin=subprocess.PIPE,
                                            stdout=subprocess.PIPE, stderr=log)
        self.started = time.monotonic()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        with open(self._tree.events, "wb") as copy:
            for line in self._process.stdout:
                self._lines.put((time.monotonic(), line))
                copy.write(line)
        self._lines.put((time.monotonic(), None))

    def next_event(self, seconds):
        """(when it came, event); an event of None means that no more come, and None alone that none came in time."""
        try:
            came, line = self._lines.get(timeout=seconds)
        except queue.Empty:
            return None
        if line is None:
            return came, None
        try:
            event = json.loads(line)
            event["event"]  # every line has one
            return came, event
        except (ValueError, KeyError, TypeError) as failure:
            text = line.decode("ascii", "backslashreplace").strip()
            raise DemoFailure(f"the host printed a line that is no event ({text[:60]});"
                              f" see {self._tree.events}") from failure

    def check_end(self, has_said_end):
        """Once no more events come: raises DemoFailure where the host ended too early or with a failure."""
        if not processes.wait(self._process, 30):
            raise DemoFailure(f"the host closed its output and does not end; see {self.log}")
        status = self._process.returncode
        if status != 0 or not has_said_end:
            raise DemoFailure(f"the host ended too early, with {status}: {self._last_words()}"
                              f" (see {self.log})")

    def stop(self):
        """Lets it end in order, for a short while; the prefix's end takes it away for good."""
        if self._process is None:
            return
        try:
            self._process.stdin.close()
        except OSError:
            pass  # it has ended already
        if not processes.wait(self._process, 5):
            processes.kill(self._process)
        self._reader.join(5)

    def _last_words(self):
        text = self.log.read_text(encoding="utf-8", errors="replace")
        lines = [line.strip() for line in text.splitlines() if line.strip() and not line.startswith(_JAVA_NOTE)]
        return lines[-1] if lines else "it said nothing; run the demo again"
