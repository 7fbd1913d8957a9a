"""The ordered outage: the server is stopped after the middle of the run, refuses some items, and comes back."""

import time

from ledger import OK, UNREACHABLE, Verdict

POLL = 255
_SAMPLE = 9
_REFUSALS = 2


class Outage:
    """Steps on with each item and each moment. The items in the middle of the run, of which there is one of a kind,
    are let through first."""

    _WAITING, _DUE, _DOWN, _STARTING, _BACK, _OVER = range(6)

    def __init__(self, server, ledger, screen):
        self._server = server
        self._ledger = ledger
        self._screen = screen
        self._state = self._WAITING
        self._stopped = None
        self._back = None
        self.refused = 0
        self.recovered = False

    def step(self):
        """Between two items: does what is due."""
        if self._state == self._DUE:
            self._stopped = time.monotonic()
            self._server.stop()
            self._ledger.note_server_stopped()
            self._screen.note("the message server is stopped")
            self._state = self._DOWN
        elif self._state == self._DOWN and self.refused >= _REFUSALS:
            self._server.start()
            self._state = self._STARTING
        elif self._state == self._STARTING and self._server.is_ready():
            self._back = time.monotonic()
            self._screen.note("the message server is back, on the same port")
            self._state = self._BACK

    def excuses(self, item, verdict, came):
        """Whether an item that was refused may have been: only while the server was away, and with that result."""
        began = came - item["milliseconds"] / 1000
        if self._state == self._WAITING and item["type"] == POLL:
            self._state = self._DUE
        if self._stopped is None or item["method"] is None:
            return False
        if self._back is not None and began >= self._back:
            if self._state == self._BACK:
                self._state = self._OVER
                self.recovered = item["result"] == OK and verdict.outcome == Verdict.ARRIVED
            return False
        if item["result"] != UNREACHABLE or came < self._stopped:
            return False
        self.refused += 1
        return True

    def problem(self):
        """At the end of the run: what the outage did not show, or None."""
        if self._state in (self._WAITING, self._DUE):
            return "the server was not stopped: the host ended before; give a longer --duration"
        if self.refused == 0:
            return "no item was refused while the server was away; give a shorter --interval"
        if self._state != self._OVER:
            return "no item was sent after the server's return; give a longer --duration"
        return None if self.recovered else "the first item after the server's return did not arrive"

    def as_json(self):
        """The outcome as the summary file tells it."""
        return {"refused": self.refused, "recovered": self.recovered}
