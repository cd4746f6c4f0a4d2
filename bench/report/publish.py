"""Puts the results into the documentation: the plots beside the page, the tables between its markers."""
import re

from . import head, plots, table


def between(text, marker, content):
    """The text with what stands between `<!-- marker -->` and `<!-- /marker -->` replaced."""
    pattern = re.compile(f"(<!-- {marker} -->\n).*?(<!-- /{marker} -->)", re.S)
    if len(pattern.findall(text)) != 1:
        raise ValueError(f"the page has no single pair of markers {marker}")
    return pattern.sub(lambda found: found.group(1) + content + found.group(2), text)


def pictures(written, folder, wanted):
    return "\n".join(f"![{title}]({folder}/{name})\n" for name, title in written if wanted(name))


def two_columns(left, right, pairs):
    lines = [f"| {left} | {right} |", "|---|---|"] + [f"| {one} | {other} |" for one, other in pairs]
    return "\n".join(lines) + "\n"


def floors(outcomes):
    """The notes of the rows; what several rows say alike stands there once."""
    notes = {}
    for outcome in outcomes:
        if outcome.declared.get("note"):
            where = ", under Wine" if outcome.declared["system"] == "windows" else ""
            notes.setdefault(outcome.declared["note"], []).append(outcome.declared["title"] + where)
    return [("; ".join(dict.fromkeys(titles)), note) for note, titles in notes.items()]


def growth(folder, declared, series):
    picture = f"![{declared['title']}]({folder}/{plots.growth_name(declared)})"
    return f"{picture}\n\n{table.growth_markdown(declared, series)}"


def publish(page, facts, outcomes, growths):
    folder = page.with_suffix("")
    written = plots.write(folder, outcomes, growths)
    text = page.read_text(encoding="utf-8")
    tables = "\n".join(f"- {line}" for line in head.lines(facts)) + "\n\n" + table.summary(outcomes) + ".\n\n"
    text = between(text, "table", tables + table.markdown(outcomes))
    text = between(text, "peers", two_columns("peer", "version and settings", facts["peers"]))
    text = between(text, "floors", two_columns("work", "what sets its floor, or what else to know", floors(outcomes)))
    text = between(text, "ratios", pictures(written, folder.name, lambda name: name == "ratios.svg"))
    text = between(text, "growth", "\n".join(growth(folder.name, *one) for one in growths))
    text = between(text, "contention", pictures(written, folder.name, lambda name: name.startswith("contention-")))
    page.write_text(text, encoding="utf-8")
    return written
