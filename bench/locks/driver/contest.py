"""Several processes want the same lock all the time."""

import os
import random
import signal
import statistics
import subprocess
import time
from dataclasses import dataclass

from .places import fresh_place

HOLD_MSEC = 5
# Nobody's users begin in the same microsecond. Of those who do, everybody's pauses end at the same moment for good, and how
# long they wait is then decided by whether a hold lasts a little longer than a pause or a little less.
ARRIVALS_SECONDS = 0.1
# How long after the end somebody may still be on its way out of its last hold.
GRACE_SECONDS = 0.3


@dataclass
class Hold:
    contender: int
    wanted: int
    acquired: int
    releasing: int
    released: int


class Contender:
    """One process. It is the leader of a group of its own, which the program that it may run belongs to."""

    def __init__(self, contestant, place, number):
        self.number = number
        self.log = place.parent / f"log-{number}"
        self.errors = open(place.parent / f"errors-{number}", "w+", encoding="utf-8")
        self.process = subprocess.Popen([*contestant.command(place), "contend", str(self.log), str(HOLD_MSEC)],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=self.errors, text=True,
                                        start_new_session=True)
        self.at_start = 0.0
        self.used = 0.0

    def await_ready(self):
        words = self.process.stdout.readline().split()
        if len(words) != 2 or words[0] != "ready":
            raise RuntimeError(f"a contender does not start: {self.said()}")
        self.at_start = float(words[1])

    def order(self, begin, end):
        self.process.stdin.write(f"{begin} {end}\n")
        self.process.stdin.flush()

    def said(self):
        self.errors.seek(0)
        return self.errors.read().strip()

    def signal(self, number):
        if self.process.returncode is None:
            os.killpg(self.process.pid, number)

    def has_ended(self, options=os.WNOHANG):
        """Takes the end in when it has come. Who was ended while it waited cannot tell its processor time itself."""
        if self.process.returncode is not None:
            return True
        pid, status, usage = os.wait4(self.process.pid, options)
        if pid == 0:
            return False
        self.process.returncode = os.waitstatus_to_exitcode(status)
        last = self.process.stdout.read().split()
        told = float(last[1]) if last[:1] == ["done"] else usage.ru_utime + usage.ru_stime
        self.used = told - self.at_start
        return True

    def holds(self):
        lines = self.log.read_text(encoding="ascii").splitlines() if self.log.exists() else []
        return [Hold(self.number, *map(int, words)) for words in map(str.split, lines) if len(words) == 4]

    def close(self):
        self.process.stdin.close()
        self.process.stdout.close()
        self.errors.close()


def _await_end(contenders, seconds):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline and not all([contender.has_ended() for contender in contenders]):
        time.sleep(0.01)


def _end(contenders):
    """Whoever waits now would wait on: nobody tells it that the contest is over."""
    for contender in contenders:
        contender.signal(signal.SIGTERM)
    _await_end(contenders, 2)
    for contender in contenders:
        contender.signal(signal.SIGKILL)
        contender.has_ended(0)


def run(contestant, count, seconds):
    """Lets so many of them contend and returns the figures."""
    with fresh_place() as place:
        contenders = [Contender(contestant, place, number) for number in range(count)]
        try:
            for contender in contenders:
                contender.await_ready()
            first = time.monotonic_ns() + 100_000_000
            begin = first + round(ARRIVALS_SECONDS * 1e9)
            end = begin + round(seconds * 1e9)
            for contender in contenders:
                contender.order(random.randint(first, begin), end)
            _await_end(contenders, (end - time.monotonic_ns()) / 1e9 + GRACE_SECONDS)
        finally:
            _end(contenders)
        figures = Figures(contenders, begin, end)
        for contender in contenders:
            contender.close()
        return figures


class Figures:
    """What one contest says. Everybody wanted the lock from the beginning to the end."""

    def __init__(self, contenders, begin, end):
        self._begin, self._end = begin, end
        holds = [hold for contender in contenders for hold in contender.holds()]
        self._holds = sorted((hold for hold in holds if begin <= hold.acquired < end), key=lambda hold: hold.acquired)
        self._count = len(contenders)
        self.processor_seconds = sum(contender.used for contender in contenders)
        self.handovers, self.to_others, self.overlaps = self._handovers()

    def _handovers(self):
        every, to_others, overlaps = [], [], 0
        for before, hold in zip(self._holds, self._holds[1:]):
            gap = (hold.acquired - before.releasing) / 1e6
            if gap < 0:
                overlaps += 1
                continue
            every.append(gap)
            if hold.contender != before.contender:
                to_others.append(gap)
        return every, to_others, overlaps

    @property
    def rate(self):
        return len(self._holds) / ((self._end - self._begin) / 1e9)

    @property
    def fairness(self):
        counts = [sum(hold.contender == number for hold in self._holds) for number in range(self._count)]
        return min(counts) / max(counts) if max(counts) else 0.0

    @property
    def longest_wait(self):
        """Milliseconds, also of those who still waited at the end."""
        waits = [hold.acquired - hold.wanted for hold in self._holds]
        for number in range(self._count):
            last = max((hold.released for hold in self._holds if hold.contender == number), default=self._begin)
            waits.append(self._end - last)
        return max(waits) / 1e6

    @property
    def waiting_processor_time(self):
        """Milliseconds of processor time for each second of one process's waiting. Holding and releasing cost some too,
        and are in it."""
        held = sum(hold.releasing - hold.acquired for hold in self._holds) / 1e9
        waiting = self._count * (self._end - self._begin) / 1e9 - held
        return 1000 * self.processor_seconds / waiting


def percentile(values, share):
    """By the nearest rank."""
    return sorted(values)[min(len(values) - 1, int(share * len(values)))]


def median(values):
    return statistics.median(values)
