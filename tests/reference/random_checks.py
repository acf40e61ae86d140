"""random_checks.py PROGRAM: crossings, islands and traps of random towns are as by brute force.

All coordinates are small multiples of a power of two, so that hardly any arithmetic on them rounds,
and many lines touch. Some towns lie on the antimeridian.
"""

import itertools
import json
import pathlib
import subprocess
import sys
import tempfile
from random import Random

import networkx

TOWNS = 400
LIMITS = [("crossings", 0, 3), ("lowClearance", 3, 4.5)]


def town(random):
    """A file of nodes on a small grid, and of ways that go from one to another."""
    step, grid = random.choice([1 / 64, 1 / 1024]), random.randint(3, 12)
    west = random.choice([7, -180, 180 - 4 * step])
    xml = '<osm version="0.6">'
    for number in range(1, 31):
        x = west + random.randint(0, grid) * step
        x -= 360 if x > 180 else 0
        xml += f'<node id="{number}" lat="{random.randint(0, grid) * step}" lon="{x}"/>'
    for number in range(1, random.randint(5, 25)):
        xml += f'<way id="{number}">'
        for node in random.sample(range(1, 31), random.randint(2, 4)):
            xml += f'<nd ref="{node}"/>'
        tags = {"highway": "road", "oneway": random.choice(["yes", "-1", "no"]),
                "layer": random.choice(["0", "0", "0.7", "1"])}
        xml += "".join(f'<tag k="{key}" v="{value}"/>' for key, value in tags.items()) + "</way>"
    return xml + "</osm>"


def segments(road, shift):
    """Those that have a length: their ends, the Nodes there, and the heights."""
    points = list(zip(road["centersY"], road["centersX"]))
    heights = road["segments"][0]["elevations"]
    for i, (start, end) in enumerate(itertools.pairwise(points)):
        nodes = {road["startNode"]} if i == 0 else set()
        nodes |= {road["endNode"]} if i == len(points) - 2 else set()
        turn = 360 * ((start[0] - end[0] > 180) - (end[0] - start[0] > 180))
        if start != end:
            yield ((start[0] + shift, start[1]), (end[0] + turn + shift, end[1]), nodes,
                   heights[i:i + 2])


def key(place):
    """The same for all names of a place; no place of a town is near to where it would change."""
    return round(place[0] % 360 * 7e6 + 0.1), round(place[1] * 7e6 + 0.1)


def side(line, point):
    return ((line[1][0] - line[0][0]) * (point[1] - line[0][1])
            - (line[1][1] - line[0][1]) * (point[0] - line[0][0]))


def meeting(one, other):
    """The place where two segments meet, with how far apart in height; True where it is a line."""
    a, b, c, d = side(other, one[0]), side(other, one[1]), side(one, other[0]), side(one, other[1])
    if a == b == 0:
        low, high = max(min(one[:2]), min(other[:2])), min(max(one[:2]), max(other[:2]))
        return low <= high and (low < high or low)
    if a * b > 0 or c * d > 0 or a == b or c == d:
        return False
    share = a / (a - b)
    return tuple(p + share * (q - p) for p, q in zip(one[0], one[1]))


def height(line, place):
    axis = 0 if line[0][0] != line[1][0] else 1
    share = (place[axis] - line[0][axis]) / (line[1][axis] - line[0][axis])
    return line[3][0] + share * (line[3][1] - line[3][0])


def crossings(network):
    """Of each pair of roads how far apart in height at which place; None: they share a line."""
    positions = {node["id"]: node["position"][1::-1] for node in network["nodes"]}
    found = {}
    for one, other in itertools.combinations(network["roads"], 2):
        common = {one["startNode"], one["endNode"]} & {other["startNode"], other["endNode"]}
        taboo = {key(positions[node]) for node in common}
        for shift in (-360, 0, 360):
            for a, b in itertools.product(segments(one, 0), segments(other, shift)):
                place = not a[2] & b[2] and meeting(a, b)
                if not place:
                    continue
                places = found.setdefault((one["id"], other["id"]), {})
                if place is True:
                    places[None] = 0
                    continue
                if key(place) not in taboo:
                    apart = abs(height(a, place) - height(b, place))
                    places[key(place)] = min(apart, places.get(key(place), apart))
    return found


def check_crossings(network, report):
    expected = crossings(network)
    for kind, low, high in LIMITS:
        reported = {}
        for entry in report[kind]:
            places = reported.setdefault(tuple(entry["roads"]), {})
            place = key((entry["longitude"], entry["latitude"]))
            places[place] = min(entry["metres"], places.get(place, 9))
        for pair in expected.keys() | reported.keys():
            places, ours = expected.get(pair, {}), reported.get(pair, {})
            if None in places:
                continue
            theirs = {place: metres for place, metres in places.items() if low <= metres < high}
            assert ours.keys() == theirs.keys(), f"{kind} of {pair}: {ours} not {theirs}"
            for place, metres in ours.items():
                assert abs(metres - theirs[place]) < 1e-9, f"{pair}: {ours} not {theirs}"


def check_directions(network, report):
    graph = networkx.MultiDiGraph()
    graph.add_nodes_from(node["id"] for node in network["nodes"])
    for road in network["roads"]:
        ends = road["startNode"], road["endNode"]
        graph.add_edges_from([ends] * (road["direction"] & 1))
        graph.add_edges_from([ends[::-1]] * (road["direction"] >> 1))
    size = lambda nodes: (len(nodes), -min(nodes))
    parts = sorted(networkx.weakly_connected_components(graph), key=size)
    main = graph.subgraph(parts.pop())
    islands = sorted((len(part), graph.subgraph(part).number_of_nodes()) for part in parts)
    assert sorted((entry["nodeCount"],) * 2 for entry in report["islands"]) == islands, "islands"
    components = sorted(networkx.strongly_connected_components(main), key=size)
    first = min(components.pop())
    reached = networkx.descendants(main, first) | {first}
    leaving = networkx.ancestors(main, first) | {first}
    expected = {}
    for nodes in components:
        words = ["leave"] * (not nodes & leaving) + ["reach"] * (not nodes & reached)
        expected[tuple(sorted(nodes)[:10])] = "can't " + " or ".join(words)
    found = {tuple(e.get("nodes", [e["node"]])): e["trap"] for e in report["traps"]}
    assert found == expected, f"traps {found} instead of {expected}"


def main(program):
    seen = {}
    for number in range(TOWNS):
        xml = town(Random(number))
        with tempfile.TemporaryDirectory() as folder:
            source, written = pathlib.Path(folder, "town.osm"), pathlib.Path(folder, "report.json")
            source.write_text(xml)
            join = ("all", "compatible", "none")[number % 3]
            network = json.loads(subprocess.check_output(
                [program, source, "-q", "-o", "-", "--join", join, "-r", written], timeout=60))
            report = json.loads(written.read_text())["toCheck"]
        try:
            check_crossings(network, report)
            check_directions(network, report)
        except AssertionError as fault:
            sys.exit(f"{xml}\ntown {number}: {fault}")
        for kind, entries in report.items():
            seen[kind] = seen.get(kind, 0) + len(entries)
    print(f"{TOWNS} towns: {seen}")
    for kind in ("crossings", "lowClearance", "islands", "traps"):
        assert seen[kind] >= TOWNS // 2, f"hardly any {kind}"


if __name__ == "__main__":
    main(sys.argv[1])
