"""tile_file.py IN.osm.pbf OUT.osm.pbf COUNT: copies of an extract side by side, as one sorted file.

For measurements on more data than there are extracts of. Needs pyosmium.
"""

import math
import sys

import osmium

STEP = 0.2  # degrees from copy to copy


def main():
    source, target, count = sys.argv[1], sys.argv[2], int(sys.argv[3])
    side = math.isqrt(count - 1) + 1
    kinds = {"n": [], "w": [], "r": []}
    for element in osmium.FileProcessor(source):
        tags = {tag.k: tag.v for tag in element.tags}
        if element.is_node():
            kinds["n"].append((element.id, element.lon, element.lat, tags))
        elif element.is_way():
            kinds["w"].append((element.id, [node.ref for node in element.nodes], tags))
        else:
            members = [(m.type, m.ref, m.role) for m in element.members]
            kinds["r"].append((element.id, members, tags))
    # Each copy has ids of its own, behind those of the one before.
    steps = {kind: max((e[0] for e in found), default=0) for kind, found in kinds.items()}
    west = -179 - min(e[1] for e in kinds["n"])
    south = -80 - min(e[2] for e in kinds["n"])
    writer = osmium.SimpleWriter(target, overwrite=True)
    for kind, found in kinds.items():
        found.sort(key=lambda element: element[0])
        for copy in range(count):
            for osm_id, *rest, tags in found:
                osm_id += copy * steps[kind]
                if kind == "n":
                    lon = rest[0] + west + copy % side * STEP
                    lat = rest[1] + south + copy // side * STEP
                    element = osmium.osm.mutable.Node(id=osm_id, location=(lon, lat), tags=tags)
                    writer.add_node(element)
                elif kind == "w":
                    nodes = [node + copy * steps["n"] for node in rest[0]]
                    writer.add_way(osmium.osm.mutable.Way(id=osm_id, nodes=nodes, tags=tags))
                else:
                    members = [(t, ref + copy * steps[t], role) for t, ref, role in rest[0]]
                    element = osmium.osm.mutable.Relation(id=osm_id, members=members, tags=tags)
                    writer.add_relation(element)
    writer.close()


if __name__ == "__main__":
    main()
