"""Plain reader of OpenStreetMap files: XML (plain, .gz, .bz2) and PBF.

Standard library only. It keeps what the road network needs: node positions in
degrees at the file's full precision, ways with their tags, and bounds. Objects
marked invisible or deleted and nodes without a position are not kept.
"""

import bz2
import gzip
import io
import math
import struct
import zlib
from collections import defaultdict
from dataclasses import dataclass, field
from xml.etree.ElementTree import iterparse


@dataclass
class Way:
    id: int
    tags: dict
    refs: list


@dataclass
class OsmData:
    """Content of one file; of two records with one id the first stays."""

    nodes: dict = field(default_factory=dict)  # id -> (latitude, longitude)
    ways: dict = field(default_factory=dict)  # id -> Way
    bounds: list = field(default_factory=list)  # (min lat, min lon, max lat, max lon)

    def add_way(self, way_id, tags, refs):
        """Store a way; tags are (key, value) pairs, the first of a key stays."""
        kept = {}
        for key, value in tags:
            kept.setdefault(key, value)
        self.ways.setdefault(way_id, Way(way_id, kept, refs))

    def limits(self):
        """[lat, lat, lon, lon]: union of the bounds, else extent of the nodes, else []."""
        boxes = self.bounds or [position + position for position in self.nodes.values()]
        if not boxes:
            return []
        south, west, north, east = zip(*boxes)
        found = [min(south), max(north), min(west), max(east)]
        return [] if any(math.isnan(v) for v in found) else found


def read_osm(path):
    """Read a file of any supported format, told by its first bytes."""
    with open(path, "rb") as file:
        content = file.read()
    if content.startswith(b"\x1f\x8b"):
        content = gzip.decompress(content)
    elif content.startswith(b"BZh"):
        content = bz2.decompress(content)
    data = OsmData()
    # A PBF file begins with a big-endian 32-bit length below 64 KiB.
    (read_pbf if content.startswith(b"\0\0") else read_xml)(io.BytesIO(content), data)
    return data


def read_xml(stream, data):
    """Store the children of <osm>; elements nested deeper belong to their parent."""
    depth = 0
    for event, element in iterparse(stream, events=("start", "end")):
        if event == "start":
            if depth == 0:
                root = element
                if root.tag != "osm":
                    raise ValueError(f"root element is <{root.tag}>, not <osm>")
            depth += 1
            continue
        depth -= 1
        if depth == 1:
            store_element(element, data)
            root.clear()


def store_element(element, data):
    """Store one <bounds>, <bound>, <node> or <way>; skip anything else."""
    attributes = element.attrib
    if element.tag == "bounds":
        names = ("minlat", "minlon", "maxlat", "maxlon")
        data.bounds.append(tuple(float(attributes[name]) for name in names))
    elif element.tag == "bound":
        data.bounds.append(tuple(map(float, attributes["box"].split(","))))
    elif attributes.get("visible") == "false" or attributes.get("action") == "delete":
        return
    elif element.tag == "node" and ("lat" in attributes or "lon" in attributes):
        position = (float(attributes["lat"]), float(attributes["lon"]))
        data.nodes.setdefault(int(attributes["id"]), position)
    elif element.tag == "way":
        tags = [(tag.attrib["k"], tag.attrib["v"]) for tag in element.findall("tag")]
        refs = [int(nd.attrib["ref"]) for nd in element.findall("nd")]
        data.add_way(int(attributes["id"]), tags, refs)


# --- PBF: protobuf messages in length-prefixed blobs --------------------------


def varint(buffer, at):
    """(value, position behind it) of the unsigned varint at `at`."""
    value = shift = 0
    while True:
        byte = buffer[at]
        at += 1
        value |= (byte & 0x7F) << shift
        if byte < 0x80:
            return value, at
        shift += 7


def message(buffer):
    """A message as field number -> list of its values (int or bytes)."""
    fields = defaultdict(list)
    at = 0
    while at < len(buffer):
        key, at = varint(buffer, at)
        kind = key & 7
        if kind == 0:
            value, at = varint(buffer, at)
        elif kind in (1, 2, 5):
            length, at = varint(buffer, at) if kind == 2 else (8 if kind == 1 else 4, at)
            value = buffer[at : at + length]
            at += length
        else:
            raise ValueError(f"protobuf wire type {kind}")
        fields[key >> 3].append(value)
    return fields


def scalar(fields, number, default=None):
    """Last value of a field, as protobuf defines it for repetitions."""
    return fields[number][-1] if fields[number] else default


def packed(fields, number):
    """All varints of a repeated field, packed or not."""
    values = []
    for piece in fields[number]:
        if isinstance(piece, int):
            values.append(piece)
            continue
        at = 0
        while at < len(piece):
            value, at = varint(piece, at)
            values.append(value)
    return values


def int64(value):
    """Two's complement reading of an unsigned 64-bit value."""
    return value - (1 << 64) if value >> 63 else value


def sint64(value):
    """Zigzag reading of an unsigned value."""
    return (value >> 1) ^ -(value & 1)


def running_sums(values):
    """Decode zigzag differences."""
    total, sums = 0, []
    for value in values:
        total += sint64(value)
        sums.append(total)
    return sums


def degrees(nanodegrees):
    """Exact integer, so that the one division rounds correctly."""
    return nanodegrees / 1e9


def read_pbf(stream, data):
    while prefix := stream.read(4):
        header = message(stream.read(struct.unpack(">I", prefix)[0]))
        blob = message(stream.read(scalar(header, 3)))
        if blob[3]:
            content = zlib.decompress(scalar(blob, 3))
        elif blob[1]:
            content = scalar(blob, 1)
        else:
            raise ValueError("only raw and zlib blobs are read")
        kind = scalar(header, 1)
        if kind == b"OSMHeader":
            for box in message(content)[1]:
                west, east, north, south = (
                    degrees(sint64(scalar(message(box), number))) for number in (1, 2, 3, 4)
                )
                data.bounds.append((south, west, north, east))
        elif kind == b"OSMData":
            read_block(message(content), data)


def read_block(block, data):
    """Store nodes and ways of one primitive block."""
    strings = [text.decode("utf-8", "replace") for text in message(scalar(block, 1, b""))[1]]
    granularity = scalar(block, 17, 100)
    lat_offset, lon_offset = int64(scalar(block, 19, 0)), int64(scalar(block, 20, 0))

    def add_node(node_id, lat, lon):
        position = (
            degrees(lat_offset + granularity * lat),
            degrees(lon_offset + granularity * lon),
        )
        data.nodes.setdefault(node_id, position)

    def is_visible(info):
        return scalar(message(info), 6, 1)

    for group in map(message, block[2]):
        for node in map(message, group[1]):
            if is_visible(scalar(node, 4, b"")):
                add_node(*(sint64(scalar(node, number)) for number in (1, 8, 9)))
        for dense in map(message, group[2]):
            columns = [running_sums(packed(dense, number)) for number in (1, 8, 9)]
            visible = packed(message(scalar(dense, 5, b"")), 6)
            for index, row in enumerate(zip(*columns)):
                if index >= len(visible) or visible[index]:
                    add_node(*row)
        for way in map(message, group[3]):
            if is_visible(scalar(way, 4, b"")):
                keys, values = packed(way, 2), packed(way, 3)
                tags = [(strings[k], strings[v]) for k, v in zip(keys, values)]
                data.add_way(int64(scalar(way, 1)), tags, running_sums(packed(way, 8)))
