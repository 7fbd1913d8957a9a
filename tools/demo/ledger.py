"""The account of a run: each item that the host sent against the next call of its method in the server's record."""

import collections
import dataclasses
import json

from comparison import count_values, find_differences
from server import ANSWERS

OK = "0x00000000"
UNREACHABLE = "0x800713AB"
_ANSWERED_BY_TEXT = ("onStartup", "onUserLogon")


@dataclasses.dataclass
class TypeTotals:
    """The items of one type."""

    type: int
    sent: int = 0
    arrived: int = 0
    different: int = 0
    refused: int = 0
    values: int = 0
    milliseconds: list = dataclasses.field(default_factory=list)
    is_kept: bool = False  # the library checks such an item and sends nothing


@dataclasses.dataclass
class Verdict:
    """What became of one item."""

    KEPT, ARRIVED, DIFFERENT, LOST, REFUSED = "kept", "arrived", "different", "lost", "refused"

    outcome: str
    values: int = 0
    differences: list = dataclasses.field(default_factory=list)


class Record:
    """The server's record, read as far as it is written."""

    def __init__(self, file):
        self._file = file
        self._offset = 0

    def read_calls(self):
        """The calls that came since the last time."""
        try:
            with open(self._file, "rb") as file:
                file.seek(self._offset)
                written = file.read()
        except FileNotFoundError:
            return []
        whole = written[: written.rfind(b"\n") + 1]
        self._offset += len(whole)
        return [json.loads(line) for line in whole.splitlines()]


class Ledger:
    """Knows what was sent, what was heard, and what the answers ought to be."""

    def __init__(self, record):
        self._record = record
        self._heard = collections.defaultdict(collections.deque)
        self._surplus = collections.Counter()
        self._calls = collections.Counter()  # of the server that runs, whose rules count from its start
        self.totals = {}
        self.texts = collections.Counter()  # the ones that the host has to hear, less those that it heard
        self.replies = {"answer": 0, "action": 0}
        self.unexcused = []
        self.problems = []

    def take_sent(self, item):
        """An item that the host says it sent: counts it and returns the verdict."""
        self.read_record()
        totals = self.totals.setdefault(item["name"], TypeTotals(item["type"]))
        totals.sent += 1
        totals.milliseconds.append(item["milliseconds"])
        verdict = self._judge(item, totals)
        totals.arrived += verdict.outcome in (Verdict.ARRIVED, Verdict.DIFFERENT)
        totals.different += verdict.outcome == Verdict.DIFFERENT
        totals.refused += verdict.outcome == Verdict.REFUSED
        totals.values += verdict.values
        return verdict

    def _judge(self, item, totals):
        calls = self._heard[item["method"]]
        if item["result"] != OK:
            # A call that broke off after it was heard leaves its line; it is not another item's.
            if calls and not find_differences(item["method"], item["arguments"], calls[0]):
                calls.popleft()
            return Verdict(Verdict.REFUSED)
        if item["method"] is None:
            totals.is_kept = True
            return Verdict(Verdict.KEPT)
        if not calls:
            return Verdict(Verdict.LOST)
        differences = find_differences(item["method"], item["arguments"], self._next_call(item))
        return Verdict(Verdict.DIFFERENT if differences else Verdict.ARRIVED, count_values(item["arguments"]),
                       differences)

    def _next_call(self, item):
        """The call that is the item's. One that nobody sent must not make all later items differ: it is set aside
        where one of the next is exactly the item's."""
        calls = self._heard[item["method"]]
        for index in range(1, len(calls)):
            if not find_differences(item["method"], item["arguments"], calls[0]):
                break
            if not find_differences(item["method"], item["arguments"], calls[index]):
                self._surplus[item["method"]] += index
                for _ in range(index):
                    calls.popleft()
                break
        return calls.popleft()

    def take_reply(self, kind, text):
        """A text that a callback or the executor of the host's heard."""
        self.replies[kind] += 1
        self.texts[(kind, text)] -= 1

    def read_record(self):
        """Takes in what the server has written. A call is written before it is answered, so that nothing is late."""
        for call in self._record.read_calls():
            method = call["method"]
            self._heard[method].append(call["arguments"])
            self._calls[method] += 1
            every, text = ANSWERS.get(method, (0, None))
            if every and self._calls[method] % every == 0:
                self.texts[("answer" if method in _ANSWERED_BY_TEXT else "action", text)] += 1

    def note_server_stopped(self):
        """The next server counts its calls anew."""
        self.read_record()
        self._calls.clear()

    def close(self, announced):
        """At the end: what is left over is a problem. announced: how many items the host says it sent."""
        self.read_record()
        for method, calls in self._heard.items():
            self._surplus[method] += len(calls)
        for method, count in (+self._surplus).items():
            self.problems.append(f"{count} call(s) of {method} that no item of the host's stands for")
        if announced != self.sum("sent"):
            self.problems.append(f"the host sent {announced} items and told of {self.sum('sent')}")
        for (kind, text), count in self.texts.items():
            if count > 0:
                self.problems.append(f'{count} time(s) the {kind} "{text}" did not come back')
            elif count < 0:
                self.problems.append(f'{-count} time(s) the {kind} "{text}" came that the server did not give')

    def sum(self, field):
        """One of the totals over all types."""
        return sum(getattr(totals, field) for totals in self.totals.values())

    def lost(self):
        """How many items were sent, not refused, and not heard."""
        return sum(t.sent - t.arrived - t.refused for t in self.totals.values() if not t.is_kept)
