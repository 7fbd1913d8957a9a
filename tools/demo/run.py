"""A run of the demo, from its files to its summary."""

import contextlib
import sys
import time

import server
import summary
from build_tree import BuildTree
from endings import FAILED, DemoFailure, Stopped
from host import SampleHost
from ledger import Ledger, Record, Verdict
from location import Location
from outage import Outage
from screen import Screen
from wine import PRODUCT, WinePrefix

# Longer than the message client waits for an answer (60 s).
_LONGEST_SILENCE = 90


def run(chosen, stop):
    """Does everything; the result is the exit status. However it ends, nothing that it started stays behind."""
    file = summary.SummaryFile(chosen)
    screen = Screen()
    try:
        with contextlib.ExitStack() as stack:
            try:
                return _run(chosen, stop, stack, file, screen)
            except Stopped:
                screen.clear()
                print("demo: ending the host, Wine and the server", file=sys.stderr, flush=True)
                raise
    except (DemoFailure, Stopped) as failure:
        screen.clear()
        file.write_failure(str(failure))
        raise


def _run(chosen, stop, stack, file, screen):
    screen.line(f"telvar-rmi demo: {chosen.duration} s, a sample every {chosen.interval} s")

    # 1. What has to be there, and nobody in the way.
    tree = BuildTree(chosen.build)
    prefix = WinePrefix(tree)
    tree.check()
    prefix.check()
    if chosen.port:
        server.check_port(chosen.port)
    tree.lay_out()

    # 2. The message server.
    certificate = None
    if not chosen.plain:
        certificate = server.Certificate(tree.demo)
        certificate.make(tree.tools_log, stop)
    message_server = server.MessageServer(tree, chosen.port, certificate)
    stack.callback(message_server.stop)
    message_server.start()
    message_server.wait_until_ready(stop)
    screen.line(f"  server  {message_server.url}"
                f" ({'TLS, pinned certificate' if certificate else 'plain'})")

    # 3. The host's machine, as an installer leaves it.
    prefix.end()
    stack.callback(prefix.end)
    if prefix.is_new():
        screen.line("  wine    makes its folder, once; that takes half a minute")
    location = Location(tree, chosen.legacy, message_server.url, certificate)
    prefix.install(location.write(), stop)
    screen.line(f"  host    {tree.host.name} under Wine, with a Java machine (product {PRODUCT})")
    screen.line(f"          finds the server by {location}")

    # 4. The host, and what it says.
    ledger = Ledger(Record(tree.record))
    outage = Outage(message_server, ledger, screen) if chosen.outage else None
    host = SampleHost(tree, prefix)
    stack.callback(host.stop)
    host.start(location, chosen)
    screen.begin(host.started)
    ledger.close(_follow(host, location, ledger, outage, screen, stop, chosen))

    # 5. What it comes to.
    problems = summary.find_problems(ledger, location, outage)
    summary.show(screen, ledger, outage, problems, tree.demo)
    file.write(ledger, outage, problems)
    return FAILED if problems else 0


def _follow(host, location, ledger, outage, screen, stop, chosen):
    """Takes in the host's events to the last; the result is the number of items that it says it sent."""
    announced = None
    heard_last = time.monotonic()
    while True:
        stop.check()
        if outage:
            outage.step()
        screen.progress(ledger, chosen.duration)
        taken = host.next_event(0.1)
        if taken is None:
            if time.monotonic() - heard_last > chosen.interval + _LONGEST_SILENCE:
                raise DemoFailure(f"the host said nothing for {_LONGEST_SILENCE} s; see {host.log}")
            continue
        heard_last, event = taken
        if event is None:
            screen.flush_replies()
            host.check_end(announced is not None)
            return announced
        try:
            if event["event"] == "end":
                announced = event["sent"]
            elif event["event"] == "server":
                location.check(event)
            else:
                _take(event, heard_last, ledger, outage, screen)
        except (KeyError, TypeError, AttributeError) as failure:
            raise DemoFailure(f"the host printed an event that lacks something ({failure!r});"
                              f" see {host.log}") from failure


def _take(event, came, ledger, outage, screen):
    kind = event["event"]
    if kind == "sent":
        verdict = ledger.take_sent(event)
        excused = outage.excuses(event, verdict, came) if outage else False
        if verdict.outcome == Verdict.REFUSED and not excused:
            ledger.unexcused.append((event["name"], event["result"]))
        screen.item(event, verdict, came)
    elif kind in ("answer", "action"):
        ledger.take_reply(kind, event["text"])
        screen.reply(kind, event["text"])
    elif kind == "log" and event["level"] in ("error", "warning"):
        screen.complaint(event["level"], event["text"])
