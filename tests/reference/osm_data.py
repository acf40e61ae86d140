"""What the road network needs of an OpenStreetMap file, read by parsers that are not ours.

They are Python's for XML and pyosmium for PBF.
"""

import bz2
import gzip
from xml.etree import ElementTree

import osmium


class OsmData:
    """Nodes, ways and bounds. The first stays of elements with one id, and of tags with one key."""

    def __init__(self):
        self.positions = {}  # id -> (latitude, longitude) in degrees
        self.tags = {}  # of ways: id -> values by key
        self.references = {}  # of ways: id -> ids of nodes
        self.boxes = []  # of limits

    def add_way(self, osm_id, references, tags):
        """`tags` are pairs of key and value."""
        if osm_id not in self.references:
            self.references[osm_id] = list(references)
            self.tags[osm_id] = dict(reversed(list(tags)))

    def limits(self):
        """[lat, lat, lon, lon]: the bounds, else the extent of the nodes, else []."""
        boxes = self.boxes or [(lat, lat, lon, lon) for lat, lon in self.positions.values()]
        return [bound(values) for bound, values in zip((min, max, min, max), zip(*boxes))]


def read_osm(path):
    """The data of an XML file, which may be packed, or of a PBF file; the name tells which."""
    if path.endswith(".pbf"):
        return PbfHandler(path).data
    opener = {"gz": gzip.open, "bz2": bz2.open}.get(path.split(".")[-1], open)
    with opener(path, "rb") as file:
        return read_xml(ElementTree.parse(file).getroot())


def read_xml(root):
    data = OsmData()
    edges = ("minlat", "maxlat", "minlon", "maxlon")
    for bounds in root.findall("bounds"):
        data.boxes.append([float(bounds.get(edge)) for edge in edges])
    for element in root:
        if element.get("visible") == "false" or element.get("action") == "delete":
            continue
        if element.tag == "node" and element.get("lat"):
            position = float(element.get("lat")), float(element.get("lon"))
            data.positions.setdefault(int(element.get("id")), position)
        elif element.tag == "way":
            references = (int(nd.get("ref")) for nd in element.findall("nd"))
            tags = ((tag.get("k"), tag.get("v")) for tag in element.findall("tag"))
            data.add_way(int(element.get("id")), references, tags)
    return data


class PbfHandler(osmium.SimpleHandler):
    def __init__(self, path):
        super().__init__()
        self.data = OsmData()
        box = osmium.io.Reader(path).header().box()
        if box.valid():
            low, high = box.bottom_left, box.top_right
            self.data.boxes.append([low.lat, high.lat, low.lon, high.lon])
        self.apply_file(path)

    def node(self, node):
        if node.visible and node.location.valid():
            self.data.positions.setdefault(node.id, (node.location.lat, node.location.lon))

    def way(self, way):
        if way.visible:
            references = (node.ref for node in way.nodes)
            self.data.add_way(way.id, references, ((tag.k, tag.v) for tag in way.tags))
