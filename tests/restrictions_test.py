"""restrictions_test.py PROGRAM: every format has the turn restrictions of the example town."""
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import jsonschema
import networkx

from gmns_test import gmns_rows

HERE = pathlib.Path(__file__).resolve().parent
EXAMPLE = HERE.parent / "examples" / "harbour-town.osm"
SCHEMA = json.loads((HERE / "geojson.schema.json").read_text())

ODD = ('psv;\t"<&>\n\',' + "ü" * 255)[:255]
# Members from, via (nodes, or ways with a minus) and to, and tags.
RESTRICTIONS = [
    ([5019], [1103], [5024], {"restriction": "no_left_turn", "except": ODD}),
    ([5036], [1132], [5028], {"restriction:hgv:conditional": "only_right_turn @ (Mo,We; Su)"}),
    ([5025, 5026], [1126], [5073], {"restriction": "no_entry"}),
    ([5037], [-5027], [5038], {"restriction": "no_u_turn"}),
    ([5036], [1132], [5028], {"restriction": "no_parking"}),  # no restriction
]
TEXTS = ["restriction", "vehicles", "condition", "except"]
LISTS = ["via_node_ids", "via_road_ids"]
COLUMNS = [*TEXTS, "from_road_id", "from_direction", *LISTS, "to_road_id", "to_direction",
           "osm_relation_id"]


def attribute(value):
    return "".join(f"&#{ord(c)};" for c in value)


def relation(number, ways_from, via, ways_to, tags):
    members = [("from", "way", way) for way in ways_from] + [("to", "way", way) for way in ways_to]
    members += [("via", "node" if member > 0 else "way", abs(member)) for member in via]
    return f'<relation id="{number}"><tag k="type" v="restriction"/>' + "".join(
        f'<member role="{role}" type="{kind}" ref="{id_}"/>' for role, kind, id_ in members) + "".join(
        f'<tag k="{key}" v="{attribute(value)}"/>' for key, value in tags.items()) + "</relation>"


def row(properties):
    """As of any format: texts that may be empty, numbers, lists of them as texts or not."""
    def cell(column):
        value = properties.get(column)
        if column in TEXTS:
            return value or None
        if column in LISTS:
            return value if isinstance(value, list) else [int(n) for n in (value or "").split(";") if n]
        return int(value)
    return [cell(column) for column in COLUMNS]


def gdal(path):
    done = subprocess.run(["ogr2ogr", "-f", "GeoJSON", "/vsistdout/", path, "restrictions"],
                          capture_output=True, check=True)
    return [(row(f["properties"]), f["geometry"]) for f in json.loads(done.stdout)["features"]]


class Restrictions(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        town = EXAMPLE.read_text(encoding="utf-8").replace("</osm>", "".join(
            relation(number, *members) for number, members in enumerate(RESTRICTIONS, 1)) + "</osm>")
        self.source = self.folder / "town.osm"
        self.source.write_text(town, encoding="utf-8")

    def export(self, ending):
        output = self.folder / f"town.{ending}"
        subprocess.run([sys.argv[1], "-q", self.source, "-o", output], check=True)
        return output

    def test_each_format_has_them(self):
        collection = json.loads(self.export("geojson").read_text(encoding="utf-8"))
        jsonschema.validate(collection, SCHEMA)
        features = collection["features"]
        found = [(row(f["properties"]), f["geometry"]) for f in features
                 if f["properties"]["kind"] == "restriction"]
        rows = [line for line, _ in found]
        self.assertEqual([[line[-1], *line[:4]] for line in rows], [
            [1, "no_left_turn", None, None, ODD],
            [2, "only_right_turn", "hgv", "(Mo,We; Su)", None],
            [3, "no_entry", None, None, None], [3, "no_entry", None, None, None],
            [4, "no_u_turn", None, None, None]])

        roads = {f["properties"]["road_id"]: f["properties"] for f in features
                 if f["properties"]["kind"] == "road"}
        places = {f["properties"]["node_id"]: f["geometry"] for f in features
                  if f["properties"]["kind"] == "node"}
        ways = [(ways_from, ways_to, via) for froms, via, tos, _ in RESTRICTIONS[:4]
                for ways_from in froms for ways_to in tos]
        for (line, place), (way_from, way_to, via) in zip(found, ways, strict=True):
            _, _, _, _, start, start_direction, nodes, over, end, end_direction, _ = line
            self.assertIn(way_from, roads[start]["osm_way_ids"])
            self.assertIn(way_to, roads[end]["osm_way_ids"])
            self.assertEqual(roads[start][("end_node", "start_node")[start_direction - 1]], nodes[0])
            self.assertEqual(roads[end][("start_node", "end_node")[end_direction - 1]], nodes[-1])
            self.assertEqual(place, places[nodes[0]])
            if via[0] > 0:
                self.assertEqual((nodes, over), (via, []))
            for road, *ends in zip(over, nodes, nodes[1:]):
                self.assertIn(-via[0], roads[road]["osm_way_ids"])
                self.assertEqual({roads[road]["start_node"], roads[road]["end_node"]}, {*ends})

        for ending in ("gpkg", "fgb"):  # the latter puts neighbours together
            self.assertCountEqual(gdal(self.export(ending)), found)
        graph = networkx.read_graphml(self.export("graphml"))
        self.assertEqual([row(r) for r in json.loads(graph.graph["restrictions"])], rows)

        gmns = self.export("gmns")
        self.assertEqual([row(r) for r in gmns_rows(gmns, "restriction.csv")], rows)
        links = {link["link_id"]: link for link in gmns_rows(gmns, "link.csv")}
        movements = gmns_rows(gmns, "movement.csv")
        at_nodes = [line for line in rows if not line[COLUMNS.index("via_road_ids")]]
        for movement, line in zip(movements, at_nodes, strict=True):
            values = dict(zip(COLUMNS, line))
            for column in [*TEXTS, "from_road_id", "to_road_id", "osm_relation_id"]:
                self.assertEqual(movement[column], str(values[column] or ""))
            inbound, outbound = links[movement["ib_link_id"]], links[movement["ob_link_id"]]
            self.assertEqual([inbound["to_node_id"], outbound["from_node_id"]],
                             [movement["node_id"]] * 2)
            self.assertEqual([inbound["road_id"], outbound["road_id"]],
                             [movement["from_road_id"], movement["to_road_id"]])
        self.assertEqual([(m["type"], m["capacity"]) for m in movements][:2],
                         [("left", "NaN"), ("right", "NaN")])
        self.assertEqual({m["capacity"] for m in movements[2:]}, {"0"})

    def test_json_has_none(self):
        self.assertEqual(json.loads(self.export("json").read_bytes()).keys(),
                         {"limits", "geoReference", "nodes", "roads"})


if __name__ == "__main__":
    unittest.main(argv=sys.argv[1:])
