"""The demo's own Wine prefix: what an installer leaves in its registry, and its end."""

import os
import pathlib
import subprocess

import processes
from build_tree import windows_path
from endings import DemoFailure

PRODUCT = "TelvarDemo"
_KEY = r"HKEY_LOCAL_MACHINE\Software\Orvane, Inc.\{product}\Desktop Agent"

# While native threads that Java knows come to their end, the machine must start no threads of its own accord: under
# Wine 8 that can lock up, the loader's and the thread list's locks closing a ring.
_JAVA_TOOL_OPTIONS = "-XX:-UseDynamicNumberOfCompilerThreads -XX:-UseDynamicNumberOfGCThreads"
# A prefix that is made for the first time takes half a minute, and more on a busy machine.
_SLOWEST_START = 300


class WinePrefix:
    """Made at the first run and kept; nothing in it runs beyond the demo."""

    def __init__(self, tree):
        self._tree = tree
        self._folder = tree.demo / "wine"
        self._server = pathlib.Path(os.environ.get("WINEROOT", "/usr/lib/wine")) / "wineserver"
        self.environment = processes.environment(WINEPREFIX=str(self._folder), JAVA_TOOL_OPTIONS=_JAVA_TOOL_OPTIONS)

    def is_new(self):
        """Whether it has to be made first."""
        return not (self._folder / "system.reg").exists()

    def check(self):
        """Raises DemoFailure where there is no Wine."""
        if not self._server.exists():
            raise DemoFailure(f"Wine is missing ({self._server}): run tools/setup.sh")

    def command(self, program, *arguments):
        """The command line that runs a Windows program in it."""
        return [self._tree.wine_run, program, *arguments]

    def install(self, more, stop):
        """Writes what a host's installer writes, and `more`: key -> name -> a text, texts, or None for no value."""
        file = self._tree.demo / "install.reg"
        values = {
            "JrePath": windows_path(self._tree.java_runtime()) + "\\",
            "ClassPath": windows_path(self._tree.class_path),
            "LogDirectory": windows_path(self._tree.demo / "log"),
            "ConfigDirectory": windows_path(self._tree.demo / "config"),
        }
        file.write_text(_registry_file({_KEY.format(product=PRODUCT): values, **more}), encoding="utf-16")
        command = self.command("reg", "import", windows_path(file))
        if processes.run_to_end(command, self.environment, self._tree.tools_log, _SLOWEST_START, stop) != 0:
            raise DemoFailure(f"the registry values could not be written (see {self._tree.tools_log});"
                              f" remove {self._folder} and run again")

    def end(self):
        """Ends whatever runs in it, leftovers of a demo that was killed included, and waits until that is over."""
        for option in ("-k", "-w"):
            try:
                subprocess.run([self._server, option], env=self.environment, stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=20, check=False)
            except (OSError, subprocess.TimeoutExpired):
                pass  # nothing more can be done about it


def _registry_file(keys):
    """The text that "reg import" reads."""
    lines = ["Windows Registry Editor Version 5.00"]
    for key, values in keys.items():
        lines += ["", f"[{key}]"]
        lines += [f'"{name}"={_registry_value(value)}' for name, value in values.items()]
    return "\r\n".join(lines) + "\r\n"


def _registry_value(value):
    if value is None:
        return "-"
    if isinstance(value, list):
        multi_text = "".join(text + "\0" for text in value) + "\0"
        return "hex(7):" + multi_text.encode("utf-16-le").hex(",")
    escaped = value.replace("\\", "\\\\").replace('"', '\\"')
    return f'"{escaped}"'
