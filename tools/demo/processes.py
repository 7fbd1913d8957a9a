"""Processes that the demo starts: each in a session of its own, so that Ctrl-C reaches the driver alone, which then
ends them in order."""

import os
import signal
import subprocess
import time

from endings import DemoFailure

# What would set up a Java that the user did not mean: the server's and keytool's is the machine's as it is.
_JAVA_VARIABLES = ("JAVA_TOOL_OPTIONS", "JDK_JAVA_OPTIONS", "_JAVA_OPTIONS")


def environment(**changes):
    """The driver's own, without options for Java, and with changes."""
    kept = {name: value for name, value in os.environ.items() if name not in _JAVA_VARIABLES}
    return {**kept, **changes}


def start(command, env, **streams):
    """Starts a process; its end is the caller's business."""
    try:
        return subprocess.Popen([str(part) for part in command], env=env, start_new_session=True, **streams)
    except OSError as failure:
        raise DemoFailure(f"{command[0]} cannot be started ({failure.strerror}); run tools/setup.sh") from failure


def run_to_end(command, env, log, timeout, stop):
    """Runs a process that ends by itself and returns its exit status; its output goes to the end of a file."""
    with open(log, "ab") as output:
        process = start(command, env, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT)
    deadline = time.monotonic() + timeout
    try:
        while process.poll() is None:
            stop.pause(0.05)
            if time.monotonic() > deadline:
                raise DemoFailure(f"{command[0]} did not end within {timeout} s; see {log}, and try again")
        return process.returncode
    finally:
        kill(process)


def wait(process, seconds):
    """Whether the process has ended, within this time. No signal cuts that short: it is part of the cleaning up."""
    try:
        process.wait(seconds)
        return True
    except subprocess.TimeoutExpired:
        return False


def kill(process):
    """Ends a process and what it started in its session, if it still runs."""
    if process.poll() is None:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()
