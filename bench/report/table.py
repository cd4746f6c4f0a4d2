"""The table, for a terminal and as Markdown."""
import textwrap

from . import figures

SYSTEMS = {"linux": "native", "windows": "under Wine"}
HEAD = ["work", "zorvel", "peers, best first", "ratio", "spread", "floor", "× floor", "target", "met"]
NOT_MEASURED = "NOT MEASURED"
LIMITS = [("target", "{sign} {limit:.2f} × peer"), ("floor_target", "{sign} {limit:.2f} × floor"),
          ("base_target", "{sign} {limit:.2f} × {base}")]


def one(figure, unit):
    return figures.with_unit(figure.median, unit) if figure else NOT_MEASURED


def peers(outcome, unit):
    if not outcome.peers:
        return "none" if outcome.declared.get("peers") == [] else NOT_MEASURED
    texts = [f"{peer.contestant} {figures.number(peer.median)}" for peer in outcome.peers]
    return f"{', '.join(texts)} {figures.written(unit)}".rstrip()


def spread(outcome):
    """Ours, and the best peer's."""
    parts = [outcome.ours] + outcome.peers[:1]
    texts = ["–" if part is None or part.spread is None else "<1" if part.spread < 1 else f"{part.spread:.0f}"
             for part in parts]
    return " / ".join(texts) + " %" if any(text != "–" for text in texts) else "–"


def target(declared):
    texts = [pattern.format(sign="≤", limit=declared[limit], base=declared.get("base"))
             for limit, pattern in LIMITS if declared.get(limit) is not None]
    if declared.get("value_target") is not None:
        sign = "≥" if declared["better"] == "higher" else "≤"
        texts.append(f"{sign} {figures.with_unit(declared['value_target'], declared['unit'])}")
    return ", ".join(texts) or "–"


def verdict(outcome):
    if outcome.met is None:
        return "–"
    return "yes" if outcome.met else "floor" if outcome.is_at_floor else "NO"


def cells(outcome):
    declared = outcome.declared
    unit = declared["unit"]
    floor = f"{declared['floor']} {one(outcome.floor, unit)}" if declared.get("floor") else "–"
    more = " (more is better)" if declared["better"] == "higher" else ""
    return [declared["title"] + more, one(outcome.ours, unit), peers(outcome, unit), figures.ratio_text(outcome.ratio),
            spread(outcome), floor, figures.ratio_text(outcome.floor_ratio), target(declared),
            verdict(outcome)]


def settings(outcomes, told):
    """(contestant, settings) of everybody but us whose settings were told; who had several is there with each."""
    found = {(name, how): None for name, how in told.items() if how}
    for outcome in outcomes:
        for figure in outcome.peers + ([outcome.floor] if outcome.floor else []):
            if figure.settings:
                found[figure.contestant, figure.settings] = None
    return sorted(found)


def groups(outcomes):
    """(heading, outcomes) by area: natively first, then under Wine."""
    for system, where in SYSTEMS.items():
        areas = dict.fromkeys(o.declared["area"] for o in outcomes if o.declared["system"] == system)
        for area in areas:
            yield f"{area}, {where}", [o for o in outcomes
                                       if (o.declared["system"], o.declared["area"]) == (system, area)]


def summary(outcomes):
    with_target = [o for o in outcomes if o.met is not None]
    with_peer = [o for o in outcomes if o.ratio is not None]
    at_floor = sum(o.ratio > 1 and o.is_at_floor for o in with_peer)
    excused = sum(not o.met and o.is_at_floor for o in with_target)
    return (f"{len(outcomes)} rows; at or ahead of the best peer in {sum(o.ratio <= 1 for o in with_peer)} of "
            f"{len(with_peer)} that have peers, at the floor in {at_floor} more; targets met in "
            f"{sum(o.met for o in with_target)} of {len(with_target)}, the floor reached in {excused} more")


def markdown(outcomes):
    lines = ["| " + " | ".join(HEAD) + " |", "|---|" + "---:|" + "---|" + "---:|" * 2 + "---|" + "---:|" + "---|" * 2]
    for heading, members in groups(outcomes):
        lines.append(f"| **{heading}** |" + " |" * (len(HEAD) - 1))
        for outcome in members:
            texts = [text.replace("|", "\\|") for text in cells(outcome)]
            if outcome.ratio is not None and outcome.ratio > 1 and not outcome.is_at_floor:
                texts[3] = f"**{texts[3]}**"
            if texts[8] == "NO":
                texts[8] = "**no**"
            lines.append("| " + " | ".join(texts) + " |")
    return "\n".join(lines) + "\n"


WIDTHS = [38, 12, 46, 6, 9, 24, 8, 14, 5]


def terminal(outcomes):
    """The same cells in columns; what is too long for its column goes on below."""
    def row(texts):
        wrapped = [textwrap.wrap(text, width) or [""] for text, width in zip(texts, WIDTHS)]
        return ["  ".join((column[i] if i < len(column) else "").ljust(width)
                          for column, width in zip(wrapped, WIDTHS)).rstrip() for i in range(max(map(len, wrapped)))]
    lines = row(HEAD) + ["  ".join("-" * width for width in WIDTHS)]
    for heading, members in groups(outcomes):
        lines += ["", heading.upper()]
        for outcome in members:
            lines += row(cells(outcome))
    return "\n".join(lines) + "\n"


def where_and_unit(declared):
    return [text for text in (figures.written(declared["unit"]), SYSTEMS[declared["system"]]) if text]


def growth_markdown(declared, series):
    """A line for each contestant, a column for each x."""
    columns = sorted({s.x for s in series})
    lines = [f"{declared['title']} ({', '.join(where_and_unit(declared))}):", "",
             f"| {declared['x']} | " + " | ".join(f"{x:,.0f}" if x == int(x) else f"{x:g}" for x in columns) + " |",
             "|---|" + "---:|" * len(columns)]
    for contestant in dict.fromkeys(s.contestant for s in series):
        found = {s.x: figures.median(s.samples) for s in series if s.contestant == contestant}
        lines.append(f"| {contestant} | " + " | ".join(figures.number(found[x]) if x in found else "–"
                                                       for x in columns) + " |")
    return "\n".join(lines) + "\n"
