"""Directories to be locked: on the disk that the build lies on, each used once."""

import shutil
import tempfile
from contextlib import contextmanager

from .contestants import ROOT


@contextmanager
def fresh_place():
    """A folder `place` to be locked, with a folder of its own around it for what else is written."""
    above = ROOT / "build/bench/work"
    above.mkdir(parents=True, exist_ok=True)
    around = tempfile.mkdtemp(prefix="locks-", dir=above)
    try:
        place = above / around / "place"
        place.mkdir()
        yield place
    finally:
        shutil.rmtree(around, ignore_errors=True)
