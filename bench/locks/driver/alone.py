"""Acquire and release while nobody else wants the lock: time and system calls."""

import statistics
import subprocess

from . import contestants
from .places import fresh_place
from .results import say

KINDS = ("exclusive", "read", "write")
PAUSE_USEC = 5000


def cycle_times(contestant, count, prefix=()):
    """Microseconds of each cycle; the first one, with what is done once only, is left out."""
    with fresh_place() as place:
        command = [*prefix, *contestant.command(place), "cycles", str(count + 1)]
        answer = subprocess.run(command, capture_output=True, text=True, check=False)
    if answer.returncode != 0:
        raise RuntimeError(f"{contestant.name} ended with {answer.returncode}: {answer.stderr}")
    return [int(line) / 1000 for line in answer.stdout.split()][1:]


def measure_times(results, rounds, count):
    """One round after another, everybody once in each. Peers have one kind of lock, which stands in all three rows."""
    say(f"alone: {rounds} rounds of {count} cycles")
    peers = contestants.alone_peers()
    for _ in range(rounds):
        pauses = statistics.median(cycle_times(contestants.pauses(), count))
        for kind in KINDS:
            _measure_ours(results, kind, count, pauses)
        for peer in peers:
            sample = statistics.median(cycle_times(peer, count))
            for kind in KINDS:
                results.add(f"lock-{kind}-above-pauses", peer.name, "us", [sample], peer.settings)
        for contestant in contestants.refresh_threads():
            sample = statistics.median(cycle_times(contestant, count))
            results.add("lock-refresh-thread", contestant.name, "us", [sample], contestant.settings)


def _measure_ours(results, kind, count, pauses):
    pause = contestants.pauses()
    results.add(f"lock-{kind}", pause.name, "us", [pauses], pause.settings)
    for contestant in (contestants.zorvel(kind), contestants.bare(kind)):
        sample = statistics.median(cycle_times(contestant, count))
        results.add(f"lock-{kind}", contestant.name, "us", [sample], contestant.settings)
        results.add(f"lock-{kind}-above-pauses", contestant.name, "us", [sample - PAUSE_USEC], contestant.settings)


def calls(contestant, count):
    """All system calls of a run with so many cycles, those of threads and children included."""
    with fresh_place() as place:
        table = place.parent / "calls"
        cycle_times(contestant, count, ["strace", "-c", "-f", "-q", "-U", "calls,name", "-o", str(table)])
        rows = [line.split() for line in table.read_text(encoding="utf-8").splitlines()]
    totals = [int(row[0]) for row in rows if len(row) == 2 and row[1] == "total"]
    return totals[-1]


def measure_calls(results, count):
    """The start is in both runs, so it is not in the difference."""
    say(f"system calls, by the difference of {count} cycles")
    for kind in KINDS:
        for contestant in (contestants.zorvel(kind), contestants.bare(kind)):
            _add_calls(results, (kind,), contestant, count)
    for peer in contestants.alone_peers():
        _add_calls(results, KINDS, peer, count)


def _add_calls(results, kinds, contestant, count):
    few = 10
    each = (calls(contestant, few + count) - calls(contestant, few)) / count
    for kind in kinds:
        results.add(f"lock-{kind}-calls", contestant.name, "calls", [each], contestant.settings)
