#!/usr/bin/env python3
"""Second, independent implementation of the road network import.

    reference_import.py INPUT OUTPUT.json

Reads OpenStreetMap XML (plain, .gz, .bz2) or PBF and writes the network in the
`json` format of osm2roadnet. It is plain rather than fast, shares no code with
the importer and uses the standard library only, so that a fault is unlikely to
stand in both. It expects intact files: refusing broken ones is not its task.
"""

import json
import math
import re
import sys
from collections import Counter
from dataclasses import dataclass, field

from osm_file import read_osm

# --- the network --------------------------------------------------------------

HIGHWAY_TYPES = set(
    "motorway trunk primary secondary tertiary unclassified residential motorway_link"
    " trunk_link primary_link secondary_link tertiary_link living_street service raceway"
    " road".split()
)
FORWARD, BACKWARD, BOTH = 1, 2, 3
ONEWAY_DIRECTIONS = {"yes": FORWARD, "1": FORWARD, "-1": BACKWARD}
LAYER_HEIGHT = 4.9


@dataclass(eq=False)
class Node:
    id: int
    name: str
    position: list
    incoming: list = field(default_factory=list)  # roads that end here
    outgoing: list = field(default_factory=list)  # roads that start here


@dataclass(eq=False)
class Road:
    id: int
    name: str
    direction: int
    way_ids: list
    x: list
    y: list
    weight: float = 1.0
    start: Node = None
    end: Node = None
    elevations: list = None

    def set_start(self, node):
        if self.start:
            self.start.outgoing.remove(self)
        self.start = node
        node.outgoing.append(self)

    def set_end(self, node):
        if self.end:
            self.end.incoming.remove(self)
        self.end = node
        node.incoming.append(self)


def import_network(data):
    """Nodes by unsigned id and Roads by id, both in ascending order."""
    ways = select_ways(data)
    junctions = find_junctions(ways)
    nodes = {}
    for osm_id in sorted(junctions, key=unsigned):
        position = [*data.nodes[osm_id], 0.0]
        nodes[unsigned(osm_id)] = Node(unsigned(osm_id), str(osm_id), position)
    roads = cut_roads(ways, junctions, nodes, data)
    chain_roads(nodes, roads)
    assign_elevations(nodes, roads, data)
    return nodes, roads


def unsigned(osm_id):
    """An OSM id as the model keeps it: the same 64 bits without sign."""
    return osm_id & 0xFFFF_FFFF_FFFF_FFFF


def select_ways(data):
    """Ways with a road value of "highway" and at least two nodes, none missing; by id."""
    selected = [
        way
        for way in data.ways.values()
        if way.tags.get("highway") in HIGHWAY_TYPES
        and len(way.refs) >= 2
        and all(ref in data.nodes for ref in way.refs)
    ]
    return sorted(selected, key=lambda way: way.id)


def find_junctions(ways):
    """Every way end, and every node that lies inside ways more than once."""
    ends = {way.refs[i] for way in ways for i in (0, -1)}
    uses = Counter(ref for way in ways for ref in way.refs[1:-1])
    return ends | {ref for ref, count in uses.items() if count > 1}


def cut_roads(ways, junctions, nodes, data):
    """One Road per piece of a way between junctions, numbered from 1."""
    roads = {}
    for way in ways:
        name = way.tags.get("name", str(way.id))
        direction = ONEWAY_DIRECTIONS.get(way.tags.get("oneway"), BOTH)
        cuts = [i for i, ref in enumerate(way.refs) if ref in junctions]
        for first, last in zip(cuts, cuts[1:]):
            refs = way.refs[first : last + 1]
            x, y = (list(axis) for axis in zip(*(data.nodes[ref] for ref in refs)))
            road = Road(len(roads) + 1, name, direction, [way.id], x, y)
            road.set_start(nodes[unsigned(refs[0])])
            road.set_end(nodes[unsigned(refs[-1])])
            roads[road.id] = road
    return roads


def is_pass_through(node):
    """Two road ends meet here, and traffic can both arrive and depart."""
    ends = [(road, FORWARD) for road in node.incoming]
    ends += [(road, BACKWARD) for road in node.outgoing]
    arrives = any(road.direction in (towards, BOTH) for road, towards in ends)
    departs = any(road.direction != towards for road, towards in ends)
    return len(ends) == 2 and arrives and departs


def chain_roads(nodes, roads):
    """Join the two roads at each Node that was pass-through before any joining."""
    for node in [node for node in nodes.values() if is_pass_through(node)]:
        a, b = sorted(node.incoming + node.outgoing, key=lambda road: road.id)
        if a is b:
            continue
        join_roads(a, b, node)
        b.start.outgoing.remove(b)
        b.end.incoming.remove(b)
        del roads[b.id], nodes[node.id]


