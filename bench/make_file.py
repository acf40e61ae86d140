"""make_file.py KIND OUT.osm [SIZE]: writes an OSM file that is hard, or merely large, to import.

city   a grid of streets, SIZE blocks (for whoever has no extract)
chain  SIZE ways that continue one another, each with a name of its own
hub    SIZE roads that meet at one node
way    one way of SIZE references
steps  SIZE nodes whose ids lie 2^20 apart, in ways of two
nodes  SIZE nodes without a tag, and nothing else
"""
import math
import sys

DEFAULTS = {"city": 10_000, "chain": 100_000, "hub": 100_000, "way": 1_000_000, "steps": 1_000_000,
            "nodes": 8_000_000}


def node(out, number, latitude, longitude):
    out.write(f'<node id="{number}" lat="{latitude:.7f}" lon="{longitude:.7f}"/>\n')


def way(out, number, nodes, **tags):
    out.write(f'<way id="{number}">')
    for reference in nodes:
        out.write(f'<nd ref="{reference}"/>')
    for key, value in {"highway": "residential", **tags}.items():
        out.write(f'<tag k="{key}" v="{value}"/>')
    out.write("</way>\n")


def spread(number):
    """A place of its own for each number: 1 / 10,000 degree apart, 10,000 to a row."""
    return 40 + number // 10_000 / 1e4, 10 + number % 10_000 / 1e4


def city(out, blocks):
    side = math.isqrt(blocks) + 1
    corner = lambda row, column: row * side * 4 + column * 4 + 1
    for row in range(side):
        for column in range(side):
            for k in range(4):  # the corner, and three points of the street to the east of it
                node(out, corner(row, column) + k, 40 + row / 800, 10 + (column + k / 4) / 800)
    for row in range(side):
        way(out, row + 1, range(corner(row, 0), corner(row, side - 1) + 1), name=f"Street {row}",
            oneway="yes" if row % 3 == 0 else "no")
    for column in range(side):
        way(out, side + column + 1, (corner(row, column) for row in range(side)),
            name=f"Avenue {column}", layer=str(column % 50 // 49))


def chain(out, count):
    for k in range(count + 1):
        node(out, k + 1, *spread(k))
    for k in range(count):
        way(out, k + 1, (k + 1, k + 2), name=f"Road {k}")


def hub(out, count):
    for k in range(count + 1):
        node(out, k + 1, *spread(k))
    for k in range(count):
        way(out, k + 1, (1, k + 2))


def long_way(out, count):
    for k in range(count):
        node(out, k + 1, *spread(k))
    way(out, 1, range(1, count + 1))


def steps(out, count):
    for k in range(count):
        node(out, (k + 1) << 20, *spread(k))
    for k in range(count // 2):
        way(out, k + 1, ((2 * k + 1) << 20, (2 * k + 2) << 20))


def nodes(out, count):
    for k in range(count):
        node(out, k + 1, *spread(k))


KINDS = {"city": city, "chain": chain, "hub": hub, "way": long_way, "steps": steps, "nodes": nodes}


def main():
    kind, target = sys.argv[1:3]
    size = int(sys.argv[3]) if len(sys.argv) > 3 else DEFAULTS[kind]
    with open(target, "w", encoding="utf-8") as out:
        out.write('<osm version="0.6">\n')
        KINDS[kind](out, size)
        out.write("</osm>\n")


if __name__ == "__main__":
    main()
