"""routing_test.py PROGRAM EXTRACTS: routes over the exports are those over the map itself.

A second graph is built from the OSM data alone: an edge for each step of a way, each way it may be
driven. Shortest paths between Nodes, turn restrictions kept, must be as long over GMNS and GraphML.
"""
import csv
import heapq
import itertools
import json
import pathlib
import random
import subprocess
import sys
import tempfile
import unittest
from collections import defaultdict

import networkx
import osmium
import pyproj

from reference.reference_import import HIGHWAY_TYPES

PROGRAM = sys.argv.pop(1)
EXAMPLE = pathlib.Path(__file__).resolve().parent.parent / "examples" / "harbour-town.osm"
FILES = [EXAMPLE, pathlib.Path(sys.argv.pop(1)) / "monaco-osrm.osm.pbf"]
GEOD = pyproj.Geod(ellps="WGS84")
SOURCES = 12


class Graph:
    """Edges that know on which thing they lie, so that turning round on it is not taken for a way."""

    def __init__(self):
        self.edges = []  # from, to, metres, what it lies on
        self.leaving = defaultdict(list)
        self.ends = defaultdict(int)  # of things, at each node
        self.forbidden = set()  # pairs of edges
        self.only = defaultdict(set)  # of an edge: those that may follow

    def add(self, thing, start, end, metres, forward, backward):
        self.ends[start] += 1
        self.ends[end] += 1
        for allowed, one, other in ((forward, start, end), (backward, end, start)):
            if allowed:
                self.leaving[one].append(len(self.edges))
                self.edges.append((one, other, metres, thing))

    def restrict(self, kind, arriving, leaving):
        if kind.startswith("no_"):
            self.forbidden |= set(itertools.product(arriving, leaving))
        else:
            for edge in arriving:
                self.only[edge] |= set(leaving)

    def following(self, edge):
        _, node, _, thing = self.edges[edge]
        for following in self.leaving[node]:
            turns_round = following != edge and self.edges[following][3] == thing
            if turns_round and self.ends[node] > 1 or (edge, following) in self.forbidden:
                continue
            if edge not in self.only or following in self.only[edge]:
                yield following

    def distances(self, source):
        """From a node to every other that can be reached."""
        best, done = {}, set()
        queue = [(self.edges[edge][2], edge) for edge in self.leaving[source]]
        heapq.heapify(queue)
        while queue:
            metres, edge = heapq.heappop(queue)
            if edge in done:
                continue
            done.add(edge)
            best.setdefault(self.edges[edge][1], metres)
            for following in self.following(edge):
                if following not in done:
                    heapq.heappush(queue, (metres + self.edges[following][2], following))
        return best


def directions(tags):
    """Whether a way may be driven forward, and backward."""
    oneway = tags.get("oneway")
    if oneway is None and (tags.get("junction") in ("roundabout", "circular")
                           or tags["highway"] == "motorway"):
        oneway = "yes"
    return oneway not in ("-1", "reverse"), oneway not in ("yes", "true", "1")


class Osm(osmium.SimpleHandler):
    def __init__(self, path):
        super().__init__()
        self.places, self.ways, self.restrictions = {}, {}, []
        self.apply_file(str(path))
        self.ways = {way: (nodes, tags) for way, (nodes, tags) in self.ways.items()
                     if len(nodes) > 1 and all(node in self.places for node in nodes)}

    def node(self, node):
        if node.location.valid():
            self.places[node.id] = node.location.lon, node.location.lat

    def way(self, way):
        if way.tags.get("highway") in HIGHWAY_TYPES:
            self.ways[way.id] = [node.ref for node in way.nodes], dict(way.tags)

    def relation(self, relation):
        kind = relation.tags.get("restriction", "")
        has_times = any(key.endswith(("_on", "_off")) for key, _ in relation.tags)
        if relation.tags.get("type") == "restriction" and kind[:3] in ("no_", "onl") and not has_times:
            roles = defaultdict(list)
            for member in relation.members:
                roles[member.role].append((member.type, member.ref))
            self.restrictions.append((kind, roles))

    def graph(self):
        graph = Graph()
        for way, (nodes, tags) in self.ways.items():
            longitudes, latitudes = zip(*(self.places[node] for node in nodes))
            metres = GEOD.line_lengths(longitudes, latitudes)
            for step, (start, end) in enumerate(itertools.pairwise(nodes)):
                graph.add((way, step), start, end, metres[step], *directions(tags))
        for kind, roles in self.restrictions:
            if [len(roles[role]) for role in ("from", "via", "to")] != [1, 1, 1]:
                continue
            (_, start), (via_type, via), (_, end) = (roles[role][0] for role in
                                                     ("from", "via", "to"))
            arriving = [edge for edge, (_, node, _, thing) in enumerate(graph.edges)
                        if node == via and thing[0] == start]
            leaving = [edge for edge in graph.leaving[via] if graph.edges[edge][3][0] == end]
            # Where a way passes through, only its direction tells which part is meant.
            if via_type == "n" and len(arriving) == len(leaving) == 1:
                graph.restrict(kind, arriving, leaving)
        return graph

    def metres(self):
        lines = (zip(*(self.places[node] for node in nodes)) for nodes, _ in self.ways.values())
        return sum(GEOD.line_length(*line) for line in lines)


