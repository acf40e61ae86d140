"""Second, independent implementation of the road network import.

It is plain rather than fast and shares no code with the importer, so that a fault is unlikely to
stand in both.
"""

import math
import re
from collections import Counter
from dataclasses import dataclass, field

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
    line: list  # OSM ids of nodes
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
    junctions = find_junctions([data.references[way] for way in ways])
    nodes = {}
    for osm_id in sorted(junctions, key=unsigned):
        position = [*data.positions[osm_id], 0.0]
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
    return sorted(
        way
        for way, references in data.references.items()
        if data.tags[way].get("highway") in HIGHWAY_TYPES
        and len(references) >= 2
        and all(node in data.positions for node in references)
    )


def find_junctions(lines):
    """Every way end, and every node that lies inside ways more than once."""
    ends = {line[i] for line in lines for i in (0, -1)}
    uses = Counter(node for line in lines for node in line[1:-1])
    return ends | {node for node, count in uses.items() if count > 1}


def cut_roads(ways, junctions, nodes, data):
    """One Road per piece of a way between junctions, numbered from 1."""
    roads = {}
    for way in ways:
        tags, line = data.tags[way], data.references[way]
        direction = ONEWAY_DIRECTIONS.get(tags.get("oneway"), BOTH)
        cuts = [i for i, node in enumerate(line) if node in junctions]
        for first, last in zip(cuts, cuts[1:]):
            piece = line[first : last + 1]
            road = Road(len(roads) + 1, tags.get("name", str(way)), direction, [way], piece)
            road.set_start(nodes[unsigned(piece[0])])
            road.set_end(nodes[unsigned(piece[-1])])
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
    """Extend `a` beyond `node` by `b`."""
    far_end, step = (b.end, 1) if b.start is node else (b.start, -1)
    if a.start is node:  # then b's points, running towards the node, come first
        a.line = b.line[::-step] + a.line[1:]
        a.set_start(far_end)
    else:
        a.line = a.line[:-1] + b.line[::step]
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
            [LAYER_HEIGHT * read_number(data.tags[i].get("layer", "")) for i in road.way_ids]
        )
        for road in roads.values()
    }
    for node in nodes.values():
        node.position[2] = mean([road_elevations[r.id] for r in node.incoming + node.outgoing])
    for road in roads.values():
        start, end = road.start.position[2], road.end.position[2]
        middle = road_elevations[road.id]
        if middle == start and middle == end:
            road.elevations = [middle] * len(road.line)
        else:
            road.elevations = elevation_profile(len(road.line), start, middle, end)


# --- output ---------------------------------------------------------------------


def network_of(data):
    """The network as the dictionaries and lists of the `json` format, and the ways of each road as
    in the report."""
    nodes, roads = import_network(data)
    limits = data.limits() or [math.nan] * 4
    centre = numbers([(limits[0] + limits[1]) * 0.5, (limits[2] + limits[3]) * 0.5])
    return {
        "limits": data.limits(),
        "geoReference": {"latitude": centre[0], "longitude": centre[1], "altitude": 0.0},
        "nodes": [
            {
                "id": node.id,
                "name": node.name,
                "position": numbers(node.position),
                "incomingRoads": [road.id for road in node.incoming],
                "outgoingRoads": [road.id for road in node.outgoing],
            }
            for node in nodes.values()
        ],
        "roads": [describe_road(road, data) for road in roads.values()],
        "ways": [{"road": road.id, "ways": sorted(set(road.way_ids))} for road in roads.values()],
    }


def describe_road(road, data):
    """A road with its one segment, which has the road's id, ends and centre line."""
    ends = {"startNode": road.start.id, "endNode": road.end.id}
    points = [data.positions[node] for node in road.line]
    centers = {"centersX": [x for x, y in points], "centersY": [y for x, y in points]}
    segment = {
        "id": road.id,
        **ends,
        **centers,
        "elevations": numbers(road.elevations),
        "bankingAngles": [0.0] * len(points),
        "headings": [None] * len(points),
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


def numbers(values):
    """The same with None for NaN."""
    return [None if math.isnan(value) else value for value in values]