def join_roads(a, b, node):
    """Extend `a` beyond `node` by `b`; the point at the node is kept once."""
    far_end, step = (b.end, 1) if b.start is node else (b.start, -1)
    if a.start is node:  # then b's points, running towards the node, come first
        a.x, a.y = b.x[::-step] + a.x[1:], b.y[::-step] + a.y[1:]
        a.set_start(far_end)
    else:
        a.x, a.y = a.x[:-1] + b.x[::step], a.y[:-1] + b.y[::step]
        a.set_end(far_end)
    a.weight += b.weight
    a.way_ids += b.way_ids
    if b.name not in a.name:
        a.name += "-" + b.name


# --- elevations ---------------------------------------------------------------


def mean(values):
    """Left-to-right sum over the count, NaN for none. (`sum` may compensate errors.)"""
    total = 0.0
    for value in values:
        total += value
    return total / len(values) if values else math.nan


def read_number(text):
    """What a C++ stream reads from `text` as a double, 0.0 when that fails.

    The stream takes all characters that may continue a number, then converts
    them: "3abc" is 3, but "3e" and "3em" fail, since "e" awaits an exponent.
    """
    taken = re.match(r"[ \t\n\v\f\r]*([+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]*)?)", text)
    try:
        value = float(taken[1]) if taken else 0.0
    except ValueError:
        return 0.0
    return 0.0 if math.isinf(value) else value


def elevation_profile(count, z0, z1, z2):
    """`count` samples of the quadratic Bezier curve with these control values."""
    profile = []
    last = count - 1.0
    for i in range(count):
        t = i / last if last else math.nan
        u = 1.0 - t
        p = z0 * u + z1 * t
        q = u * z1 + z2 * t
        profile.append(q * t + p * u)
    return profile


def assign_elevations(nodes, roads, data):
    """Roads from the layers of their ways, Nodes from their roads, then profiles."""
    road_elevations = {
        road.id: mean(
            [LAYER_HEIGHT * read_number(data.ways[i].tags.get("layer", "")) for i in road.way_ids]
        )
        for road in roads.values()
    }
    for node in nodes.values():
        node.position[2] = mean([road_elevations[r.id] for r in node.incoming + node.outgoing])
    for road in roads.values():
        start, end = road.start.position[2], road.end.position[2]
        middle = road_elevations[road.id]
        if middle == start and middle == end:
            road.elevations = [middle] * len(road.x)
        else:
            road.elevations = elevation_profile(len(road.x), start, middle, end)


# --- output ---------------------------------------------------------------------


def describe(limits, nodes, roads):
    """The network as the dictionaries and lists of the `json` format."""
    if limits:
        latitude, longitude = (limits[0] + limits[1]) * 0.5, (limits[2] + limits[3]) * 0.5
    else:
        latitude, longitude = (mean([n.position[i] for n in nodes.values()]) for i in (0, 1))
    return {
        "limits": limits,
        "geoReference": {"latitude": latitude, "longitude": longitude, "altitude": 0.0},
        "nodes": [
            {
                "id": node.id,
                "name": node.name,
                "position": node.position,
                "incomingRoads": [road.id for road in node.incoming],
                "outgoingRoads": [road.id for road in node.outgoing],
            }
            for node in nodes.values()
        ],
        "roads": [describe_road(road) for road in roads.values()],
    }


def describe_road(road):
    """A road with its one segment, which has the road's id, ends and centre line."""
    ends = {"startNode": road.start.id, "endNode": road.end.id}
    centers = {"centersX": road.x, "centersY": road.y}
    count = len(road.x)
    segment = {
        "id": road.id,
        **ends,
        **centers,
        "elevations": road.elevations,
        "bankingAngles": [0.0] * count,
        "headings": [math.nan] * count,
    }
    return {
        "id": road.id,
        "name": road.name,
        "weight": road.weight,
        "direction": road.direction,
        **ends,
        **centers,
        "segments": [segment],
    }


def to_json(value):
    """JSON text in which every finite double reads back exactly and NaN is null."""
    if isinstance(value, dict):
        return "{" + ", ".join(f"{json.dumps(k)}: {to_json(v)}" for k, v in value.items()) + "}"
    if isinstance(value, list):
        return "[" + ", ".join(map(to_json, value)) + "]"
    if isinstance(value, float) and math.isnan(value):
        return "null"
    if isinstance(value, float) and math.isinf(value):
        return "1e999" if value > 0 else "-1e999"
    return json.dumps(value, ensure_ascii=False)


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: reference_import.py INPUT OUTPUT.json")
    data = read_osm(sys.argv[1])
    text = to_json(describe(data.limits(), *import_network(data)))
    with open(sys.argv[2], "w", encoding="utf-8", newline="\n") as output:
        output.write(text + "\n")


if __name__ == "__main__":
    main()
