"""Which processes run."""

import pathlib


def naming(folder):
    """The command lines of running processes that name the folder there or in their environment, as Wine's name their
    prefix; without this process and those that it was started by."""
    wanted = str(folder).encode()
    own = set(_ancestors())
    found = []
    for process in pathlib.Path("/proc").iterdir():
        if not process.name.isdecimal() or process.name in own:
            continue
        try:
            command = (process / "cmdline").read_bytes()
            if command and (wanted in command or wanted in (process / "environ").read_bytes()):
                found.append(command.replace(b"\0", b" ").decode(errors="replace").strip())
        except OSError:
            pass  # it has ended meanwhile
    return found


def _ancestors():
    number = "self"
    while number != "0":
        status = pathlib.Path("/proc", number, "status").read_text(encoding="ascii", errors="replace")
        fields = dict(line.split(":\t", 1) for line in status.splitlines() if ":\t" in line)
        yield fields["Pid"].strip()
        number = fields["PPid"].strip()
