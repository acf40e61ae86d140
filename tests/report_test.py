"""report_test.py PROGRAM: the report accounts for every way and finds the places to check."""
import json
import math
import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = sys.argv.pop(1)


ON_A_LINE = {i: (i, 0) for i in range(1, 9)}


def report(*ways, places=ON_A_LINE, options=()):
    """Of nodes at places by id, and of ways such as "12 oneway=yes" or "9,10,11".

    The ways are numbered from 1 and stand in the file from the last to the first.
    """
    xml = "".join(f'<node id="{i}" lat="{lat}" lon="{lon}"/>' for i, (lat, lon) in places.items())
    for number, way in reversed(list(enumerate(ways, 1))):
        nodes, _, tags = way.partition(" ")
        nodes = nodes.split(",") if "," in nodes else nodes
        tags = dict(tag.split("=") for tag in tags.split(",") if tag)
        xml += f'<way id="{number}">' + "".join(f'<nd ref="{node}"/>' for node in nodes)
        xml += "".join(f'<tag k="{k}" v="{v}"/>' for k, v in {"highway": "road", **tags}.items())
        xml += "</way>"
    with tempfile.NamedTemporaryFile("w", suffix=".osm") as file:
        file.write(f'<osm version="0.6">{xml}</osm>')
        file.flush()
        return json.loads(subprocess.check_output([PROGRAM, file.name, "-r", "-", *options],
                                                  timeout=60))


def brief(value):
    """The values in it, without keys and brackets."""
    if isinstance(value, dict):
        value = list(value.values())
    return " ".join(map(brief, value)) if isinstance(value, list) else str(value)


ALL_HAVE = {"severity", "metres", "text", "geometry"}


def filled(lists):
    """What says what it is, of each entry of the lists that are not empty."""
    return {name: [brief({key: value for key, value in entry.items() if key not in ALL_HAVE})
                   for entry in entries]
            for name, entries in lists.items() if entries}


