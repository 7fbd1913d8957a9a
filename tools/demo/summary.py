"""The end of a run: a table for the screen, a file for programs, and the verdict over all."""

import json
import statistics

import options
from endings import DemoFailure

_COLUMNS = "  {:<22}{:>6}{:>8}{:>5}{:>8}{:>8}{:>11}{:>10}"


def find_problems(ledger, location, outage):
    """Every reason why the run was no success, a line each."""
    problems = []
    if location.problem():
        problems.append(location.problem())
    if ledger.sum("different"):
        problems.append(f"{ledger.sum('different')} item(s) arrived with values that the host did not read")
    if ledger.lost():
        problems.append(f"{ledger.lost()} item(s) did not arrive, though the host was told so")
    problems += [f"{name} was refused with {result}" for name, result in ledger.unexcused]
    problems += ledger.problems
    if outage and outage.problem():
        problems.append(outage.problem())
    if not ledger.sum("arrived"):
        problems.append("nothing arrived")
    return problems


def show(screen, ledger, outage, problems, folder):
    """The table, and what it comes to."""
    screen.line()
    screen.line(_COLUMNS.format("summary", "sent", "arrived", "diff", "refused", "values", "median ms", "worst ms"))
    for name, totals in ledger.totals.items():
        arrived = "kept" if totals.is_kept else totals.arrived
        screen.line(_COLUMNS.format(name[:22], totals.sent, arrived, totals.different, totals.refused, totals.values,
                                    f"{statistics.median(totals.milliseconds):.1f}",
                                    f"{max(totals.milliseconds):.1f}"))
    sums = [ledger.sum(field) for field in ("sent", "arrived", "different", "refused", "values")]
    screen.line(_COLUMNS.format("all", *sums, "", ""))
    screen.line()
    screen.line(f"  The host heard {ledger.replies['answer']} answers and {ledger.replies['action']} actions.")
    if outage:
        after = "arrived" if outage.recovered else "did not arrive"
        screen.line(f"  The server was away: {outage.refused} items refused, and the first one afterwards {after}.")
    for problem in problems:
        screen.line(f"  !! {problem}")
    if problems:
        screen.line(f"  Both sides' words are in events.jsonl and record.jsonl, in {folder}")
    else:
        everything = "Everything else" if outage else "Everything"
        screen.line(f"  {everything} arrived: {sums[1]} items, {sums[4]} values, each equal to what was read.")


class SummaryFile:
    """The file for programs. Opened before anything else is done, so that a wrong name costs no time."""

    def __init__(self, chosen):
        self._chosen = chosen
        if chosen.json:
            self._write({"options": options.as_json(chosen), "ok": False, "problems": ["the demo did not end"]})

    def write(self, ledger, outage, problems):
        """What a run came to."""
        self._write({
            "options": options.as_json(self._chosen),
            "types": {name: _type_as_json(totals) for name, totals in ledger.totals.items()},
            "replies": ledger.replies,
            "outage": outage.as_json() if outage else None,
            "problems": problems,
            "ok": not problems,
        })

    def write_failure(self, reason):
        """Why there was no run, or not a whole one."""
        self._write({"options": options.as_json(self._chosen), "ok": False, "problems": [reason]})

    def _write(self, content):
        if not self._chosen.json:
            return
        try:
            with open(self._chosen.json, "w", encoding="ascii") as file:
                file.write(json.dumps(content, indent=2) + "\n")
        except OSError as failure:
            raise DemoFailure(f"--json {self._chosen.json}: cannot be written ({failure.strerror});"
                              " name another file") from failure


def _type_as_json(totals):
    return {
        "type": totals.type,
        "sent": totals.sent,
        "arrived": totals.arrived,
        "different": totals.different,
        "refused": totals.refused,
        "values": totals.values,
        "median_ms": round(statistics.median(totals.milliseconds), 3),
        "worst_ms": round(max(totals.milliseconds), 3),
    }
