"""gmns_test.py PROGRAM: GMNS's tables are as GMNS says, and say what the tags do."""
import collections
import csv
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

# The keys of the tags that links have columns of GMNS's own from.
GMNS_TAGS = ["lanes", "lanes:forward", "lanes:backward", "maxspeed", "maxspeed:forward",
             "maxspeed:backward", "access", "vehicle", "motor_vehicle", "motorcar", "hgv", "bus",
             "psv", "bicycle", "foot", "motorroad"]

# What GMNS says of its columns: names, whether there has to be a value ("+"), and what it may be.
NUMBER = r"\d+(\.\d+)?(e-?\d+)?"
GMNS = {
    "node.csv": {"node_id": r"+-?\d+", "x_coord": f"+-?{NUMBER}", "y_coord": f"+-?{NUMBER}",
                 "z_coord": f"+-?{NUMBER}|NaN"},
    "link.csv": {"link_id": r"+\d+", "name": r"(.|\s)*", "from_node_id": r"+-?\d+",
                 "to_node_id": r"+-?\d+", "directed": "+true|false", "geometry": "LINESTRING.*",
                 "dir_flag": "-1|0|1", "length": NUMBER, "facility_type": ".*",
                 "free_speed": rf"(1?\d?\d(\.\d+)?)|200", "lanes": r"\d+",
                 "allowed_uses": "((auto|truck|bus|bike|walk|none)(,(?!$)|$))+"},
    "use_definition.csv": {"use": "+auto|truck|bus|bike|walk|none",
                           "persons_per_vehicle": f"+{NUMBER}", "pce": f"+{NUMBER}",
                           "description": ".*"},
    "movement.csv": {"mvmt_id": r"+\d+", "node_id": r"+-?\d+", "ib_link_id": r"+\d+",
                     "ob_link_id": r"+\d+", "type": "+left|right|uturn|thru|merge|diverge",
                     "capacity": f"{NUMBER}|NaN"},
    "restriction.csv": {}}  # not one of its own
GMNS_OTHERS = {"parent_link_id", "geometry_id", "grade", "capacity", "bike_facility",
               "ped_facility", "parking", "toll", "jurisdiction", "row_width"}


def gmns_rows(folder, name):
    """The rows of a table, which has to be as GMNS says."""
    with open(folder / name, encoding="utf-8", newline="") as file:
        rows = csv.DictReader(file, strict=True)
        columns = rows.fieldnames
        rows = list(rows)
    assert len(set(columns)) == len(columns), columns
    assert name != "link.csv" or not GMNS_OTHERS & set(columns), columns
    for column, pattern in GMNS[name].items():
        assert column in columns, column
        for row in rows:
            valid = re.fullmatch(pattern.lstrip("+"), row[column])
            # Of a number only links may have none at all.
            optional = pattern[0] != "+" and ("NaN" not in pattern or name == "link.csv")
            assert valid or row[column] == "" and optional, (column, row[column])
    return rows


class Gmns(unittest.TestCase):
    def test_what_gmns_makes_of_tags(self):
        """Lanes, speed and uses of the links there and, on two-way roads, back. The ways continue
        one another, and are not joined, as they differ in them."""
        every = "auto,truck,bus,bike,walk"
        cases = (
            ("lanes=2 maxspeed=50", "1 50 " + every, "1 50 " + every),
            ("lanes=3 maxspeed=30&#32;mph", "1 48.28032 " + every, "1 48.28032 " + every),
            ("lanes=5 lanes:backward=3", f"2  {every}", f"3  {every}"),
            ("lanes:forward=2 maxspeed:backward=70 maxspeed=90", f"2 90 {every}", f" 70 {every}"),
            ("lanes=3 oneway=yes maxspeed=none", f"3  {every}"),
            ("lanes=3 oneway=-1 maxspeed:forward=30 maxspeed=10knots", f"3 18.52 {every}"),
            ("lanes=1 maxspeed=100;&#32;80 access=destination", *[f"1 80 {every}"] * 2),
            ("lanes=2;3 maxspeed=50;walk access=no foot=yes", *["  walk"] * 2),
            ("lanes=1.5 maxspeed=DE:urban vehicle=no bus=yes", *["  bus,walk"] * 2),
            ("lanes=-2 maxspeed=201 motor_vehicle=agricultural;forestry", *["  bike,walk"] * 2),
            ("lanes=99999999999 maxspeed=-5 hgv=no", *["  auto,bus,bike,walk"] * 2),
            ("lanes=0 maxspeed=0 access=private", *["  none"] * 2),
            ("highway=motorway_link maxspeed=inf", *["  auto,truck,bus"] * 2))
        nodes, ways = '<node id="0" lat="0" lon="0"/>', ""
        for i, (tags, *_) in enumerate(cases, 1):
            pairs = {"highway": "road", **dict(tag.split("=") for tag in tags.split(" "))}
            nodes += f'<node id="{i}" lat="{i}" lon="0"/>'
            ways += f'<way id="{i}"><nd ref="{i - 1}"/><nd ref="{i}"/>' + "".join(
                f'<tag k="{key}" v="{value}"/>' for key, value in pairs.items()) + "</way>"
        with tempfile.TemporaryDirectory() as folder:
            source, output = pathlib.Path(folder, "tags.osm"), pathlib.Path(folder, "tags.gmns")
            source.write_text(f'<osm version="0.6">{nodes}{ways}</osm>')
            subprocess.run([sys.argv[1], source, "-q", "-o", output, "--tags", ""], check=True)
            found = collections.defaultdict(list)
            for link in gmns_rows(output, "link.csv"):
                found[int(link["osm_way_ids"])].append(
                    " ".join(link[column] for column in ("lanes", "free_speed", "allowed_uses")))
        for i, (tags, *links) in enumerate(cases, 1):
            self.assertEqual(found[i], links, tags)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[1:])
