"""How cost grows: a line for each contestant, named at its end."""
from . import axis, figures, svg, table

WIDTH, HEIGHT = 760, 420
LEFT, TOP, BOTTOM = 74, 76, 356
GAP = 16


def lines_of(series):
    """{contestant: [(x, median), ...]}, ours first."""
    found = {}
    for one in sorted(series, key=lambda s: s.x):
        found.setdefault(one.contestant, []).append((one.x, figures.median(one.samples)))
    return dict(sorted(found.items(), key=lambda item: item[0] != "zorvel"))


def far_apart(lines):
    """Whether contestants differ so much that a linear axis would show the slowest only."""
    at = {}
    for points in lines.values():
        for x, y in points:
            at.setdefault(x, []).append(y)
    return any(axis.spans_decades(ys) for ys in at.values())


def scales(lines, right):
    """Both axes are logarithmic where x spans decades, so that proportional growth is a straight line either way."""
    xs = [x for points in lines.values() for x, _ in points]
    ys = [y for points in lines.values() for _, y in points]
    logarithmic = axis.spans_decades(xs) and axis.crowds_low(xs)
    return (axis.around(xs, LEFT, right, logarithmic),
            axis.around(ys, BOTTOM, TOP, axis.spans_decades(ys) and (logarithmic or far_apart(lines))))


def draw_axes(drawing, x_scale, y_scale, declared):
    for tick in y_scale.ticks():
        drawing.line(LEFT, y_scale(tick), x_scale.end, y_scale(tick))
        drawing.text(LEFT - 8, y_scale(tick) + 4, axis.label(tick), "dim", 11, "end")
    for tick in x_scale.ticks():
        drawing.line(x_scale(tick), BOTTOM, x_scale(tick), BOTTOM + 5, "mark")
        drawing.text(x_scale(tick), BOTTOM + 20, axis.label(tick), "dim", 11, "middle")
    drawing.line(LEFT, BOTTOM, x_scale.end, BOTTOM, "mark")
    drawing.text((LEFT + x_scale.end) / 2, BOTTOM + 42, declared["x"], "dim", 12, "middle")


def draw_names(drawing, lines, colours, x_scale, y_scale):
    """Each name at the end of its line; those that would touch move apart and keep a thread to their line."""
    places = [(x_scale(points[-1][0]), y_scale(points[-1][1])) for points in lines.values()]
    moved = axis.spaced([y for _, y in places], GAP)
    for name, (x, y), label_y in zip(lines, places, moved):
        drawing.line(x + 4, y, x_scale.end + 14, label_y, colours[name], 0.8)
        drawing.text(x_scale.end + 18, label_y + 4, name, colours[name], 12, strong=name == "zorvel")


def dashes_of(name, declared):
    """A floor is no contestant: its line is broken."""
    return "5 4" if name == declared.get("floor") else None


def draw(declared, series):
    lines = lines_of(series)
    peers = [name for name in lines if name not in ("zorvel", declared.get("floor"))]
    colours = {name: svg.colour_of(name, peers) for name in lines}
    colours[declared.get("floor")] = "mark"
    right = WIDTH - 34 - max(svg.width_of(name) for name in lines)
    x_scale, y_scale = scales(lines, right)
    drawing = svg.Drawing(WIDTH, HEIGHT, declared["title"])
    drawing.text(16, 28, declared["title"], size=16, strong=True)
    drawing.text(16, 48, ", ".join(["medians", *table.where_and_unit(declared)])
                 + ("; more is better" if declared["better"] == "higher" else ""), "dim")
    draw_axes(drawing, x_scale, y_scale, declared)
    for name in reversed(lines):
        points = [(x_scale(x), y_scale(y)) for x, y in lines[name]]
        drawing.path(points, colours[name], 3 if name == "zorvel" else 2, dashes_of(name, declared))
        for point in points:
            drawing.dot(*point, 4 if name == "zorvel" else 3, colours[name])
    draw_names(drawing, lines, colours, x_scale, y_scale)
    return str(drawing)
