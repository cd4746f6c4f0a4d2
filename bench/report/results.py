"""results.json: everything that was measured and what was made of it."""
import json
import math

from . import figures, outcome as outcomes_of
from .raw import Series


def plain(value):
    """Figures that JSON cannot hold are written as words."""
    if isinstance(value, float) and not math.isfinite(value):
        return "infinite"
    return value


def figure(one):
    if one is None:
        return None
    return {"contestant": one.contestant, "median": one.median, "spread in percent": one.spread,
            "settings": one.settings, "samples": one.samples}


def row(outcome):
    return {**outcome.declared, "zorvel": figure(outcome.ours), "measured peers": [figure(p) for p in outcome.peers],
            "measured floor": figure(outcome.floor),
            "measured base": figure(outcome.base), "ratio": plain(outcome.ratio),
            "ratio to the floor": plain(outcome.floor_ratio), "met": outcome.met,
            "at its floor": outcome.is_at_floor}


def growth(declared, series):
    return {**declared, "points": [{"contestant": s.contestant, "x": s.x, "median": figures.median(s.samples),
                                    "settings": s.settings, "samples": s.samples} for s in series]}


def write(path, facts, outcomes, growths, complaints):
    content = {**facts, "rows": [row(o) for o in outcomes], "growths": [growth(d, s) for d, s in growths],
               "complaints": complaints}
    path.write_text(json.dumps(content, indent=1, ensure_ascii=False, allow_nan=False) + "\n", encoding="utf-8")


def read(path):
    """(facts, outcomes, growths, complaints) as they were written; judged anew."""
    content = json.loads(path.read_text(encoding="utf-8"))
    outcomes, growths = [], []
    measured = ("zorvel", "measured peers", "measured floor", "measured base", "ratio", "ratio to the floor", "met",
                "at its floor")
    for entry in content.pop("rows"):
        found = [f for f in [entry["zorvel"], entry["measured floor"], entry["measured base"], *entry["measured peers"]] if f]
        declared = {key: value for key, value in entry.items() if key not in measured}
        outcomes.append(outcomes_of.judge(declared, [as_series(declared, f) for f in found]))
    for entry in content.pop("growths"):
        points = [as_series(entry, point) for point in entry["points"]]
        growths.append(({key: value for key, value in entry.items() if key != "points"}, points))
    return {k: v for k, v in content.items() if k != "complaints"}, outcomes, growths, content["complaints"]


def as_series(declared, entry):
    return Series(declared["system"], declared["name"], entry["contestant"], declared["unit"], entry["samples"],
                  entry.get("x"), entry["settings"])
