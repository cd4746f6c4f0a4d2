#!/usr/bin/python3 -B
"""flufl.lock: by a hard link to a file of one's own.

flufl_locks.py DIR cycles COUNT
flufl_locks.py DIR contend LOG HOLD_MS
"""

import sys

from flufl.lock import Lock

from contender import carry_out


def main():
    lock = Lock(f"{sys.argv[1]}/peer.lock")
    carry_out(lock.lock, lock.unlock, sys.argv[2:])


main()
