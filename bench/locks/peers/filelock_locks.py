#!/usr/bin/python3 -B
"""filelock: hard by the system's lock on a file, soft by a file that is created exclusively.

filelock_locks.py hard|soft POLL_SECONDS|default DIR cycles COUNT
filelock_locks.py hard|soft POLL_SECONDS|default DIR contend LOG HOLD_MS
"""

import sys

import filelock

from contender import carry_out


def main():
    kind, poll, directory = sys.argv[1:4]
    lock = {"hard": filelock.FileLock, "soft": filelock.SoftFileLock}[kind](f"{directory}/peer.lock")
    how = {} if poll == "default" else {"poll_interval": float(poll)}
    carry_out(lambda: lock.acquire(**how), lock.release, sys.argv[4:])


main()
