"""How a run ends other than by itself: a failure that one line explains, or a signal."""

import os
import signal
import sys
import time

FAILED = 1


class DemoFailure(Exception):
    """The run cannot go on; the message is the one line that the user reads, with the cure."""


class Stopped(Exception):
    """A signal asked for the end."""

    def __init__(self, number):
        super().__init__(f"stopped by {signal.Signals(number).name}")
        self.number = number


class StopSignals:
    """Notes SIGINT, SIGTERM and SIGHUP. They take effect where the run asks, never between a process's start and the
    moment at which somebody knows that it has to be ended."""

    def __init__(self):
        self._number = None
        signal.signal(signal.SIGINT, self._note)
        signal.signal(signal.SIGTERM, self._note)
        if signal.getsignal(signal.SIGHUP) != signal.SIG_IGN:  # nohup asks for that
            signal.signal(signal.SIGHUP, self._note)

    def _note(self, number, _frame):
        self._number = number

    def check(self):
        """Raises Stopped once a signal has come."""
        if self._number is not None:
            raise Stopped(self._number)

    def pause(self, seconds):
        """Sleeps, not longer than a signal allows."""
        end = time.monotonic() + seconds
        self.check()
        while time.monotonic() < end:
            time.sleep(min(0.05, seconds))
            self.check()


def report(work):
    """Does the work with signals noted, and turns its end into an exit status and one line."""
    try:
        return work(StopSignals())
    except DemoFailure as failure:
        return _say(str(failure), FAILED)
    except Stopped as stopped:
        return _say("stopped; nothing that it started runs any more", 128 + stopped.number)
    except BrokenPipeError:
        # Nobody reads the screen any more; Python would complain once again when it flushes at its end.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return FAILED


def _say(line, status):
    try:
        sys.stdout.flush()
    except BrokenPipeError:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
    print("demo:", line.encode("ascii", "backslashreplace").decode("ascii"), file=sys.stderr)
    return status
