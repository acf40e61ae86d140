"""formats_test.py PROGRAM: every format holds the same network, read by the tools that use it."""
import contextlib
import csv
import io
import json
import math
import pathlib
import re
import sqlite3
import struct
import subprocess
import sys
import tempfile
import unittest
from xml.etree import ElementTree

import jsonschema
import networkx

PROGRAM = sys.argv.pop(1)
HERE = pathlib.Path(__file__).resolve().parent
EXAMPLE = HERE.parent / "examples" / "harbour-town.osm"
SCHEMA = json.loads((HERE / "geojson.schema.json").read_text())
BIG = 2**53 + 1

# Ids that a double can't hold and negative ones, names in several scripts and with characters that
# have a meaning somewhere, both one-way directions, a loop, elevations of infinity, and NaN where
# infinities of both signs meet.
ODD = f"""<osm version="0.6">
<node id="{BIG}" lat="0.1" lon="-0.3"/><node id="-7" lat="-33.123456789" lon="151.00000001"/>
<node id="3" lat="1e-7" lon="0.3"/><node id="4" lat="0.2" lon="0.2"/>
<node id="5" lat="90" lon="180"/><node id="6" lat="-0.0" lon="-0.0"/>
<way id="{BIG}"><nd ref="{BIG}"/><nd ref="-7"/><tag k="highway" v="road"/>
<tag k="name" v="Ünter, &quot;den&quot; &lt;Linden&gt; &amp; Söhne\\;&#13;&#10;&#9;x"/></way>
<way id="-2"><nd ref="-7"/><nd ref="3"/><tag k="highway" v="primary"/><tag k="oneway" v="yes"/>
<tag k="name" v="Ελλάδα 東京都 شارع"/><tag k="layer" v="1e308"/></way>
<way id="3"><nd ref="3"/><nd ref="4"/><nd ref="{BIG}"/><tag k="highway" v="service"/>
<tag k="oneway" v="-1"/><tag k="name" v="\U0001f6f6&#10;नमस्ते"/><tag k="layer" v="-1e308"/></way>
<way id="4"><nd ref="3"/><nd ref="{BIG}"/><tag k="highway" v="tertiary"/></way>
<way id="5"><nd ref="-7"/><nd ref="5"/><nd ref="6"/><nd ref="-7"/><tag k="highway" v="road"/></way>
</osm>"""


def run(*arguments):
    return subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, timeout=60)


def finite(values):
    """What a format without NaN keeps of elevations, None being NaN: all or nothing."""
    values = list(values)
    return values if all(v is not None and math.isfinite(v) for v in values) else None


def signed(model_id):
    return model_id - 2**64 if model_id >= 2**63 else model_id


def expected(source):
    """The network as `json` and the report tell it: nodes, and roads with all that formats hold."""
    mode = ("--join", "compatible", "--oneway", "implied")
    network = json.loads(run(source, "-o", "-", *mode).stdout)
    report = json.loads(run(source, "-r", "-", *mode).stdout)
    ways = {road["road"]: sorted(road["ways"]) for road in report["roads"]}
    tags = {int(way.get("id")): {tag.get("k"): tag.get("v") for tag in way.iterfind("tag")}
            for way in ElementTree.parse(source).iter("way")}
    nodes = {signed(node["id"]): coordinates([(y, x, z)]) for node in network["nodes"]
             for x, y, z in [node["position"]]}
    roads = []
    for road in network["roads"]:
        elevations = finite(road["segments"][0]["elevations"])
        highway, name = (";".join(dict.fromkeys(tags[way][key] for way in ways[road["id"]]
                                                if key in tags[way])) for key in ("highway", "name"))
        roads.append((road["id"], name or None, road["direction"], signed(road["startNode"]),
                      signed(road["endNode"]), highway, ways[road["id"]],
                      list(zip(road["centersY"], road["centersX"])), elevations))
    return nodes, roads


def coordinates(line):
    """A line's places, and its elevations if it has all of them."""
    return [tuple(p[:2]) for p in line], finite(p[2] if len(p) > 2 else None for p in line)


