"""formats_test.py PROGRAM: every format holds the same network, read by the tools that use it."""
import collections
import contextlib
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
from xml.sax.saxutils import quoteattr

import jsonschema
import networkx

from gmns_test import GMNS_TAGS, gmns_rows

PROGRAM = sys.argv[1]
HERE = pathlib.Path(__file__).resolve().parent
EXAMPLE = HERE.parent / "examples" / "harbour-town.osm"
SCHEMA = json.loads((HERE / "geojson.schema.json").read_text())
BIG = 2**53 + 1

# The keys of tags, and what their columns are called where that is something else.
USUAL = ["oneway", "lanes", "maxspeed", "ref", "surface", "access", "bridge", "tunnel", "layer",
         "junction", "width", "service", "area"]
ODD_KEYS = ["layer", "Ref", "ref", "oneway", "lanes", "toll", "x", "id", "FID", "Direction",
            "addr:street", "rowid", "key", "U", '<"\'&\n\t]]>', "k" * 255]
RENAMED = {"ref": "osm_ref", "id": "osm_id", "FID": "osm_FID", "Direction": "osm_Direction",
           '<"\'&\n\t]]>': '<"\'&__]]>'}
RENAMED_IN = {"gmns": {"lanes": "osm_lanes", "toll": "osm_toll"},
              "graphml": {"oneway": "osm_oneway", "x": "osm_x", "key": "osm_key", "U": "osm_U"}}

# Ids that a double can't hold and negative ones, names in several scripts and with characters that
# have a meaning somewhere, both one-way directions, a loop, elevations of infinity, and NaN where
# infinities of both signs meet.
ODD = f"""<osm version="0.6">
<node id="{BIG}" lat="0.1" lon="-0.3"/><node id="-7" lat="-33.123456789" lon="151.00000001"/>
<node id="3" lat="1e-7" lon="0.3"/><node id="4" lat="0.2" lon="0.2"/>
<node id="5" lat="90" lon="180"/><node id="6" lat="-0.0" lon="-0.0"/>
<way id="{BIG}"><nd ref="{BIG}"/><nd ref="-7"/><tag k="highway" v="road"/>
<tag k="name" v="Ünter, &quot;den&quot; &lt;Linden&gt; &amp; Söhne\\;&#13;&#10;&#9;x"/>
{"".join(f'<tag k={quoteattr(key)} v={quoteattr(f"{i};" + key)}/>' for i, key in
         enumerate(ODD_KEYS) if key not in ("layer", "oneway"))}</way>
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


def expected(source, keys, others=()):
    """The network as `json` and the report tell it: nodes, and roads with all that formats hold."""
    mode = ("--join", "compatible", "--oneway", "implied", "--tags", ",".join([*keys, *others]))
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
        highway, name, *values = (";".join(dict.fromkeys(
            tags[way][key] for way in ways[road["id"]] if key in tags[way])) or None
            for key in ("highway", "name", *keys))
        roads.append((road["id"], name, road["direction"], signed(road["startNode"]),
                      signed(road["endNode"]), highway, ways[road["id"]], values,
                      list(zip(road["centersY"], road["centersX"])), elevations))
    return nodes, roads


def coordinates(line):
    """A line's places, and its elevations if it has all of them."""
    return [tuple(p[:2]) for p in line], finite(p[2] if len(p) > 2 else None for p in line)


def geojson(features, columns):
    nodes, roads = {}, []
    for feature in features:
        p, line = feature["properties"], feature["geometry"]["coordinates"]
        if p["kind"] == "node":
            nodes[p["node_id"]] = coordinates([line])
        else:
            roads.append((p["road_id"], p["name"], p["direction"], p["start_node"], p["end_node"],
                          p["highway"], p["osm_way_ids"], [p[c] for c in columns],
                          *coordinates(line)))
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


def gdal(path, tags):
    """As GDAL reads it: copied, layer by layer, to a GeoPackage, where numbers are exact."""
    with tempfile.TemporaryDirectory() as folder:
        copy = f"{folder}/copy.gpkg"
        done = subprocess.run(["ogr2ogr", copy, path], check=True, stderr=subprocess.PIPE)
        assert done.stderr == b"", done.stderr
        with contextlib.closing(sqlite3.connect(copy)) as package:
            assert {*package.execute("select srs_id from gpkg_contents "
                                     "where data_type = 'features'")} == {(4326,)}
            nodes = {node: coordinates(geometry(blob)) for node, blob in
                     package.execute("select node_id, geom from nodes")}
            quoted = (f', "{tag.replace(chr(34), 2 * chr(34))}"' for tag in tags)
            columns = "road_id, name, direction, start_node, end_node, highway, geom, osm_way_ids"
            roads = [(*row[:6], numbers(row[7]), [*row[8:]], *coordinates(geometry(row[6])))
                     for row in package.execute(f"select {columns}{''.join(quoted)} from roads")]
    return nodes, roads


