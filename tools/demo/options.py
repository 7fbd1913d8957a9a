"""What the command line says."""

import argparse
import pathlib
import sys

BAD_OPTIONS = 2
DEFAULT_BUILD = pathlib.Path(__file__).resolve().parents[2] / "build" / "release"

# An outage takes its time: two items that are refused, and a server's start.
SHORTEST_OUTAGE_RUN = 10
FEWEST_OUTAGE_SAMPLES = 8


class _Parser(argparse.ArgumentParser):
    """Refuses in one line, without the usage before it."""

    def error(self, message):
        print(f"demo: {message} (./demo.sh --help tells the options)", file=sys.stderr)
        sys.exit(BAD_OPTIONS)


def _number(lowest, highest):
    def read(text):
        try:
            value = float(text)
        except ValueError:
            value = float("nan")
        if not lowest <= value <= highest:
            raise argparse.ArgumentTypeError(f"'{text}' is no number from {lowest:g} to {highest:g}")
        return int(value) if value.is_integer() else value

    return read


def _port(text):
    if not text.isdecimal() or not 1 <= int(text) <= 65535:
        raise argparse.ArgumentTypeError(f"'{text}' is no port from 1 to 65535")
    return int(text)


def _make_parser():
    parser = _Parser(
        prog="./demo.sh",
        allow_abbrev=False,
        description="Starts a message server and a sample host under Wine, which sends what it reads of this machine,"
        " and compares each value that arrives with what the host says it read.",
        epilog="Ends with 0 if everything arrived and nothing differs, with 2 for a wrong option, with 1 otherwise.",
    )
    parser.add_argument("--duration", metavar="SECONDS", type=_number(1, 86400), default=20,
                        help="how long the host sends (default: 20)")
    parser.add_argument("--interval", metavar="SECONDS", type=_number(0.1, 3600), default=1,
                        help="from one sample to the next (default: 1)")
    parser.add_argument("--outage", action="store_true",
                        help="stop the server in the middle, and start it again on the same port")
    parser.add_argument("--plain", action="store_true", help="without TLS")
    parser.add_argument("--legacy", action="store_true",
                        help="name the server in the registry's legacy list, not by a configuration document")
    parser.add_argument("--port", metavar="N", type=_port, help="the server's (default: a free one)")
    parser.add_argument("--json", metavar="FILE", type=pathlib.Path, help="write the summary to this file as well")
    parser.add_argument("--build", metavar="DIR", type=pathlib.Path, default=DEFAULT_BUILD, help=argparse.SUPPRESS)
    parser.add_argument("--check-options", action="store_true", help=argparse.SUPPRESS)
    return parser


def parse(arguments):
    """The options; ends the program where they are wrong or help is asked for."""
    parser = _make_parser()
    chosen = parser.parse_args(arguments)
    if chosen.interval > chosen.duration:
        parser.error(f"argument --interval: {chosen.interval} s is more than --duration, {chosen.duration} s")
    needed = max(SHORTEST_OUTAGE_RUN, FEWEST_OUTAGE_SAMPLES * chosen.interval)
    if chosen.outage and chosen.duration < needed:
        parser.error(f"argument --outage: needs a --duration of {needed:g} s at least")
    if chosen.json and not chosen.json.absolute().parent.is_dir():
        parser.error(f"argument --json: there is no folder {chosen.json.absolute().parent}")
    return chosen


def as_json(chosen):
    """The options as the summary file tells them."""
    return {
        "duration": chosen.duration,
        "interval": chosen.interval,
        "outage": chosen.outage,
        "plain": chosen.plain,
        "legacy": chosen.legacy,
        "port": chosen.port,
    }
