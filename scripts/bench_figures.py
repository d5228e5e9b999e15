"""Draws the plots of ./dev bench --scale as SVG.

usage: bench_figures.py RESULTS_JSON OUTPUT_FOLDER

Writes NAME.svg for each plot. Curves go through the medians, the last of which is written out; a bar
spans the least and the greatest of the passes. The colours follow the reader's light or dark preference.
"""

import json
import math
import pathlib
import sys
from xml.sax.saxutils import escape

WIDTH, HEIGHT = 760, 430
EDGE, LEFT, RIGHT, BOTTOM = 24, 72, 736, 372
TITLE_LINE, LEGEND_LINE, LEGEND_STEP = 28, 54, 20
MARKS = ("circle", "square", "diamond", "triangle")

# What a class of element is drawn with: light, and where it differs, dark.
LOOKS = {
    "paper": ("fill", "#ffffff", "#0d1117"),
    "ink": ("fill", "#1f2328", "#f0f6fc"),
    "soft": ("fill", "#59636e", "#9198a1"),
    "grid": ("stroke", "#d8dee4", "#30363d"),
    "axis": ("stroke", "#59636e", "#9198a1"),
    "curve0": ("stroke", "#0969da", "#58a6ff"),
    "curve1": ("stroke", "#c2410c", "#ffa657"),
    "curve2": ("stroke", "#1a7f37", "#56d364"),
    "curve3": ("stroke", "#8250df", "#d2a8ff"),
    "mark0": ("fill", "#0969da", "#58a6ff"),
    "mark1": ("fill", "#c2410c", "#ffa657"),
    "mark2": ("fill", "#1a7f37", "#56d364"),
    "mark3": ("fill", "#8250df", "#d2a8ff"),
}
DARK = "\n".join(f".{name} {{ {what}: {dark} }}" for name, (what, _, dark) in LOOKS.items())
STYLE = f"<style>@media (prefers-color-scheme: dark) {{\n{DARK}\n}}</style>"
FONT = 'font-family="system-ui, Segoe UI, DejaVu Sans, sans-serif"'


def look(name):
    """The class, and the light colour for renderers that know no styles."""
    what, light, _ = LOOKS[name]
    return f'class="{name}" {what}="{light}"'


class Scale:
    """Maps the values of an axis to pixels."""

    def __init__(self, low, high, start, end, logarithmic):
        self.logarithmic = logarithmic
        self.low, self.high = self._of(low), self._of(high)
        self.start, self.end = start, end

    def _of(self, value):
        return math.log10(value) if self.logarithmic else value

    def __call__(self, value):
        share = (self._of(value) - self.low) / (self.high - self.low)
        return self.start + share * (self.end - self.start)


def number(value):
    return f"{value:,.0f}" if value >= 1 else f"{value:g}"


def decades(low, high):
    powers = range(math.ceil(math.log10(low)), math.floor(math.log10(high)) + 1)
    return [10.0**n for n in powers]


def round_bound(value, rounding):
    """The nearest of 1, 2 and 5 times a power of ten, below or above as `rounding` says."""
    unit = 10.0 ** math.floor(math.log10(value))
    bounds = [unit * n for n in (1, 2, 5, 10)]
    if rounding == "below":
        return max(bound for bound in bounds if bound <= value)
    return min(bound for bound in bounds if bound >= value)


def steps_from_zero(high):
    """Some five round values that reach beyond `high`."""
    rough = high / 5
    unit = 10 ** math.floor(math.log10(rough))
    step = next(unit * n for n in (1, 2, 2.5, 5, 10) if unit * n >= rough)
    return [step * n for n in range(math.ceil(high / step) + 1)]


def mark(index, x, y):
    shape, ink = MARKS[index % len(MARKS)], look(f"mark{index % len(MARKS)}")
    if shape == "circle":
        return f'<circle {ink} cx="{x:.1f}" cy="{y:.1f}" r="4"/>'
    corners = {"square": [(-4, -4), (4, -4), (4, 4), (-4, 4)],
               "diamond": [(0, -5), (5, 0), (0, 5), (-5, 0)],
               "triangle": [(0, -5), (5, 4), (-5, 4)]}[shape]
    points = " ".join(f"{x + dx:.1f},{y + dy:.1f}" for dx, dy in corners)
    return f'<polygon {ink} points="{points}"/>'


