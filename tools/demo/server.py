"""The message server on this machine's Java, and the certificate that it is known by."""

import re
import secrets
import socket
import subprocess
import time

import processes
from endings import DemoFailure

HOST = "127.0.0.1"
_READY = re.compile(r"ready at (rmi:\S+:(\d+)/\S*)")
_SLOWEST_START = 60
_ALIAS = "server"

# What the server returns: method -> (at each how many-th call, text).
ANSWERS = {
    "onStartup": (1, "welcome to the demo"),
    "onUserLogon": (1, "logon noted"),
    "onDataCollected": (3, "look closer at this sample"),
    "onDesktopPoll": (1, "report yourself"),
}


def check_port(port):
    """Raises DemoFailure where somebody listens there already: a clearer word than the server's, and before Wine."""
    with socket.socket() as probe:
        probe.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        try:
            probe.bind((HOST, port))
        except OSError as failure:
            raise DemoFailure(f"port {port} cannot be listened on ({failure.strerror}): choose another with --port,"
                              " or leave it out for a free one") from failure


class Certificate:
    """A key of this run's, in a key store, and its certificate as a file that clients are given."""

    def __init__(self, folder):
        self.store = folder / "server.p12"
        self.password = folder / "server.password"
        self.file = folder / "server.pem"

    def make(self, log, stop):
        """Makes them anew."""
        self.store.unlink(missing_ok=True)
        self.password.write_text(secrets.token_hex(16) + "\n", encoding="ascii")
        common = ["-alias", _ALIAS, "-keystore", self.store, "-storepass:file", self.password]
        for command in (
            ["keytool", "-genkeypair", "-keyalg", "EC", "-dname", "CN=localhost", "-validity", "30",
             "-storetype", "PKCS12", *common],
            ["keytool", "-exportcert", "-rfc", "-file", self.file, *common],
        ):
            if processes.run_to_end(command, processes.environment(), log, _SLOWEST_START, stop) != 0:
                raise DemoFailure(f"keytool could not make a certificate (see {log}); run tools/setup.sh")

    def base64_lines(self):
        """Its text without the first and the last line."""
        return [line for line in self.file.read_text(encoding="ascii").splitlines() if not line.startswith("-----")]


class MessageServer:
    """One server process at a time; a second start is on the first one's port."""

    def __init__(self, tree, port, certificate):
        self._tree = tree
        self._certificate = certificate
        self._process = None
        self._said = 0
        self.port = port or 0
        self.url = None

    def start(self):
        """Starts it; is_ready tells when clients can connect."""
        command = ["java", "-jar", self._tree.server_archive, "--host", HOST, "--port", self.port,
                   "--record", self._tree.record, "--stop-with-stdin"]
        for method, (every, text) in ANSWERS.items():
            command += ["--answer", f"{method}/{every}={text}"]
        if self._certificate:
            command += ["--tls", self._certificate.store, "--password-file", self._certificate.password]
        self._said = len(self._log())
        with open(self._tree.server_log, "ab") as log:
            # Its standard input ends with the driver, however that ends.
            self._process = processes.start(command, processes.environment(), stdin=subprocess.PIPE, stdout=log,
                                            stderr=subprocess.STDOUT)

    def is_ready(self):
        """Whether it has said its address. Raises DemoFailure where it ended instead."""
        has_ended = self._process.poll() is not None
        said = self._log()[self._said:]
        found = _READY.search(said)
        if found and not has_ended:
            self.url = found[1]
            self.port = int(found[2])
            return True
        if has_ended:
            raise DemoFailure(f"the message server ended: {_last_line(said)} (see {self._tree.server_log})")
        return False

    def wait_until_ready(self, stop):
        """Waits for its address."""
        deadline = time.monotonic() + _SLOWEST_START
        while not self.is_ready():
            if time.monotonic() > deadline:
                raise DemoFailure(f"the message server did not start within {_SLOWEST_START} s;"
                                  f" see {self._tree.server_log}, and try again")
            stop.pause(0.05)

    def stop(self):
        """Ends it, in order if it can; the record is complete then."""
        if self._process is None:
            return
        self._process.terminate()
        if not processes.wait(self._process, 5):
            processes.kill(self._process)
        self._process.stdin.close()
        self._process = None

    def _log(self):
        try:
            return self._tree.server_log.read_text(encoding="utf-8", errors="replace")
        except FileNotFoundError:
            return ""


def _last_line(text):
    lines = text.strip().splitlines()
    return lines[-1] if lines else "it said nothing"
