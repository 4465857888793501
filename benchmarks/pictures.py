"""Draws figures of the table as SVG, readable on light and on dark pages."""

import math
from xml.sax.saxutils import escape

WIDTH, LEFT, RIGHT, ROW, HEAD = 720, 210, 90, 24, 34
STYLE = """
text { font: 14px sans-serif; fill: #1f2328 }
.head { font-weight: bold }
.tick, .who { font-size: 12px; fill: #59636e }
.grid { stroke: #d1d9e0 }
.value { stroke: #7d8590; fill: #7d8590; stroke-width: 2 }
.ours { fill: #0969da; stroke: #0969da }
.who.ours { stroke: none; font-weight: bold }
@media (prefers-color-scheme: dark) {
  text { fill: #f0f6fc }
  .tick, .who { fill: #9198a1 }
  .grid { stroke: #3d444d }
  .who.ours { fill: #4493f8 }
  .ours { fill: #4493f8; stroke: #4493f8 }
}
"""


class Logarithmic:
    """Whole powers of ten around all values."""

    def __init__(self, values):
        self.first = math.floor(math.log10(min(values)))
        self.last = math.ceil(math.log10(max(values)))
        self.ticks = [10.0**i for i in range(self.first, self.last + 1)]

    def __call__(self, value):
        return (math.log10(value) - self.first) / max(self.last - self.first, 1)


class Linear:
    """From zero on."""

    def __init__(self, values):
        step = 10 ** math.floor(math.log10(max(values)))
        self.end = math.ceil(max(values) / step) * step
        self.ticks = [step * i for i in range(round(self.end / step) + 1)]

    def __call__(self, value):
        return value / self.end


def panel(title, values, scale, top, show):
    """The lines of one figure; values: {who: value}."""
    length = WIDTH - LEFT - RIGHT
    bottom = top + HEAD + ROW * len(values)
    yield f'<text class="head" x="0" y="{top + 16}">{escape(title)}</text>'
    for tick in scale.ticks:
        x = LEFT + scale(tick) * length
        yield f'<line class="grid" x1="{x:.1f}" x2="{x:.1f}" y1="{top + HEAD - 6}" y2="{bottom}"/>'
        yield (f'<text class="tick" x="{x:.1f}" y="{bottom + 14}" text-anchor="middle">'
               f"{escape(show(tick))}</text>")
    for i, (who, value) in enumerate(sorted(values.items(), key=lambda entry: entry[1])):
        y = top + HEAD + ROW * i
        end = LEFT + scale(value) * length
        ours = " ours" if who == "zuUtilConfig" else ""
        yield (f'<text class="who{ours}" x="{LEFT - 8}" y="{y + 13}" text-anchor="end">'
               f"{escape(who)}</text>")
        yield f'<line class="value{ours}" x1="{LEFT}" x2="{end:.1f}" y1="{y + 9}" y2="{y + 9}"/>'
        yield f'<circle class="value{ours}" cx="{end:.1f}" cy="{y + 9}" r="4"/>'
        yield f'<text class="tick" x="{end + 9:.1f}" y="{y + 13}">{escape(show(value))}</text>'


def picture(panels, scale_class, show):
    """One SVG; panels: [(title, {who: value})]."""
    lines, top = [], 0
    for title, values in panels:
        lines += panel(title, values, scale_class(values.values()), top, show)
        top += HEAD + ROW * len(values) + 30
    return "\n".join([f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {top}" '
                      f'width="{WIDTH}" height="{top}" role="img">',
                      f"<style>{STYLE}</style>", *lines, "</svg>", ""])


def in_words(panels, show):
    """The same for those who do not see the picture."""
    return " ".join(
        title + ": " + ", ".join(f"{who} {show(value)}" for who, value in
                                 sorted(values.items(), key=lambda entry: entry[1])) + "."
        for title, values in panels)
