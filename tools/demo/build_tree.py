"""Where the build put what the demo runs, and where the demo keeps its own files."""

import fcntl
import pathlib
import shutil

from endings import DemoFailure


def windows_path(path):
    """A file's path as a program under Wine names it."""
    return "Z:" + str(path).replace("/", "\\")


class BuildTree:
    """The folder of one preset's build. The demo's files are in its folder demo/, and stay there for a look."""

    def __init__(self, folder):
        self.folder = folder.resolve()
        self.wine_run = self.folder / "wine-run"
        self.library = self.folder / "bridge" / "telvar-rmi.dll"
        self.host = self.folder / "bridge" / "sample-host.exe"
        self.class_path = self.folder / "message-client"
        self.server_archive = self.folder / "message-server" / "telvar-message-server.jar"
        self.demo = self.folder / "demo"
        self.record = self.demo / "record.jsonl"
        self.events = self.demo / "events.jsonl"
        self.server_log = self.demo / "server.log"
        self.host_log = self.demo / "host.log"
        self.tools_log = self.demo / "tools.log"
        self._lock = None

    def check(self):
        """Raises DemoFailure where something that the build or tools/setup.sh makes is missing."""
        built = (self.wine_run, self.library, self.host, self.server_archive,
                 self.class_path / "telvar-message-client.jar")
        for file in built:
            if not file.exists():
                raise DemoFailure(f"{file} is missing: run ./demo.sh, which builds it")
        if not (self.java_runtime() / "bin" / "server" / "jvm.dll").exists():
            raise DemoFailure(f"{self.java_runtime()} holds no Java runtime for Windows: run tools/setup.sh")
        for program in ("java", "keytool"):
            if shutil.which(program) is None:
                raise DemoFailure(f"the program {program} is missing: run tools/setup.sh")

    def java_runtime(self):
        """The Java runtime for Windows, which CMake was told of."""
        cache = self.folder / "CMakeCache.txt"
        try:
            for line in cache.read_text(encoding="utf-8").splitlines():
                if line.startswith("JRE_DIR:"):
                    return pathlib.Path(line.split("=", 1)[1])
        except OSError:
            pass  # said below
        raise DemoFailure(f"{cache} names no Java runtime: run ./demo.sh, which configures the build")

    def lay_out(self):
        """Makes the demo's folder, for this user alone, without what an earlier run wrote; one demo at a time."""
        self.demo.mkdir(mode=0o700, exist_ok=True)
        self._lock = open(self.demo / "lock", "w", encoding="ascii")
        try:
            fcntl.flock(self._lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except OSError as failure:
            raise DemoFailure(f"another demo runs in {self.demo}: wait for its end, or end it") from failure
        for file in (self.record, self.events, self.server_log, self.host_log, self.tools_log):
            file.unlink(missing_ok=True)
        for folder in ("log", "config"):
            (self.demo / folder).mkdir(exist_ok=True)
