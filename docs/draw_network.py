"""draw_network.py FILE.geojson > FILE.svg: a picture of a network that was exported as GeoJSON.

Colours tell heights above and below the ground, widths the class of road, arrow heads one-way
roads; dots are Nodes. Needs nothing but Python.
"""
import json
import math
import sys

WIDTH, MARGIN = 1000, 24
PAPER, CASING = "#f7f5f0", "#5b6472"
WIDTHS = {"motorway": 5, "trunk": 5, "primary": 4, "secondary": 3.4, "tertiary": 3}
LEGEND = [("#c0392b", "above the ground"), ("#7f8c99", "on the ground"), ("#2b6cb0", "below")]


def colour(elevation):
    return LEGEND[0 if elevation > 0.5 else 2 if elevation < -0.5 else 1][0]


def lines_of(feature):
    geometry = feature["geometry"]
    lines = geometry["coordinates"]
    return lines if geometry["type"] == "MultiLineString" else [lines]


def arrow(points, backward):
    """A head in the middle of the line, as a path."""
    lengths = [math.dist(a, b) for a, b in zip(points, points[1:])]
    rest = sum(lengths) / 2
    for (a, b), length in zip(zip(points, points[1:]), lengths):
        if rest <= length and length > 0:
            break
        rest -= length
    else:
        return ""
    x, y = (p + (q - p) * rest / length for p, q in zip(a, b))
    dx, dy = ((q - p) / length * (-1 if backward else 1) for p, q in zip(a, b))
    tip, left, right = ((x + f * dx - s * dy, y + f * dy + s * dx)
                        for f, s in ((6, 0), (-3, 4), (-3, -4)))
    return "M" + "L".join(f"{px:.1f} {py:.1f}" for px, py in (tip, left, right)) + "Z"


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        features = json.load(file)["features"]
    roads = [f for f in features if f["properties"]["kind"] == "road"]
    nodes = [f["geometry"]["coordinates"] for f in features if f["properties"]["kind"] == "node"]
    places = [place for road in roads for line in lines_of(road) for place in line]
    west, east = min(p[0] for p in places), max(p[0] for p in places)
    south, north = min(p[1] for p in places), max(p[1] for p in places)
    shrink = math.cos(math.radians((south + north) / 2))
    scale = (WIDTH - 2 * MARGIN) / ((east - west) * shrink)
    height = (north - south) * scale + 2 * MARGIN + 24

    def place(p):
        return MARGIN + (p[0] - west) * shrink * scale, MARGIN + (north - p[1]) * scale

    casings, strokes, arrows = [], [], []
    for road in roads:
        width = WIDTHS.get(road["properties"]["highway"].split(";")[0].removesuffix("_link"), 2.2)
        for line in lines_of(road):
            points = [place(p) for p in line]
            heights = [p[2] if len(p) > 2 else 0.0 for p in line]
            path = "M" + "L".join(f"{x:.1f} {y:.1f}" for x, y in points)
            casings.append(f'<path d="{path}" stroke-width="{width + 1.6}"/>')
            for (a, b), low, high in zip(zip(points, points[1:]), heights, heights[1:]):
                middle = (low + high) / 2
                strokes.append((middle, f'<path d="M{a[0]:.1f} {a[1]:.1f}L{b[0]:.1f} {b[1]:.1f}" '
                                f'stroke="{colour(middle)}" stroke-width="{width}"/>'))
            if road["properties"]["direction"] != 3:
                arrows.append(arrow(points, road["properties"]["direction"] == 2))
    dots = "".join(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="2.6"/>' for x, y in map(place, nodes))
    legend = "".join(f'<path d="M{x} {height - 14}h28" stroke="{shade}" stroke-width="4"/>'
                     f'<text x="{x + 36}" y="{height - 10}">{text}</text>'
                     for x, (shade, text) in zip(range(MARGIN, WIDTH, 170), LEGEND))
    print(f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height:.0f}" '
          f'font-family="sans-serif" font-size="13" fill="none" stroke-linecap="round">\n'
          f'<rect width="{WIDTH}" height="{height:.0f}" fill="{PAPER}"/>\n'
          f'<g stroke="{CASING}" stroke-linejoin="round">{"".join(casings)}</g>\n'
          f'<g>{"".join(stroke for _, stroke in sorted(strokes))}</g>\n'
          f'<path fill="#1f2933" d="{"".join(arrows)}"/>\n'
          f'<g fill="#fff" stroke="#1f2933">{dots}</g>\n<g fill="#1f2933">{legend}</g>\n</svg>')


if __name__ == "__main__":
    main()
