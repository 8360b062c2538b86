"""Draws bars as a picture (SVG) for light and dark pages."""
from xml.sax.saxutils import escape

from report import figure

COLUMN_WIDTH, PADDING = 430, 16
NAME_WIDTH, BAR_WIDTH = 184, 150
TITLE_HEIGHT, BAR_HEIGHT, BAR_STEP, PANEL_GAP = 26, 14, 22, 18

# The colours outside of @media are for viewers without a light and a dark scheme.
STYLE = """  text { font: 13px system-ui, sans-serif; fill: #6e7781 }
  .title { font-weight: 600 }
  .other { fill: #848d97 }
  .own { fill: #2a9d68 }
  @media (prefers-color-scheme: light) { text { fill: #424a53 } }
  @media (prefers-color-scheme: dark) { text { fill: #c9d1d9 } }"""


def bars(rows, left, top, unit):
    """One bar for each (name, value). The first is the program's own. The longest bar fills the width."""
    longest = max(value for _, value in rows)
    for number, (name, value) in enumerate(rows):
        y, width = top + number * BAR_STEP, max(1, value / longest * BAR_WIDTH)
        kind = "other" if number else "own"
        yield f'<text x="{left}" y="{y + 12}">{escape(name)}</text>'
        yield (f'<rect class="{kind}" x="{left + NAME_WIDTH}" y="{y}" width="{width:.1f}" height="{BAR_HEIGHT}" '
               f'rx="2"/>')
        yield f'<text x="{left + NAME_WIDTH + width + 6:.1f}" y="{y + 12}">{figure(value)} {unit}</text>'


def picture(title, panels, columns=2):
    """The panels (title, unit, [(name, value), ...]), one column after the other."""
    rows_of_panels = -(-len(panels) // columns)
    panel_height = TITLE_HEIGHT + max(len(rows) for _, _, rows in panels) * BAR_STEP + PANEL_GAP
    width, height = columns * COLUMN_WIDTH + PADDING, rows_of_panels * panel_height + PADDING
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
             f'viewBox="0 0 {width} {height}" role="img">',
             f"<title>{escape(title)}: shorter bars are better</title>", f"<style>\n{STYLE}\n</style>"]
    for index, (name, unit, rows) in enumerate(panels):
        column, row = divmod(index, rows_of_panels)
        left, top = PADDING + column * COLUMN_WIDTH, PADDING + row * panel_height
        lines.append(f'<text class="title" x="{left}" y="{top + 12}">{escape(name)}</text>')
        lines += bars(rows, left, top + TITLE_HEIGHT, unit)
    return "\n".join([*lines, "</svg>"]) + "\n"
