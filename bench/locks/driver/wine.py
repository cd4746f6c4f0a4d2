"""The Windows build under Wine, while nobody else wants the lock."""

import os
import statistics
import subprocess
from contextlib import contextmanager

from .alone import KINDS, PAUSE_USEC, cycle_times
from .contestants import ROOT, WINDOWS_PROGRAMS, Contestant
from .results import say

RUN = str(ROOT / "scripts/run-under-wine")


def _windows_path(place):
    return "Z:" + str(place).replace("/", "\\")


def _contestant(name, settings, words):
    """All of them run in code page 1252. `words`: the program and its first words."""
    program, *rest = words
    command = [RUN, "1252", str(WINDOWS_PROGRAMS / program), *rest]
    return Contestant(name, f"{settings}; on one processor", lambda place: [*command, _windows_path(place)])


def _zorvel(kind):
    return _contestant("zorvel", f"{kind}, refreshed; Windows build under Wine", ["locks_zorvel.exe", kind, "0"])


def _bare(kind):
    steps = f"the prescribed pause, file operations and threads, {kind}; the threads only wait"
    return _contestant("bare-steps", steps, ["locks_bare.exe", kind])


def _pauses():
    return _contestant("pauses", "Sleep(5)", ["locks_bare.exe", "pauses"])


@contextmanager
def _one_processor():
    """Nearly all that a program does under Wine is to ask its server. Whether that is on the same processor or has to be
    woken on another one makes a cycle half as long again, and the system decides it anew for each program; so all
    programs, and a server started for them, are on one."""
    allowed = os.sched_getaffinity(0)
    subprocess.run([RUN, "stop"], check=True)
    os.sched_setaffinity(0, {min(allowed)})
    try:
        yield
    finally:
        os.sched_setaffinity(0, allowed)
        subprocess.run([RUN, "stop"], check=True)


def _measure_kind(results, kind, count, pause):
    ours, floor = _zorvel(kind), _bare(kind)
    whole, above = f"wine-lock-{kind}", f"wine-lock-{kind}-above-pauses"
    for contestant in (ours, floor):
        sample = statistics.median(cycle_times(contestant, count))
        results.add(whole, contestant.name, "us", [sample], contestant.settings)
        results.add(above, contestant.name, "us", [sample - PAUSE_USEC], contestant.settings)
    results.add(whole, _pauses().name, "us", [pause], _pauses().settings)


def measure(results, rounds, count):
    if not (WINDOWS_PROGRAMS / "locks_zorvel.exe").exists():
        say("no rows under Wine: the preset windows-bench is not built")
        return
    say(f"under Wine: {rounds} rounds of {count} cycles")
    with _one_processor():
        for _ in range(rounds):
            pause = statistics.median(cycle_times(_pauses(), count))
            for kind in KINDS:
                _measure_kind(results, kind, count, pause)