class Report(unittest.TestCase):
    def test_one_reason_for_each_way_that_is_not_imported(self):
        found = report("12", "23 highway=path", "203", "2", "0 highway=steps", "0909", "", "9" * 11,
                       "13 building=yes,highway=", "0")
        self.assertEqual((found["highwayWays"], found["imported"]), (10, 1))
        self.assertEqual(filled(found["notImported"]), {
            "notARoad": ["2 path 2.0 0.0", "5 steps", "9  1.0 0.0"],
            "missingNodes": ["3 1 0 2.0 0.0", "6 4 0 9 0 9", "8 11" + 10 * " 9", "10 1 0"],
            "fewerThanTwoNodes": ["4 road 2.0 0.0", "7 road"]})
        self.assertEqual(" ".join(found["notImported"]["missingNodes"][0]),
                         "way missing first latitude longitude")

    def test_tags_to_check(self):
        oneways = ("reversible", "true", "-1", "yes", "no", "1", "0", "false")
        found = report("12 junction=roundabout", "12 junction=roundabout,oneway=no",
                       "12 highway=motorway", "12 highway=motorway_link",
                       *(f"12 oneway={value}" for value in oneways),
                       "12 bridge=yes", "12 tunnel=culvert", "12 bridge=no",
                       "12 bridge=yes,layer=1",
                       *(f"12 layer={value}" for value in ("one", "6", "-5", "-5.5")),
                       "12 tunnel=building_passage", "12 tunnel=yes,covered=yes",
                       "12 tunnel=yes,covered=no", "12 area=yes", "12 area=no")
        self.assertEqual(filled(found["toCheck"]), {
            "impliedOneway": ["1 road 1.0 0.0", "3 motorway 1.0 0.0"],
            "unknownOneway": ["5 reversible 1.0 0.0", "6 true 1.0 0.0"],
            "oddLayers": ["17 one 1.0 0.0", "18 6 1.0 0.0", "20 -5.5 1.0 0.0"],
            "levelBridges": ["13 road 1.0 0.0", "14 road 1.0 0.0", "23 road 1.0 0.0"],
            "areas": ["24 road 1.0 0.0"]})

    def test_joins_that_lost_something(self):
        found = report("12 oneway=yes", "23 oneway=yes", "43 oneway=-1", "45 name=A", "56 name=A",
                       "76 oneway=yes,name=A", "78 name=B")
        self.assertEqual(filled(found["toCheck"]), {
            "droppedDirections": ["4 4 6 7 4.0 0.0 1 4 None 5 None 6 yes 7 None 1"],
            "traps": ["8 8.0 0.0 1 yes 2 yes 3 -1 4 None 5 None 6 yes 7 None can't leave 1"],
            "differentNames": ["7 7.0 0.0 1 6 A 7 B"],
            "nameAndNone": ["4 4.0 0.0 1 3 None 4 A"]})
        self.assertEqual(" ".join(found["toCheck"]["differentNames"][0]),
                         "node latitude longitude road ways severity text geometry")
        [lost] = found["toCheck"]["droppedDirections"]
        self.assertEqual(list(lost)[:8], ["node", "nodes", "latitude", "longitude", "road", "ways",
                                          "direction", "severity"])
        self.assertEqual(lost["geometry"], {"type": "MultiLineString", "coordinates": [
            [[0.0, i], [0.0, i + 1.0]] for i in (4.0, 5.0, 6.0, 7.0)]})
        self.assertAlmostEqual(lost["metres"], 442347.4, delta=0.05)
        self.assertIn("one-way from its start to its end, unlike its ways 4, 5, 6, 7", lost["text"])
        compatible = report("12 oneway=yes", "23", options=["--join", "compatible"])
        self.assertEqual(filled(compatible["toCheck"]), {
            "traps": ["1 1.0 0.0 1 yes can't reach 1"]})

    def test_nodes_in_the_middle_of_ways_on_different_layers(self):
        found = report("123 bridge=yes,layer=1", "425", "624 layer=1", "253 layer=1")
        self.assertEqual(filled(found["toCheck"])["sharedNodes"], ["2 2.0 0.0 1 1 2 None"])

    def test_steep_roads(self):
        places = {1: (0, 0), 2: (0, 0.0001), 3: (0, 0.0002), 4: (0, 0.01), 5: (0, 0.0002)}
        [steep] = report("12", "235 layer=1", "54", places=places,
                         options=["--join", "none"])["toCheck"]["steep"]
        self.assertEqual((steep["road"], steep["ways"]), (1, [{"way": 1, "layer": None}]))
        self.assertAlmostEqual(steep["percent"], 100 * 2.45 / 11.131949, delta=1e-4)
        self.assertAlmostEqual(steep["metres"], 11.131949, delta=1e-6)

    def test_a_road_around_a_hub_crosses_all_that_begin_there(self):
        circle = lambda number, size: (size * math.sin(number), size * math.cos(number))
        places = {0: (0, 0), **{i: circle(i / 100, 1) for i in range(1, 601)},
                  **{i: circle(2 * i, 0.6) for i in range(601, 604)}}
        found = report(*(f"0,{i}" for i in range(1, 601)), "601,602,603,601", places=places)
        found = found["toCheck"]
        self.assertEqual(len(found["crossings"]), 600)
        self.assertEqual([entry["roadCount"] for entry in found["islands"]], [1])
        self.assertEqual({entry["severity"] for entry in found["crossings"]}, {"high"})

    def test_the_same_in_all_formats(self):
        """Of a junction that is none, at the antimeridian, and of a way across it."""
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder, "town.osm")
            source.write_text("""<osm version="0.6">
                <node id="-1" lat="0" lon="179.5"/><node id="2" lat="0" lon="-179.5"/>
                <node id="3" lat="-1" lon="180"/><node id="4" lat="1" lon="-180"/>
                <way id="5"><nd ref="-1"/><nd ref="2"/><tag k="highway" v="motorway"/></way>
                <way id="6"><nd ref="3"/><nd ref="4"/><tag k="highway" v="road"/></way></osm>""")
            json_, geojson, gpkg = (source.with_suffix(e) for e in (".JSON", ".geojson", ".gpkg"))
            for target in json_, geojson, gpkg:
                subprocess.check_call([PROGRAM, source, "-q", "-r", target], timeout=60)
            entries = json.loads(json_.read_text())["toCheck"]
            [crossing], [oneway] = entries["crossings"], entries["impliedOneway"]
            self.assertEqual(crossing["geometry"], {"type": "Point", "coordinates": [180.0, 0.0]})
            self.assertEqual(oneway["geometry"], {"type": "MultiLineString", "coordinates": [
                [[179.5, 0.0], [180.0, 0.0]], [[-180.0, 0.0], [-179.5, 0.0]]]})
            names = ["kind", "severity", "metres", "way_ids", "text"]
            rows = [tuple(f["properties"][name] for name in names) + (f["geometry"],)
                    for f in json.loads(geojson.read_text())["features"]]
            self.assertEqual(rows, [
                (kind, e["severity"], e.get("metres"), [w["way"] for w in e.get("ways", [e])],
                 e["text"], e["geometry"])
                for kind, ofKind in entries.items() for e in ofKind])
            layers = {}
            for layer in "check_points", "check_lines":
                shown = subprocess.check_output(["ogr2ogr", "-f", "GeoJSON", "/vsistdout/", gpkg,
                                                 layer], timeout=60)
                for f in json.loads(shown)["features"]:
                    layers[f["properties"]["kind"]] = f["properties"]
            for kind, severity, metres, ways, text, _ in rows:
                row = layers.pop(kind) if kind != "islands" else layers[kind]
                self.assertEqual((row["severity"], row["text"]), (severity, text))
                self.assertAlmostEqual(row["metres"], metres)
                self.assertEqual(row["way_ids"], ";".join(map(str, ways)))
            source.write_text('<osm version="0.6"></osm>')  # gives nothing to check
            for target in json_, geojson, gpkg:
                subprocess.check_call([PROGRAM, source, "-q", "-r", target, "--overwrite"])
            wrong = subprocess.run([PROGRAM, source, "-r", "x.shp"], stderr=subprocess.PIPE,
                                   check=False)
            self.assertEqual(wrong.returncode, 2)
            self.assertIn(b".json, .geojson, .gpkg", wrong.stderr)


if __name__ == "__main__":
    unittest.main()