def geojson(features):
    nodes, roads = {}, []
    for feature in features:
        p, line = feature["properties"], feature["geometry"]["coordinates"]
        if p["kind"] == "node":
            nodes[p["node_id"]] = coordinates([line])
        else:
            roads.append((p["road_id"], p["name"], p["direction"], p["start_node"], p["end_node"],
                          p["highway"], p["osm_way_ids"], *coordinates(line)))
    return nodes, roads


def well_known_text(text):
    inside = re.fullmatch(r"[A-Z ]+\((.*)\)", text).group(1)
    return [tuple(map(float, point.split())) for point in inside.split(",")]


def geometry(blob):
    """The points of a GeoPackage's geometry: a header, then well-known binary."""
    envelope = (0, 32, 48, 48, 64)[blob[3] >> 1 & 7]
    order, kind = struct.unpack_from("<BI", blob, 8 + envelope)
    assert order == 1 and kind in (1001, 1002), (order, kind)  # little-endian; point, line with Z
    return list(struct.iter_unpack("<3d", blob[8 + envelope + (5 if kind == 1001 else 9):]))


def gdal(path):
    """As GDAL reads it: copied, layer by layer, to a GeoPackage, where numbers are exact."""
    with tempfile.TemporaryDirectory() as folder:
        copy = f"{folder}/copy.gpkg"
        done = subprocess.run(["ogr2ogr", copy, path], check=True, stderr=subprocess.PIPE)
        assert done.stderr == b"", done.stderr
        with contextlib.closing(sqlite3.connect(copy)) as package:
            assert {*package.execute("select srs_id from gpkg_contents")} == {(4326,)}
            nodes = {node: coordinates(geometry(blob)) for node, blob in
                     package.execute("select node_id, geom from nodes")}
            columns = "road_id, name, direction, start_node, end_node, highway, osm_way_ids, geom"
            roads = [(*row, numbers(ways), *coordinates(geometry(blob))) for *row, ways, blob in
                     package.execute(f"select {columns} from roads")]
    return nodes, roads


def numbers(text):
    return [int(way) for way in text.split(";")]


def edges(roads):
    """What a directed format makes of the roads."""
    result = []
    for road, name, direction, start, end, highway, ways, line, elevations in roads:
        name = name or ""
        if direction & 1:
            result.append((road, name, start, end, highway, ways, line, elevations))
        if direction & 2:
            result.append((road, name, end, start, highway, ways, line[::-1],
                           elevations and elevations[::-1]))
    return sorted(result)


def gmns(folder):
    def rows(name):
        return csv.DictReader(io.StringIO((folder / name).read_bytes().decode(), newline=""))
    nodes = {int(node["node_id"]): coordinates([[float(node[key] or "nan") for key in
                                                 ("x_coord", "y_coord", "z_coord")]])
             for node in rows("node.csv")}
    links = [(int(link["road_id"]), link["name"], int(link["from_node_id"]),
              int(link["to_node_id"]), link["facility_type"], numbers(link["osm_way_ids"]),
              *coordinates(well_known_text(link["geometry"]))) for link in rows("link.csv")]
    return nodes, sorted(links)


def graphml(path):
    graph = networkx.read_graphml(path)
    assert graph.is_directed() and "OpenStreetMap" in graph.graph["attribution"]
    nodes = {int(node): coordinates([(d["x"], d["y"], d.get("elevation"))])
             for node, d in graph.nodes(data=True)}
    return nodes, sorted((d["road_id"], d.get("name", ""), int(start), int(end), d["highway"],
                          numbers(d["osm_way_ids"]), *coordinates(well_known_text(d["geometry"])))
                         for start, end, d in graph.edges(data=True))