def line(name, x1, y1, x2, y2, width=1):
    return (f'<line {look(name)} x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" '
            f'stroke-width="{width}"/>')


def label(text, x, y, anchor="start", name="ink", size=13, weight=400):
    return (f'<text {look(name)} x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" '
            f'font-size="{size}" font-weight="{weight}">{escape(text)}</text>')


def drawn_axes(plot, x, y, x_ticks, y_ticks, top):
    parts = []
    for value in y_ticks:
        parts.append(line("grid", LEFT, y(value), RIGHT, y(value)))
        parts.append(label(number(value), LEFT - 8, y(value) + 4, "end", "soft", 12))
    for value in x_ticks:
        parts.append(line("axis", x(value), BOTTOM, x(value), BOTTOM + 5))
        parts.append(label(number(value), x(value), BOTTOM + 20, "middle", "soft", 12))
    parts.append(line("axis", LEFT, BOTTOM, RIGHT, BOTTOM))
    parts.append(label(plot["y"]["title"], EDGE, top - 16))
    parts.append(label(plot["x"]["title"], (LEFT + RIGHT) / 2, BOTTOM + 42, "middle"))
    return parts


def drawn_curve(index, curve, x, y):
    name = f"curve{index % len(MARKS)}"
    parts = []
    for point in curve["points"]:
        at = x(point["x"])
        parts.append(line(name, at, y(point["least"]), at, y(point["greatest"])))
    places = [(x(point["x"]), y(point["median"])) for point in curve["points"]]
    path = " ".join(f"{px:.1f},{py:.1f}" for px, py in places)
    parts.append(f'<polyline {look(name)} points="{path}" fill="none" stroke-width="2" '
                 'stroke-linejoin="round"/>')
    parts += [mark(index, px, py) for px, py in places]
    last_x, last_y = places[-1]
    parts.append(label(number(curve["points"][-1]["median"]), last_x + 9,
                       min(last_y + 4, BOTTOM - 5), size=12))
    return parts


def drawn_legend(curves):
    parts = []
    for index, curve in enumerate(curves):
        height = LEGEND_LINE + index * LEGEND_STEP
        parts.append(line(f"curve{index % len(MARKS)}", EDGE, height - 4, EDGE + 28, height - 4, 2))
        parts.append(mark(index, EDGE + 14, height - 4))
        parts.append(label(curve["name"], EDGE + 38, height))
    return parts


def svg(plot):
    points = [point for curve in plot["curves"] for point in curve["points"]]
    x_values = sorted({point["x"] for point in points})
    low, high = 0, max(point["greatest"] for point in points)
    if plot["y"]["logarithmic"]:
        low = round_bound(min(point["least"] for point in points) * 0.7, "below")
        high = round_bound(high, "above")
        y_ticks = decades(low, high)
    else:
        y_ticks = steps_from_zero(high)
        high = y_ticks[-1]
    top = LEGEND_LINE + len(plot["curves"]) * LEGEND_STEP + 24
    x = Scale(x_values[0], x_values[-1], LEFT + 24, RIGHT - 64, plot["x"]["logarithmic"])
    y = Scale(low, high, BOTTOM, top, plot["y"]["logarithmic"])
    parts = [f'<rect {look("paper")} width="{WIDTH}" height="{HEIGHT}" rx="8"/>',
             label(plot["title"], EDGE, TITLE_LINE, size=16, weight=600)]
    parts += drawn_legend(plot["curves"])
    parts += drawn_axes(plot, x, y, x_values, y_ticks, top)
    for index, curve in enumerate(plot["curves"]):
        parts += drawn_curve(index, curve, x, y)
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" '
            f'width="{WIDTH}" height="{HEIGHT}" role="img" aria-label="{escape(plot["title"])}" {FONT}>')
    return "\n".join([head, STYLE, *parts, "</svg>", ""])


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    plots = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))["plots"]
    folder = pathlib.Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    for plot in plots:
        (folder / f"{plot['name']}.svg").write_text(svg(plot), encoding="utf-8")


main()
