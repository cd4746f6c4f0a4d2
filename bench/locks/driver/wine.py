"""The Windows build under Wine, while nobody else wants the lock."""

import statistics

from . import contestants
from .alone import KINDS, PAUSE_USEC, cycle_times
from .contestants import ROOT, WINDOWS_PROGRAMS, Contestant
from .results import say

RUN = [str(ROOT / "scripts/run-under-wine"), "1252"]


def _windows_path(place):
    return "Z:" + str(place).replace("/", "\\")


def _zorvel(kind):
    return Contestant("zorvel", f"{kind}, refreshed; Windows build under Wine",
                      lambda place: [*RUN, str(WINDOWS_PROGRAMS / "locks_zorvel.exe"), kind, "0", _windows_path(place)])


def _bare(kind, name, settings):
    return Contestant(name, settings,
                      lambda place: [*RUN, str(WINDOWS_PROGRAMS / "locks_bare.exe"), kind, _windows_path(place)])


def measure(results, rounds, count):
    if not (WINDOWS_PROGRAMS / "locks_zorvel.exe").exists():
        say("no rows under Wine: the preset windows-bench is not built")
        return
    say(f"under Wine: {rounds} rounds of {count} cycles")
    pauses = _bare("pauses", "pauses", "Sleep(5)")
    floor = _bare("create-remove", "create-remove", "Sleep(5), CreateFile(CREATE_NEW), CloseHandle, DeleteFile")
    for _ in range(rounds):
        pause, least = (statistics.median(cycle_times(one, count)) for one in (pauses, floor))
        for kind in KINDS:
            ours = _zorvel(kind)
            sample = statistics.median(cycle_times(ours, count))
            whole, above = f"wine-lock-{kind}", f"wine-lock-{kind}-above-pauses"
            results.add(whole, ours.name, "us", [sample], ours.settings)
            results.add(whole, pauses.name, "us", [pause], pauses.settings)
            results.add(above, ours.name, "us", [sample - PAUSE_USEC], ours.settings)
            results.add(above, floor.name, "us", [least - PAUSE_USEC], floor.settings)
