"""All plots, as files."""
import re

from . import contention_plot, growth_plot, ratio_plot


def file_name(*words):
    return re.sub(r"[^a-z0-9]+", "-", " ".join(words).lower()).strip("-") + ".svg"


def growth_name(declared):
    return file_name("growth", declared["name"], "" if declared["system"] == "linux" else declared["system"])


def drawn(outcomes, growths):
    """(file name, title, SVG) of each plot."""
    ratios = ratio_plot.draw(outcomes)
    if ratios:
        yield "ratios.svg", "Ours over the best peer's, all rows", ratios
    for declared, series in growths:
        yield growth_name(declared), declared["title"], growth_plot.draw(declared, series)
    for name, title, parts in contention_plot.sets(outcomes):
        yield file_name("contention", name), title, contention_plot.draw(title, parts)


def write(folder, outcomes, growths):
    """The (file name, title) of what was drawn; what was there before goes."""
    folder.mkdir(parents=True, exist_ok=True)
    for old in folder.glob("*.svg"):
        old.unlink()
    written = []
    for name, title, text in drawn(outcomes, growths):
        (folder / name).write_text(text, encoding="utf-8")
        written.append((name, title))
    return written
