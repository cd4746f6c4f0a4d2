"""The list that the measurements end in."""

import json
import sys
import time

_started = time.monotonic()


def say(text):
    """Progress goes to the error stream, with the seconds since the start."""
    print(f"locks: {time.monotonic() - _started:5.0f} s: {text}", file=sys.stderr, flush=True)


class Results:
    """Samples that belong to one row (or curve) and contestant come together, in the order of their rounds."""

    def __init__(self):
        self._entries = {}

    def add(self, row, contestant, unit, samples, settings):
        key = {"row": row, "contestant": contestant, "unit": unit}
        self._extend(key, samples, settings)

    def add_growth(self, growth, contestant, x, unit, samples, settings):
        key = {"growth": growth, "contestant": contestant, "x": x, "unit": unit}
        self._extend(key, samples, settings)

    def _extend(self, key, samples, settings):
        entry = self._entries.setdefault(tuple(key.values()), {**key, "settings": settings, "samples": []})
        entry["samples"].extend(round(sample, 4) for sample in samples)

    def write(self, path):
        with open(path, "w", encoding="utf-8") as file:
            json.dump(list(self._entries.values()), file, indent=1)
            file.write("\n")
