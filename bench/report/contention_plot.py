"""Contended locks: how long a handover takes (median to 99th percentile) and how evenly turns are shared."""
import math

from . import axis, figures, svg

WIDTH, ROW, TOP = 860, 26, 96
ENDINGS = {"median": "-handover-median", "p99": "-handover-p99", "fairness": "-fairness"}
# Where fairness is drawn, from 0 to 1.
FAIR_FROM, FAIR_TO = 640, 800


def sets(outcomes):
    """(NAME, title, {part: outcome}) of the rows `NAME-handover-median`, `NAME-handover-p99` and `NAME-fairness`."""
    by_name = {o.declared["name"]: o for o in outcomes if o.ours or o.peers}
    for name, outcome in by_name.items():
        if name.endswith(ENDINGS["median"]):
            title = outcome.declared["title"].partition(":")[0]
            stem = name[:-len(ENDINGS["median"])]
            yield stem, f"{title}: handover and fairness", {part: by_name.get(stem + ending)
                                                            for part, ending in ENDINGS.items()}


def medians(outcome):
    """{contestant: median}, ours first."""
    if outcome is None:
        return {}
    return {f.contestant: f.median for f in ([outcome.ours] if outcome.ours else []) + outcome.peers}


def draw_handover(drawing, scale, y, kind, middle, late):
    if middle is None:
        drawing.text(scale.start + 4, y + 4, "no handover was seen", "dim", 11)
        return
    start, end = scale(middle), scale(late if late is not None else middle)
    drawing.line(start, y, end, y, kind, 3)
    if late is not None:
        drawing.dot(end, y, 5, kind, hollow=True)
    drawing.dot(start, y, 5, kind)


def draw_fairness(drawing, y, kind, value):
    drawing.bar(FAIR_FROM, y - 6, (FAIR_TO - FAIR_FROM) * min(value, 1.0), 12, kind)
    drawing.text(FAIR_FROM + (FAIR_TO - FAIR_FROM) * min(value, 1.0) + 6, y + 4, f"{value:.2f}", size=11)


def draw_axes(drawing, scale, bottom, unit):
    for tick in scale.ticks():
        drawing.line(scale(tick), TOP - 14, scale(tick), bottom)
        drawing.text(scale(tick), TOP - 20, axis.label(tick), "dim", 11, "middle")
    for value in (0, 0.5, 1):
        x = FAIR_FROM + (FAIR_TO - FAIR_FROM) * value
        drawing.line(x, TOP - 14, x, bottom)
        drawing.text(x, TOP - 20, f"{value:g}", "dim", 11, "middle")
    drawing.text(scale.start, 62, f"handover, {unit}: from the median to the 99th percentile (hollow)", "dim")
    drawing.text(FAIR_FROM, 62, "fewest / most turns", "dim")


def draw(title, parts):
    middle, late, fair = (medians(parts[part]) for part in ENDINGS)
    order = sorted({**middle, **fair}, key=lambda c: (c != "zorvel", middle.get(c, math.inf)))
    gutter = 28 + max(svg.width_of(c) for c in order)
    values = [v for v in [*middle.values(), *late.values()] if v > 0]
    scale = axis.around(values, gutter, FAIR_FROM - 40, True)
    bottom = TOP + len(order) * ROW
    drawing = svg.Drawing(WIDTH, bottom + 16, title)
    drawing.text(16, 30, title, size=16, strong=True)
    draw_axes(drawing, scale, bottom, figures.written(parts["median"].declared["unit"]))
    for i, contestant in enumerate(order):
        y = TOP + i * ROW + ROW / 2 - 6
        kind = "c0" if contestant == "zorvel" else "mark"
        drawing.text(gutter - 12, y + 4, contestant, anchor="end", strong=contestant == "zorvel")
        draw_handover(drawing, scale, y, kind, middle.get(contestant), late.get(contestant))
        if contestant in fair:
            draw_fairness(drawing, y, kind, fair[contestant])
    return str(drawing)
