"""random_towns.py PROGRAM: program and reference import make the same of random towns, to the bit.

Several towns, with different ids, stand in one file, since starting the program costs more than
importing a town. When they differ, a town that shows it is cut down to what matters, and printed.
"""

import argparse
import sys
import tempfile
from random import Random
from xml.sax.saxutils import quoteattr

from comparison import Refused, first_differences, run
from osm_data import OsmData
from reference_import import HIGHWAY_TYPES, network_of

TOWNS_IN_A_FILE = 25
ID_RANGES = [(-(2**9), 2**9), (-(2**33), 2**33), (-(2**63), 2**63 - 1), (-(2**63), 9 - 2**63)]
# By frequency; None: no such tag. Names occur in one another, some only across a seam.
VALUES = {
    "highway": ["residential"] * 60
    + sorted(HIGHWAY_TYPES)
    + "path track footway cycleway pedestrian steps proposed Road roads motorway;primary".split()
    + ["motorway ", " motorway", "", None],
    "name": [None] * 3
    + ["", "a", "b", "ab", "ba", "a-b", "b-a", "-", " a  b ", "ß", "1", "\U0001f6e3"],
    "oneway": [None] * 6
    + ["yes", "1", "-1"] * 2
    + ["no", "YES", "yes ", "true", "reversible", ""],
    "layer": [None] * 9
    + "1 -1 0.1 0.3 -0 +.7 5. 1;2 1,5 3abc 0x10 1e1 3e 3em 1e300 1e308 1e400".split()
    + [" 2", "\t-1", "1 000", "x", "", ".", "-", "nan", "inf", "\u22121", "\u0661"],
    "junction": [None] * 5 + ["roundabout"],
    "area": [None] * 9 + ["yes"],
    "Name": [None] * 9 + ["x"],
    "ref": [None] * 9 + ["x"],
}


class Builder:
    """Towns whose ids differ."""

    def __init__(self, random):
        self.random = random
        self.used = set()

    def fresh_id(self):
        while True:
            osm_id = self.random.randint(*self.random.choice(ID_RANGES))
            if osm_id not in self.used:
                self.used.add(osm_id)
                return osm_id

    def fresh_nodes(self, town, count):
        ids = [self.fresh_id() for _ in range(count)]
        for osm_id in ids:
            latitude = self.random.choice([self.random.uniform(-90, 90), 90.0, -0.0])
            position = latitude, round(self.random.uniform(-180, 180), 3)
            if town.positions and self.random.random() < 0.1:  # where another is
                position = self.random.choice(list(town.positions.values()))
            town.positions[osm_id] = position
        return ids

    def tangle(self, town):
        """Lines back and forth over a few nodes: hubs, loops, nodes that occur again and again."""
        nodes = self.fresh_nodes(town, self.random.randint(1, 9))
        for _ in range(self.random.randint(0, 4)):
            line = self.random.choices(nodes, k=self.random.randint(0, 6))
            if self.random.random() < 0.1:
                line.append(self.fresh_id())  # which has no node
            yield line

    def chain(self, town):
        """A line or ring, maybe from the town's hubs, in pieces that point either way."""
        hubs = list(town.positions)
        line = self.fresh_nodes(town, self.random.randint(1, 9))
        if self.random.random() < 0.3:
            line.append(line[0])
        else:
            line = [self.random.choice(hubs), *line]
            line += self.random.choices(hubs, k=self.random.randint(0, 1))
        while len(line) > 1:
            last = self.random.randint(1, 3)
            piece, line = line[: last + 1], line[last:]
            yield piece[:: self.random.choice([1, -1])]

    def town(self):
        town = OsmData()
        for make_lines in [self.tangle] + [self.chain] * self.random.randint(0, 3):
            for line in make_lines(town):
                tags = [(key, self.random.choice(values)) for key, values in VALUES.items()]
                town.add_way(self.fresh_id(), line, [tag for tag in tags if tag[1] is not None])
        return town


def union(towns):
    whole = OsmData()
    for town in towns:
        whole.positions |= town.positions
        whole.references |= town.references
        whole.tags |= town.tags
    return whole


def xml(data):
    text = '<osm version="0.6">\n'
    for osm_id, (lat, lon) in data.positions.items():
        text += f'<node id="{osm_id}" lat="{lat!r}" lon="{lon!r}"/>\n'
    for osm_id, references in data.references.items():
        text += f'<way id="{osm_id}">'
        text += "".join(f'<nd ref="{node}"/>' for node in references)
        text += "".join(f'<tag k="{k}" v={quoteattr(v)}/>' for k, v in data.tags[osm_id].items())
        text += "</way>\n"
    return text + "</osm>\n"


def fault(program, data):
    """How program and reference differ; empty where they don't."""
    with tempfile.NamedTemporaryFile(mode="w", suffix=".osm", encoding="utf-8") as file:
        file.write(xml(data))
        file.flush()
        try:
            return first_differences(run(program, file.name), network_of(data))
        except Refused as refused:
            return str(refused)


def smallest(program, towns):
    """A town that is imported wrongly, without the ways and nodes that do not matter for it."""
    town = next((town for town in towns if fault(program, town)), union(towns))
    for part in (town.references, town.positions):
        for osm_id in list(part):
            removed = part.pop(osm_id)
            if not fault(program, town):
                part[osm_id] = removed
    return town


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("program")
    arguments.add_argument("--seed", type=int, default=1, help="which towns")
    arguments.add_argument("--count", type=int, default=2500, help="how many towns")
    given = arguments.parse_args()
    for number in range(0, given.count, TOWNS_IN_A_FILE):
        builder = Builder(Random(f"{given.seed} {number}"))
        towns = [builder.town() for _ in range(TOWNS_IN_A_FILE)]
        if fault(given.program, union(towns)):
            town = smallest(given.program, towns)
            sys.exit(f"{xml(town)}\nprogram | reference\n{fault(given.program, town)}")
    print(f"{given.count} towns")


if __name__ == "__main__":
    main()
