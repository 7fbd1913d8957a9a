"""What the user sees: plain ASCII in 80 columns, and on a terminal a line of progress that is written over."""

import sys
import time

from ledger import Verdict

_WIDTH = 80
_DIFFERENCES_SHOWN = 3
_HEARD = {Verdict.KEPT: "(checked, kept to itself)", Verdict.LOST: "NOTHING"}


def fit(text, width):
    """The text in ASCII, not wider than this."""
    plain = "".join(c if " " <= c <= "~" else c.encode("unicode_escape").decode("ascii") for c in text)
    return plain if len(plain) <= width else plain[: width - 3] + "..."


class Screen:
    """Rows as things happen. Replies come before the item that they answer is told of, and are shown below it."""

    def __init__(self):
        self._has_progress = sys.stdout.isatty()
        self._drawn = 0
        self._replies = []
        self._started = None

    def line(self, text=""):
        """A line as it is."""
        self.clear()
        print(fit(text, _WIDTH).rstrip(), flush=True)

    def begin(self, started):
        """The heads of the columns; times count from here."""
        self._started = started
        self.line()
        self.line(f"{'time':>8}  {'item sent':<25}{'the server heard':<27}{'values':>8}{'ms':>10}")

    def reply(self, kind, text):
        """What came back, shown with the next item."""
        self._replies.append(f'<- {kind} "{text}"')

    def complaint(self, level, text):
        """An entry of the library's log, shown with the next item."""
        self._replies.append(f"log {level}: {text}")

    def item(self, event, verdict, came):
        """An item and what became of it."""
        heard = _HEARD.get(verdict.outcome, event["method"])
        if verdict.outcome == Verdict.REFUSED:
            heard = f"REFUSED {event['result']}"
        values = verdict.values if verdict.values else "-"
        self.line(f"{came - self._started:>6.1f} s  {fit(event['name'], 24):<25}{heard:<27}{values:>8}"
                  f"{event['milliseconds']:>10.1f}")
        self.flush_replies()
        for difference in verdict.differences[:_DIFFERENCES_SHOWN]:
            self.line(f"{'':>10}!! {difference}")
        hidden = len(verdict.differences) - _DIFFERENCES_SHOWN
        if hidden > 0:
            self.line(f"{'':>10}!! and {hidden} more")

    def flush_replies(self):
        """Shows what no item has taken along."""
        for reply in self._replies:
            self.line(f"{'':>10}{reply}")
        self._replies.clear()

    def note(self, text):
        """Something that the demo did."""
        self.line(f"{time.monotonic() - self._started:>6.1f} s  -- {text} --")

    def progress(self, ledger, duration):
        """How far the run is, where that can be written over."""
        if self._has_progress:
            text = (f"{time.monotonic() - self._started:>6.1f} s  of {duration} s: {ledger.sum('sent')} sent,"
                    f" {ledger.sum('arrived')} arrived, {ledger.sum('different')} different")
            print("\r" + text.ljust(self._drawn), end="", flush=True)
            self._drawn = len(text)

    def clear(self):
        """Takes the line of progress away."""
        if self._drawn:
            print("\r" + " " * self._drawn + "\r", end="", flush=True)
            self._drawn = 0
