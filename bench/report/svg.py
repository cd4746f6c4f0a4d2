"""Drawing: an SVG whose colours follow the reader's light or dark theme, also inside an <img>."""
from xml.sax.saxutils import escape

# Class: (light, dark). c0 is always ours.
COLOURS = {
    "page": ("#ffffff", "#14181d"), "ink": ("#1a1f26", "#e6e9ee"), "dim": ("#5b6470", "#9aa5b1"),
    "grid": ("#d9dde3", "#333b45"), "mark": ("#5b6470", "#9aa5b1"),
    "c0": ("#0a5fd0", "#6fb3ff"), "c1": ("#c2410c", "#ff9d5c"), "c2": ("#15803d", "#5fd38a"),
    "c3": ("#9333ea", "#cfa3ff"), "c4": ("#b4235a", "#ff8ab3"), "c5": ("#0e7490", "#4fd3e6"),
    "c6": ("#8a6100", "#e6c04d"), "c7": ("#5b6470", "#aab4c0"), "c8": ("#4d4d9c", "#a9a9ff"),
}
PEER_COLOURS = 8
# A generous guess of a character's width for a font size of 1: no font is asked for.
CHARACTER = 0.58


def rules(which):
    return "".join(f".{name}{{fill:{pair[which]}}}.s-{name}{{stroke:{pair[which]}}}" for name, pair in COLOURS.items())


STYLE = ("text{font-family:system-ui,'Segoe UI',Helvetica,Arial,sans-serif}line,polyline{fill:none}"
         f".strong{{font-weight:700}}{rules(0)}@media (prefers-color-scheme:dark){{{rules(1)}}}")


def width_of(text, size=12):
    return len(text) * size * CHARACTER


def colour_of(contestant, peers):
    """Ours has the first colour; peers have theirs in the order given."""
    return "c0" if contestant not in peers else f"c{1 + peers.index(contestant) % PEER_COLOURS}"


class Drawing:
    def __init__(self, width, height, title):
        self.size = width, height
        self.parts = [f"<title>{escape(title)}</title>", f"<style>{STYLE}</style>",
                      f'<rect class="page" width="{width}" height="{height}"/>']

    def text(self, x, y, text, kind="ink", size=12, anchor="start", strong=False):
        classes = f"{kind} strong" if strong else kind
        self.parts.append(f'<text x="{x:.1f}" y="{y:.1f}" class="{classes}" font-size="{size}" '
                          f'text-anchor="{anchor}">{escape(text)}</text>')

    def line(self, x1, y1, x2, y2, kind="grid", width=1, dashes=None):
        more = f' stroke-dasharray="{dashes}"' if dashes else ""
        self.parts.append(f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" class="s-{kind}" '
                          f'stroke-width="{width}"{more}/>')

    def bar(self, x, y, width, height, kind):
        self.parts.append(f'<rect x="{x:.1f}" y="{y:.1f}" width="{max(width, 1):.1f}" height="{height:.1f}" rx="2" '
                          f'class="{kind}"/>')

    def dot(self, x, y, radius, kind, hollow=False):
        classes = f"page s-{kind}" if hollow else kind
        self.parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{radius}" class="{classes}" stroke-width="2"/>')

    def path(self, points, kind, width=2, dashes=None):
        joined = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
        more = f' stroke-dasharray="{dashes}"' if dashes else ""
        self.parts.append(f'<polyline points="{joined}" class="s-{kind}" stroke-width="{width}" '
                          f'stroke-linejoin="round"{more}/>')

    def __str__(self):
        width, height = self.size
        return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
                f'height="{height}" role="img">\n' + "\n".join(self.parts) + "\n</svg>\n")
