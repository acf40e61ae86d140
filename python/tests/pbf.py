"""Writes PBF files whose blobs are as small as a test wants them."""

import struct
import zlib


def write_pbf(path, nodes, ways, relations, blob_size):
    """Of nodes (id, lat, lon), ways (id, references, tags) and relations (id, members, tags), sorted
    as ``osmium sort`` does it. Members are (0 for a node, 1 for a way; id; role).
    """
    kinds = [(nodes, _nodes), (ways, _ways), (relations, _relations)]
    with open(path, "wb") as file:
        file.write(_blob(b"OSMHeader", _field(4, b"OsmSchema-V0.6") + _field(4, b"DenseNodes")))
        for elements, group_of in kinds:
            elements = sorted(elements, key=lambda element: (element[0] > 0, abs(element[0])))
            for first in range(0, len(elements), blob_size):
                strings = {"": 0}
                group = group_of(elements[first : first + blob_size], strings)
                table = b"".join(_field(1, text.encode()) for text in strings)
                file.write(_blob(b"OSMData", _field(1, table) + _field(2, group)))


def _nodes(nodes, _):
    columns = [(1, 0, 1), (8, 1, 1e7), (9, 2, 1e7)]
    return _field(
        2, b"".join(_field(n, _deltas(round(x[i] * unit) for x in nodes)) for n, i, unit in columns)
    )


def _ways(ways, strings):
    return b"".join(
        _field(3, _tagged(osm_id, tags, strings) + _field(8, _deltas(references)))
        for osm_id, references, tags in ways
    )


def _relations(relations, strings):
    group = b""
    for osm_id, members, tags in relations:
        kinds, ids, roles = zip(*members)
        group += _field(
            4,
            _tagged(osm_id, tags, strings)
            + _field(8, _numbers(roles, strings))
            + _field(9, _deltas(ids))
            + _field(10, bytes(kinds)),
        )
    return group


def _tagged(osm_id, tags, strings):
    keys, values = _numbers(tags, strings), _numbers(tags.values(), strings)
    return b"\x08" + _varint(osm_id % 2**64) + _field(2, keys) + _field(3, values)


def _numbers(texts, strings):
    return b"".join(_varint(strings.setdefault(text, len(strings))) for text in texts)


def _deltas(values):
    last, packed = 0, b""
    for value in values:
        step, last = value - last, value
        packed += _varint(2 * step if step >= 0 else -2 * step - 1)
    return packed


def _blob(kind, content):
    blob = b"\x10" + _varint(len(content)) + _field(3, zlib.compress(content))
    header = _field(1, kind) + b"\x18" + _varint(len(blob))
    return struct.pack(">I", len(header)) + header + blob


def _field(number, content):
    return _varint(number << 3 | 2) + _varint(len(content)) + content


def _varint(number):
    packed = b""
    while number > 127:
        packed += bytes([number & 127 | 128])
        number >>= 7
    return packed + bytes([number])