def numbers(text):
    return [int(way) for way in text.split(";")]


def edges(roads):
    """What a directed format makes of the roads."""
    result = []
    for road, name, direction, start, end, highway, ways, tags, line, elevations in roads:
        if direction & 1:
            result.append((road, name, start, end, highway, ways, tags, line, elevations))
        if direction & 2:
            result.append((road, name, end, start, highway, ways, tags, line[::-1],
                           elevations and elevations[::-1]))
    return sorted(result, key=repr)


def gmns(folder, columns):
    nodes = {int(node["node_id"]): coordinates([[float(node[key] or "nan") for key in
                                                 ("x_coord", "y_coord", "z_coord")]])
             for node in gmns_rows(folder, "node.csv")}
    gmns_rows(folder, "use_definition.csv")
    links = [(int(link["road_id"]), link["name"] or None, int(link["from_node_id"]),
              int(link["to_node_id"]), link["facility_type"], numbers(link["osm_way_ids"]),
              [link[c] or None for c in columns], *coordinates(well_known_text(link["geometry"])))
             for link in gmns_rows(folder, "link.csv")]
    return nodes, sorted(links, key=repr)


def graphml(path, columns):
    graph = networkx.read_graphml(path)
    assert graph.is_directed() and "OpenStreetMap" in graph.graph["attribution"]
    nodes = {int(node): coordinates([(d["x"], d["y"], d.get("elevation"))])
             for node, d in graph.nodes(data=True)}
    roads = collections.defaultdict(list)
    for *_, d in graph.edges(data=True):
        roads[d["road_id"]].append(d)
    for road in roads.values():
        assert [d["oneway"] for d in road] in ([True], [False] * 2)
        assert sorted(d["reversed"] for d in road) == [False, True][:len(road)]
    for node, d in graph.nodes(data=True):
        ends = (d["oneway"] + 1 for *_, d in [*graph.in_edges(node, data=True),
                                              *graph.out_edges(node, data=True)])
        assert d["street_count"] == sum(ends) / 2, node
    edges = ((d["road_id"], d.get("name"), int(start), int(end), d["highway"],
              numbers(d["osmid"].strip("[]").replace(", ", ";")), [d.get(c) for c in columns],
              *coordinates(well_known_text(d["geometry"])))
             for start, end, d in graph.edges(data=True))
    return nodes, sorted(edges, key=repr)


class Formats(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def export(self, source, ending, keys=USUAL):
        output = self.folder / f"{source.stem}.{ending}"
        done = run(source, "-o", output, "--overwrite", "--quiet", *(
            () if keys is USUAL else ("--tags", ",".join(keys))))
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        return output

    def file(self, name, text):
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        return path

    def test_each_format_holds_the_same_network(self):
        for source, keys, renamed in (
                (EXAMPLE, USUAL, {}), (self.file("odd.osm", ODD), ODD_KEYS, RENAMED),
                (self.file("empty.osm", "<osm version='0.6'/>"), [], {})):
            columns = [renamed.get(key, key) for key in keys]
            network = expected(source, keys)
            collection = json.loads(self.export(source, "geojson", keys).read_bytes())
            jsonschema.validate(collection, SCHEMA)
            lines = self.export(source, "geojsonl", keys).read_bytes().splitlines()
            for name, found in (
                    ("geojson", geojson(collection["features"], columns)),
                    ("geojsonl", geojson(map(json.loads, lines), columns)),
                    ("gpkg", gdal(self.export(source, "gpkg", keys), columns)),
                    ("fgb", gdal(self.export(source, "fgb", keys), columns)),
            ):
                with self.subTest(source=source.name, format=name):
                    self.assertEqual((found[0], sorted(found[1], key=lambda road: road[0])),
                                     network)
            for name, read, used in (("gmns", gmns, GMNS_TAGS), ("graphml", graphml, [])):
                with self.subTest(source=source.name, format=name):
                    nodes, roads = expected(source, keys, [*{*used} - {*keys}])
                    found = read(self.export(source, name, keys), [
                        RENAMED_IN[name].get(key, column) for key, column in zip(keys, columns)])
                    self.assertEqual(found, (nodes, edges(roads)))

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
            dates = set(package.execute("select last_change, description from gpkg_contents "
                                        "where data_type = 'features'"))
            styles = {*package.execute("select f_table_name, f_geometry_column, useAsDefault, "
                                       "update_time from layer_styles where f_table_schema = ''")}
        self.assertEqual(dates, {("1970-01-01T00:00:00.000Z",
                                  "© OpenStreetMap contributors, ODbL-1.0")})

        self.assertEqual(styles, {(layer, "geom", 1, "1970-01-01T00:00:00.000Z")
                                  for layer in ("nodes", "roads", "restrictions")})

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
    unittest.main(argv=sys.argv[1:])
