"""Draws how long tables of growing size take, as an SVG file with two logarithmic axes.

The picture follows the reader's choice of light or dark colours.
"""
import html
import math

WIDTH, HEIGHT = 780, 440
LEFT, RIGHT, TOP, BOTTOM = 64, 206, 48, 52
LINE_HEIGHT = 17

STYLE = """
  :root { --page: #ffffff; --ink: #1f2328; --faint: #d8dee4; --quiet: #59636e; }
  .c0 { --line: #0969da; } .c1 { --line: #8c959f; } .c2 { --line: #bc4c00; } .c3 { --line: #8250df; } .c4 { --line: #1a7f37; }
  @media (prefers-color-scheme: dark) {
    :root { --page: #0d1117; --ink: #e6edf3; --faint: #30363d; --quiet: #9198a1; }
    .c0 { --line: #58a6ff; } .c1 { --line: #8b949e; } .c2 { --line: #f0883e; } .c3 { --line: #bc8cff; } .c4 { --line: #3fb950; }
  }
  .page { fill: var(--page); }
  text { font: 13px system-ui, sans-serif; fill: var(--quiet); }
  .title { font-size: 15px; font-weight: 600; fill: var(--ink); }
  .grid { stroke: var(--faint); }
  .line { stroke: var(--line); stroke-width: 2; fill: none; }
  .c0 .line { stroke-width: 3.5; }
  .dot { fill: var(--line); }
  .name { fill: var(--line); font-weight: 600; }
"""


class Axis:
    """Places the decades from the one of `low` to the one of `high` between two ends."""

    def __init__(self, low, high, begin, end):
        self.first = math.floor(math.log10(low))
        self.last = max(math.ceil(math.log10(high)), self.first + 1)
        self.begin, self.end = begin, end

    def place(self, value):
        return self.begin + (math.log10(value) - self.first) / (self.last - self.first) * (self.end - self.begin)

    def decades(self):
        return [10.0 ** power for power in range(self.first, self.last + 1)]


def seconds_text(seconds):
    return f"{seconds:g} s" if seconds >= 1 else f"{seconds * 1000:g} ms"


def spread(places):
    """Moves places of labels, given from top to bottom, apart where they are too close."""
    spread_places = []
    for place in places:
        spread_places.append(max(place, spread_places[-1] + LINE_HEIGHT) if spread_places else place)
    return spread_places


def draw(series, path):
    """series: a name and points (rows, seconds) for each line, the most important one first."""
    points = [point for _, line in series for point in line]
    across = Axis(min(rows for rows, _ in points), max(rows for rows, _ in points), LEFT, WIDTH - RIGHT)
    up = Axis(min(seconds for _, seconds in points), max(seconds for _, seconds in points), HEIGHT - BOTTOM, TOP)
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" role="img" aria-labelledby="title">',
        '<title id="title">Seconds of CPU time for sorted tables of all volumes, by their number of rows</title>',
        f"<style>{STYLE}</style>",
        f'<rect class="page" width="{WIDTH}" height="{HEIGHT}"/>',
        f'<text class="title" x="{LEFT}" y="26">CPU time of a table of all volumes, sorted by label</text>',
    ]
    for seconds in up.decades():
        y = up.place(seconds)
        parts.append(f'<path class="grid" d="M{across.begin} {y:.1f}H{across.end}"/>')
        parts.append(f'<text x="{LEFT - 8}" y="{y + 4:.1f}" text-anchor="end">{seconds_text(seconds)}</text>')
    for rows in across.decades():
        x = across.place(rows)
        parts.append(f'<path class="grid" d="M{x:.1f} {up.begin}V{up.end}"/>')
        parts.append(f'<text x="{x:.1f}" y="{up.begin + 20}" text-anchor="middle">{rows:,.0f}</text>')
    parts.append(f'<text x="{(across.begin + across.end) / 2:.1f}" y="{HEIGHT - 10}" text-anchor="middle">rows</text>')

    ends = sorted((up.place(line[-1][1]), number) for number, (_, line) in enumerate(series))
    labels = dict(zip((number for _, number in ends), spread([place for place, _ in ends])))
    for number, (name, line) in enumerate(series):
        places = [(across.place(rows), up.place(seconds)) for rows, seconds in line]
        parts.append(f'<g class="c{number}">')
        parts.append('<path class="line" d="M' + "L".join(f"{x:.1f} {y:.1f}" for x, y in places) + '"/>')
        parts += [f'<circle class="dot" cx="{x:.1f}" cy="{y:.1f}" r="3.5"/>' for x, y in places]
        parts.append(f'<text class="name" x="{places[-1][0] + 10:.1f}" y="{labels[number] + 4:.1f}">'
                     f"{html.escape(name)}</text>")
        parts.append("</g>")
    parts.append("</svg>")
    path.write_text("\n".join(parts) + "\n", encoding="utf-8")
