"""What a held lock costs while it is held."""

import subprocess

from .contestants import PROGRAMS
from .places import fresh_place
from .results import say

LOCKS = 200


def _extra(words):
    """Kibibytes and threads beyond those of the first."""
    answer = subprocess.run([str(PROGRAMS / "locks_zorvel"), *words], capture_output=True, text=True, check=True)
    return [int(word) for word in answer.stdout.split()]


def measure(results, rounds):
    say(f"memory of {LOCKS} held locks")
    for _ in range(rounds):
        with fresh_place() as place:
            for number in range(LOCKS):
                (place / str(number)).mkdir()
            kib, threads = _extra(["held", str(place), str(LOCKS)])
        settings = f"{LOCKS} exclusive locks on {LOCKS} directories, refreshed"
        results.add("lock-memory", "zorvel", "KiB", [kib / (LOCKS - 1)], settings)
        results.add("lock-threads", "zorvel", "threads", [threads / (LOCKS - 1)], settings)
        idle, _ = _extra(["threads", str(LOCKS)])
        results.add("lock-memory", "idle-threads", "KiB", [idle / (LOCKS - 1)], f"{LOCKS} threads that wait")
