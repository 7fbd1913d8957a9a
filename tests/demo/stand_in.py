"""A build tree in which scripts stand for Wine, the host and the server: the driver alone is under test.

The host that stands in speaks to no server: it writes the server's record itself, as long as somebody listens on the
server's port. TELVAR_STAND_IN names the fault that it has, if any.
"""

import json
import os
import pathlib
import socket
import stat
import sys
import time

RECORD = "record.jsonl"
FAULTY_SAMPLE = 3  # the one that is answered with an action
CONNECTION = {"id": "machine", "authToken": "", "uniqueId": "vm", "version": {"int": 393728}, "deviceType": "DESKTOP"}
ORDER = [("onStartup", 8, "eStartup"), (None, 0, "eUserSessionStart"), ("onUserLogon", 1, "eUserSessionLogon"),
         *[("onDataCollected", 9, "eSample")] * 3,
         ("onExtendedDataCollected", 7, "eExtendedData"), ("onActionPerformed", 10, "eTraceRoute"),
         ("onDesktopPoll", 255, "poll")]
REPLIES = {"onStartup": ("answer", 1, "welcome to the demo"), "onUserLogon": ("answer", 1, "logon noted"),
           "onDataCollected": ("action", 3, "look closer at this sample"),
           "onDesktopPoll": ("action", 1, "report yourself")}

_WINE_RUN = """#!/bin/sh
exec python3 -B {script} wine {folder} "$@"
"""
_JAVA = """#!/bin/sh
exec python3 -B {script} server "$@"
"""


def make_build(folder):
    """Makes the tree; the result is the environment that the driver needs for it."""
    this = pathlib.Path(__file__).resolve()
    for name in ("bridge/telvar-rmi.dll", "bridge/sample-host.exe", "message-client/telvar-message-client.jar",
                 "message-server/telvar-message-server.jar", "jre/bin/server/jvm.dll"):
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).touch()
    (folder / "CMakeCache.txt").write_text(f"JRE_DIR:PATH={folder}/jre\n", encoding="utf-8")
    _script(folder / "wine-run", _WINE_RUN.format(script=this, folder=folder))
    _script(folder / "bin" / "java", _JAVA.format(script=this))
    _script(folder / "bin" / "wineserver", "#!/bin/sh\n")
    return {**os.environ, "PATH": f"{folder}/bin:{os.environ['PATH']}", "WINEROOT": f"{folder}/bin"}


def _script(file, text):
    file.parent.mkdir(exist_ok=True)
    file.write_text(text, encoding="utf-8")
    file.chmod(file.stat().st_mode | stat.S_IXUSR)


def serve(arguments):
    """Listens where it is told to, until its standard input or a signal ends it."""
    port = int(arguments[arguments.index("--port") + 1])
    listening = socket.create_server(("127.0.0.1", port))
    print(f"message server ready at rmi://127.0.0.1:{listening.getsockname()[1]}/Demo (stand-in)", flush=True)
    sys.stdin.buffer.read()


class Host:
    """Sends the items, with the fault at one of the samples."""

    def __init__(self, folder, arguments):
        value = dict(zip(arguments[::2], arguments[1::2]))
        self._record = folder / "demo" / RECORD
        self._fault = os.environ.get("TELVAR_STAND_IN", "")
        self._server = self._find_server(folder, is_legacy="--config" not in value)
        self._port = int(self._server["url"].split(":")[2].split("/")[0])
        self._duration, self._interval = float(value["--duration"]), float(value["--interval"])
        self._number = 0
        self._calls = {}

    def run(self):
        """The whole of it."""
        if self._fault == "does not start":
            sys.exit("sample-host: the library is missing; build it")
        print(json.dumps({"event": "server", **self._server}), flush=True)
        end = time.monotonic() + self._duration
        for item in ORDER:
            self._send(*item)
        while time.monotonic() < end:
            time.sleep(self._interval)
            self._send("onDataCollected", 9, "eSample")
        print(json.dumps({"event": "end", "sent": self._number}), flush=True)

    def _find_server(self, folder, is_legacy):
        """In the file that would be imported into the registry."""
        values = dict(line.split("=", 1) for line in (folder / "registry").read_text(encoding="utf-8").splitlines()
                      if "=" in line)
        token = "machine"
        if is_legacy:
            url, token, certificate = values['"Kelbrin Server URL"'].strip('"').split("|")
        else:
            url = values['"MessageServerURL"'].strip('"')
            texts = bytes.fromhex(values['"AdapterCertificate"'].removeprefix("hex(7):").replace(",", ""))
            certificate = texts.decode("utf-16-le").replace("\0", "")
        if self._fault == "other server":
            url += "/other"
        return {"url": url, "secondValue": token, "certificate": certificate, "machineUniqueId": "machine"}

    def _send(self, method, kind, name):
        arguments = {"connection": CONNECTION, "metaData": [["a", "1"], ["b", str(self._number)]]} if method else {}
        result = "0x00000000"
        if method and not self._is_listened_to():
            result = "0x800713AB"
            self._calls.clear()
        elif method:
            self._be_heard(method, json.loads(json.dumps(arguments)))
        self._number += 1
        print(json.dumps({"event": "sent", "number": self._number, "type": kind, "name": name, "method": method,
                          "result": result, "milliseconds": 1.5, "arguments": arguments}), flush=True)

    def _is_listened_to(self):
        with socket.socket() as probe:
            return probe.connect_ex(("127.0.0.1", self._port)) == 0

    def _be_heard(self, method, arguments):
        self._calls[method] = self._calls.get(method, 0) + 1
        fault = self._fault if (method, self._calls[method]) == ("onDataCollected", FAULTY_SAMPLE) else ""
        if fault == "ends early":
            sys.exit(3)
        if fault == "changed":
            arguments["connection"]["version"]["int"] += 1
        if method == "onActionPerformed":
            arguments["metaData"].reverse()
        lines = {"missing": 0, "surplus": 2}.get(fault, 1)
        with open(self._record, "a", encoding="ascii") as record:
            record.write((json.dumps({"method": method, "arguments": arguments}) + "\n") * lines)
        kind, every, text = REPLIES.get(method, ("", 0, ""))
        if every and self._calls[method] % every == 0:
            print(json.dumps({"event": kind, "type": 0, "text": "?" if fault == "reply" else text}), flush=True)


def run_under_wine(folder, program, *arguments):
    """Keeps what would come into the registry; any other program is the host."""
    if program == "reg":
        imported = pathlib.Path(arguments[1].removeprefix("Z:").replace("\\", "/"))
        (folder / "registry").write_text(imported.read_text(encoding="utf-16"), encoding="utf-8")
    else:
        Host(folder, arguments).run()


if __name__ == "__main__":
    if sys.argv[1] == "server":
        serve(sys.argv[2:])
    else:
        run_under_wine(pathlib.Path(sys.argv[2]), *sys.argv[3:])
