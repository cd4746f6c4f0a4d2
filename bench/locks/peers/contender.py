"""What contender.h does, for locks that are called from Python."""

import sys
import time


def _sleep_until(moment):
    time.sleep(max(0.0, (moment - time.monotonic_ns()) / 1e9))


def print_cycles(acquire, release, count):
    durations = []
    for _ in range(count):
        begin = time.monotonic_ns()
        acquire()
        release()
        durations.append(time.monotonic_ns() - begin)
    print("\n".join(map(str, durations)))


def contend(acquire, release, log, hold_msec):
    with open(log, "w", buffering=1, encoding="ascii") as lines:
        print("ready", time.process_time(), flush=True)
        begin, end = map(int, sys.stdin.readline().split())
        _sleep_until(begin)
        while (wanted := time.monotonic_ns()) < end:
            acquire()
            acquired = time.monotonic_ns()
            time.sleep(hold_msec / 1000)
            releasing = time.monotonic_ns()
            release()
            lines.write(f"{wanted} {acquired} {releasing} {time.monotonic_ns()}\n")
        print("done", time.process_time(), flush=True)


def carry_out(acquire, release, order):
    """The order: cycles COUNT, or contend LOG HOLD_MS."""
    if order[0] == "cycles":
        print_cycles(acquire, release, int(order[1]))
    else:
        contend(acquire, release, order[1], int(order[2]))