class Formats(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def export(self, source, ending):
        output = self.folder / f"{source.stem}.{ending}"
        done = run(source, "-o", output, "--overwrite", "--quiet")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        return output

    def file(self, name, text):
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        return path

    def test_each_format_holds_the_same_network(self):
        for source in (EXAMPLE, self.file("odd.osm", ODD),
                       self.file("empty.osm", "<osm version='0.6'/>")):
            nodes, roads = expected(source)
            collection = json.loads(self.export(source, "geojson").read_bytes())
            jsonschema.validate(collection, SCHEMA)
            lines = self.export(source, "geojsonl").read_bytes().splitlines()
            for name, found in (
                    ("geojson", geojson(collection["features"])),
                    ("geojsonl", geojson(map(json.loads, lines))),
                    ("gpkg", gdal(self.export(source, "gpkg"))),
                    ("fgb", gdal(self.export(source, "fgb"))),
            ):
                with self.subTest(source=source.name, format=name):
                    self.assertEqual(found[0], nodes)
                    self.assertEqual(sorted(found[1]), roads)
            for name, read in (("gmns", gmns), ("graphml", graphml)):
                with self.subTest(source=source.name, format=name):
                    self.assertEqual(read(self.export(source, name)), (nodes, edges(roads)))

    def test_json_without_anything_in_it(self):
        source = self.file("empty.osm", "<osm version='0.6'/>")
        text = self.export(source, "json").read_bytes()
        self.assertEqual(run(source, "-o", "-").stdout, text)
        self.assertEqual(json.loads(text), {"limits": [], "nodes": [], "roads": [], "geoReference":
                                            {"latitude": None, "longitude": None, "altitude": 0}})

    def test_the_same_input_gives_the_same_bytes(self):
        for ending in ("json", "geojson", "geojsonl", "gpkg", "fgb", "gmns", "graphml"):
            def content():
                output = self.export(EXAMPLE, ending)
                files = sorted(output.rglob("*")) or [output]
                return [path.read_bytes() for path in files]
            self.assertEqual(content(), content(), ending)
        package = sqlite3.connect(self.folder / "harbour-town.gpkg")
        with contextlib.closing(package):
            dates = set(package.execute("select last_change, description from gpkg_contents"))
        self.assertEqual(dates, {("1970-01-01T00:00:00.000Z",
                                  "© OpenStreetMap contributors, ODbL-1.0")})

    def road(self, *places):
        """As GeoJSON: the only road of a file, through places of latitude and longitude."""
        nodes = "".join(f'<node id="{i}" lat="{y}" lon="{x}"/>' for i, (y, x) in enumerate(places))
        references = "".join(f'<nd ref="{i}"/>' for i in range(len(places)))
        source = self.file("road.osm", f'<osm version="0.6">{nodes}<way id="1">{references}'
                                       '<tag k="highway" v="road"/></way></osm>')
        collection = json.loads(self.export(source, "geojson").read_text())
        jsonschema.validate(collection, SCHEMA)
        return collection["features"][-1]

    def test_lengths_are_geodesic(self):
        """A degree along the equator, one of latitude at it, and one at the pole, in metres."""
        for places, length in (([(0, 179.5), (0, -179.5), (1, -179.5)], 111319.491 + 110574.389),
                               ([(89, 0), (90, 0)], 111693.865)):
            self.assertAlmostEqual(self.road(*places)["properties"]["length"], length, 2)

    def test_geojson_is_cut_at_the_antimeridian(self):
        def lines(*longitudes, northwards=1):
            places = ((northwards * i, x) for i, x in enumerate(longitudes))
            geometry = self.road(*places)["geometry"]
            found = geometry["coordinates"]
            return [[p[:2] for p in line] for line in
                    (found if geometry["type"] == "MultiLineString" else [found])]
        for longitudes, found in (
                ((179, -179), [[[179, 0], [180, 0.5]], [[-180, 0.5], [-179, 1]]]),
                ((-178, 179, 178), [[[-178, 0], [-180, 2 / 3]],
                                    [[180, 2 / 3], [179, 1], [178, 2]]]),
                ((179, 180, -179), [[[179, 0], [180, 1]], [[-180, 1], [-179, 2]]]),
                ((179, -180, -179), [[[179, 0], [180, 1]], [[-180, 1], [-179, 2]]]),
                ((180, -180), [[[-180, 0], [-180, 1]]]),
                ((179, 180, -180, -179), [[[179, 0], [180, 1]], [[-180, 1], [-180, 2], [-179, 3]]]),
                ((179, -179, -180, 180), [[[179, 0], [180, 0.5]],
                                          [[-180, 0.5], [-179, 1], [-180, 2]],
                                          [[180, 2], [180, 3]]])):
            self.assertEqual(lines(*longitudes), found)
        self.assertEqual(lines(180, -180, northwards=0), [[[180, 0], [-180, 0]]])


if __name__ == "__main__":
    unittest.main()
