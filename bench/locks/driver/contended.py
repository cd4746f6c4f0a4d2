"""The rows with contenders, and how cost grows with them and with the latency of the file system."""

from . import contest, contestants
from .alone import cycle_times
from .results import say

CONTENDERS = 8


def measure(results, rounds, seconds):
    """One round after another, everybody once in each, ours and the floor three times: how the pauses of the contenders lie
    to one another is chance and changes slowly. Who had the lock how often is counted over long contests: in a short one
    a hold more or less at its ends is a hundredth or two."""
    ours, floor, *peers = contestants.contending()
    third = (len(peers) + 2) // 3
    everybody = [one for start in range(0, len(peers), third) for one in (ours, floor, *peers[start:start + third])]
    for number in range(rounds):
        for contestant in everybody:
            say(f"{CONTENDERS} contenders, round {number + 1} of {rounds}: {contestant.name}")
            _add(results, contestant, contest.run(contestant, CONTENDERS, seconds))


def _add(results, contestant, figures):
    def add(row, unit, *samples):
        results.add(f"contended-{row}", contestant.name, unit, samples, contestant.settings)

    add("rate", "1/s", figures.rate)
    add("fairness", "fewest/most", figures.fairness)
    add("longest-wait", "ms", figures.longest_wait)
    add("waiting-processor-time", "ms/s", figures.waiting_processor_time)
    add("overlaps", "count", figures.overlaps)
    if figures.handovers:
        add("handover-median", "ms", contest.median(figures.handovers))
        add("handover-p99", "ms", contest.percentile(figures.handovers, 0.99))
        add("handover-longest", "ms", max(figures.handovers))
    if figures.to_others:
        add("handover-to-another", "ms", contest.median(figures.to_others))


def measure_contenders(results, numbers, seconds):
    for number in numbers:
        for contestant in (contestants.zorvel(), contestants.bare()):
            say(f"{number} contenders: {contestant.name}")
            _add_curves(results, "contenders", number, contestant, contest.run(contestant, number, seconds))


def measure_latencies(results, latencies, seconds, cycles):
    for latency in latencies:
        contestant = contestants.zorvel(latency_msec=latency)
        say(f"latency of {latency} ms")
        _add_curves(results, "latency", latency, contestant, contest.run(contestant, CONTENDERS, seconds))
        times = [usec / 1000 for usec in cycle_times(contestant, cycles)]
        results.add_growth("lock-cycle-by-latency", contestant.name, latency, "ms", times, contestant.settings)


def _add_curves(results, axis, x, contestant, figures):
    def add(curve, unit, sample):
        results.add_growth(f"lock-{curve}-by-{axis}", contestant.name, x, unit, [sample], contestant.settings)

    if figures.overlaps:
        raise RuntimeError(f"{contestant.name}: {figures.overlaps} times two held the lock")
    add("rate", "1/s", figures.rate)
    add("longest-wait", "ms", figures.longest_wait)
    if figures.handovers:
        add("handover", "ms", contest.median(figures.handovers))