def gmns(path):
    def rows(name):
        return list(csv.DictReader((path / name).read_text(encoding="utf-8").splitlines()))
    graph, edge_of, roads = Graph(), {}, defaultdict(list)
    for link in rows("link.csv"):
        roads[link["road_id"]].append(link)
    for road, links in roads.items():
        start, end = int(links[0]["from_node_id"]), int(links[0]["to_node_id"])
        for link in links:
            edge_of[link["link_id"]] = len(edge_of)
        graph.add(road, start, end, float(links[0]["length"]), True, len(links) == 2)
    for row in rows("movement.csv"):
        if not row["vehicles"] and not row["condition"]:
            graph.restrict(row["restriction"], [edge_of[row["ib_link_id"]]],
                           [edge_of[row["ob_link_id"]]])
    return graph, sum(float(links[0]["length"]) for links in roads.values())


def graphml(path):
    network = networkx.read_graphml(path)
    graph, roads, edges_of = Graph(), defaultdict(list), {}
    for start, end, data in network.edges(data=True):
        roads[data["road_id"]].append((int(start), int(end), data["length"]))
    for road, edges in roads.items():
        edges_of[road] = range(len(graph.edges), len(graph.edges) + len(edges))
        graph.add(road, *edges[0], True, len(edges) == 2)
    for one in json.loads(network.graph.get("restrictions", "[]")):
        if not one["via_road_ids"] and not one["vehicles"] and not one["condition"]:
            via, = one["via_node_ids"]
            graph.restrict(one["restriction"], *(
                [edge for edge in edges_of[one[road]] if graph.edges[edge][end] == via]
                for road, end in (("from_road_id", 1), ("to_road_id", 0))))
    return graph, sum(edges[0][2] for edges in roads.values())


def files():
    for path in FILES:
        if path.exists():
            yield path
        else:
            print(f"no {path}: skipped")


class Routing(unittest.TestCase):
    def test_routes_are_those_of_the_map(self):
        for source in files():
            osm = Osm(source)
            map_graph = osm.graph()
            for ending, read in (("gmns", gmns), ("graphml", graphml)):
                with (self.subTest(source=source.name, format=ending),
                      tempfile.TemporaryDirectory() as folder):
                    output = pathlib.Path(folder) / f"x.{ending}"
                    subprocess.run([PROGRAM, "-q", source, "-o", output], check=True, timeout=300)
                    graph, metres = read(output)
                    self.assertAlmostEqual(metres, osm.metres(), 3)
                    nodes = sorted(graph.ends)
                    pairs = 0
                    for node in random.Random(1).sample(nodes, min(SOURCES, len(nodes))):
                        found, wanted = graph.distances(node), map_graph.distances(node)
                        self.assertEqual(sorted(found), sorted(n for n in wanted if n in graph.ends))
                        for end, distance in found.items():
                            self.assertAlmostEqual(distance, wanted[end], 3, (node, end))
                        pairs += len(found)
                    self.assertGreater(pairs, len(nodes))

    def test_no_road_can_be_driven_against_its_ways(self):
        for source in files():
            osm = Osm(source)
            done = subprocess.run([PROGRAM, "-q", source, "-o", "-", "-f", "geojsonl"],
                                  capture_output=True, check=True, timeout=300)
            steps = {step for nodes, tags in osm.ways.values()
                     for places in [[osm.places[node] for node in nodes]]
                     for is_drivable, order in zip(directions(tags), (places, places[::-1]))
                     if is_drivable for step in itertools.pairwise(order)}
            for feature in map(json.loads, done.stdout.splitlines()):
                properties = feature["properties"]
                if properties["kind"] != "road":
                    continue
                line = [(longitude, latitude) for longitude, latitude, *_ in
                        feature["geometry"]["coordinates"]]
                for direction, order in ((1, line), (2, line[::-1])):
                    if properties["direction"] & direction:
                        self.assertLessEqual({*itertools.pairwise(order)}, steps, properties)


if __name__ == "__main__":
    unittest.main()
