"""What the road network needs of an OpenStreetMap file, read by pyosmium: a reader that is not ours."""

import osmium


class OsmFile(osmium.SimpleHandler):
    """Positions of nodes, tags and references of ways, and the bounds. Of two with one id the first
    stays."""

    def __init__(self, path):
        super().__init__()
        self.positions = {}  # id -> (latitude, longitude) in degrees
        self.tags = {}  # of ways: id -> values by key
        self.references = {}  # of ways: id -> ids of nodes
        self.box = osmium.io.Reader(path).header().box()
        self.apply_file(path)

    def node(self, node):
        self.positions.setdefault(node.id, (node.location.lat, node.location.lon))

    def way(self, way):
        self.tags.setdefault(way.id, {tag.k: tag.v for tag in way.tags})
        self.references.setdefault(way.id, [node.ref for node in way.nodes])

    def limits(self):
        """[lat, lat, lon, lon]: the bounds, else the extent of the nodes, else []."""
        if self.box.valid():
            low, high = self.box.bottom_left, self.box.top_right
            return [low.lat, high.lat, low.lon, high.lon]
        return [limit for axis in zip(*self.positions.values()) for limit in (min(axis), max(axis))]
