"""Ours over the best peer's, of all rows: bars on a logarithmic axis from 1."""
import math

from . import axis, figures, svg, table

# The titles stand left of the bars and take what the longest one needs.
BARS, ROW, HEADING, TOP = 420, 20, 30, 74
# What is written at the end of a bar.
FIGURE = 48


def limits(ratios):
    """From a thousandth to a thousandfold at most; what goes beyond ends there and its figure stands beside it."""
    low, high = min(ratios + [0.5]), max([r for r in ratios if r != float("inf")] + [2.0])
    return max(0.001, low * 0.8), min(1000.0, high * 1.25)


def draw_axis(drawing, scale, bottom):
    for tick in scale.ticks():
        x = scale(tick)
        drawing.line(x, TOP - 6, x, bottom)
        drawing.text(x, TOP - 12, axis.label(tick), "dim", 11, "middle")
    drawing.line(scale(1), TOP - 6, scale(1), bottom, "mark", 1.5)


def colour(outcome):
    """Ours; what somebody does for less; and in between what nobody who does the same does for less."""
    if outcome.ratio <= 1:
        return "c0"
    return "c7" if outcome.is_at_floor else "c1"


def draw_bar(drawing, scale, outcome, y):
    start, end = sorted((scale(1.0), scale(outcome.ratio)))
    behind = outcome.ratio > 1
    drawing.text(scale.start - FIGURE, y + 14, outcome.declared["title"], anchor="end")
    drawing.bar(start, y + 4, end - start, 12, colour(outcome))
    text = figures.ratio_text(outcome.ratio)
    drawing.text(end + 6 if behind else start - 6, y + 14, text, "ink", 11, "start" if behind else "end",
                 behind and not outcome.is_at_floor)


def draw(outcomes):
    """The SVG, or None where no row has a peer."""
    outcomes = [o for o in outcomes if o.ratio is not None]
    if not outcomes:
        return None
    parts = list(table.groups(outcomes))
    bottom = TOP + len(outcomes) * ROW + len(parts) * HEADING
    gutter = 24 + max(svg.width_of(o.declared["title"]) for o in outcomes)
    start = gutter + FIGURE
    drawing = svg.Drawing(math.ceil(start + BARS + FIGURE), bottom + 16, "zorvel's cost over the best peer's")
    drawing.text(16, 28, "zorvel's cost over the best peer's", size=17, strong=True)
    drawing.text(16, 48, "left of 1: less than every peer; right of 1: more than one of them, in grey where the floor is reached", "dim")
    scale = axis.Axis(*limits([o.ratio for o in outcomes]), start, start + BARS, True)
    draw_axis(drawing, scale, bottom)
    y = TOP
    for heading, members in parts:
        drawing.text(16, y + 20, heading, size=13, strong=True)
        y += HEADING
        for outcome in members:
            draw_bar(drawing, scale, outcome, y)
            y += ROW
    return str(drawing)
