"""report_test.py PROGRAM: the report accounts for every way and finds the places to check."""
import json
import subprocess
import sys
import tempfile
import unittest

PROGRAM = sys.argv.pop(1)


def report(*ways):
    """Of nodes 1 to 8, at latitudes that are their ids, and of ways such as "12 oneway=yes".

    The ways are numbered from 1 and stand in the file from the last to the first.
    """
    xml = "".join(f'<node id="{i}" lat="{i}" lon="0"/>' for i in range(1, 9))
    for number, way in reversed(list(enumerate(ways, 1))):
        nodes, _, tags = way.partition(" ")
        tags = dict(tag.split("=") for tag in tags.split(",") if tag)
        xml += f'<way id="{number}">' + "".join(f'<nd ref="{node}"/>' for node in nodes)
        xml += "".join(f'<tag k="{k}" v="{v}"/>' for k, v in {"highway": "road", **tags}.items())
        xml += "</way>"
    with tempfile.NamedTemporaryFile("w", suffix=".osm") as file:
        file.write(f'<osm version="0.6">{xml}</osm>')
        file.flush()
        return json.loads(subprocess.check_output([PROGRAM, file.name, "-r", "-"], timeout=60))


def brief(value):
    """The values in it, without keys and brackets."""
    if isinstance(value, dict):
        value = list(value.values())
    return " ".join(map(brief, value)) if isinstance(value, list) else str(value)


def filled(lists):
    return {name: [brief(entry) for entry in entries] for name, entries in lists.items() if entries}


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
                       *(f"12 layer={value}" for value in ("one", "6", "-5", "-5.5")))
        self.assertEqual(filled(found["toCheck"]), {
            "impliedOneway": ["1 road 1.0 0.0", "3 motorway 1.0 0.0"],
            "unknownOneway": ["5 reversible 1.0 0.0", "6 true 1.0 0.0"],
            "levelBridges": ["13 road 1.0 0.0", "14 road 1.0 0.0"],
            "oddLayers": ["17 one 1.0 0.0", "18 6 1.0 0.0", "20 -5.5 1.0 0.0"]})

    def test_joins_that_lost_something(self):
        found = report("12 oneway=yes", "23 oneway=yes", "43 oneway=-1", "45 name=A", "56 name=A",
                       "76 oneway=yes,name=A", "78 name=B")
        self.assertEqual(filled(found["toCheck"]), {
            "droppedDirections": ["4 4.0 0.0 1 3 -1 4 None", "6 6.0 0.0 1 5 None 6 yes",
                                  "7 7.0 0.0 1 6 yes 7 None"],
            "differentNames": ["4 4.0 0.0 1 3 None 4 A", "7 7.0 0.0 1 6 A 7 B"]})
        self.assertEqual(" ".join(found["toCheck"]["differentNames"][0]),
                         "node latitude longitude road ways")

    def test_nodes_in_the_middle_of_ways_on_different_layers(self):
        found = report("123 bridge=yes,layer=1", "425", "624 layer=1", "253 layer=1")
        self.assertEqual(filled(found["toCheck"]), {"sharedNodes": ["2 2.0 0.0 1 1 2 None"]})


if __name__ == "__main__":
    unittest.main()
