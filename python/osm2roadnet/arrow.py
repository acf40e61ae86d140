"""Arrow arrays and tables over the memory of columns."""

from __future__ import annotations

import json
from collections.abc import Mapping
from typing import TYPE_CHECKING, Any

import numpy as np
import pyarrow as pa

from osm2roadnet.columns import Lists, Texts
from osm2roadnet.geo import WGS84, well_known_binary

if TYPE_CHECKING:
    from numpy.typing import NDArray

    from osm2roadnet.network import Network

_GEOARROW_CRS = json.dumps({"crs": WGS84, "crs_type": "projjson"})
_POINTS = pa.list_(pa.field("xyz", pa.float64(), nullable=False), 3)


def text_array(texts: Texts) -> pa.DictionaryArray:
    """See `Texts.to_arrow`."""
    data, offsets = pa.py_buffer(texts.data), pa.py_buffer(texts.offsets)
    categories = pa.LargeStringArray.from_buffers(len(texts.offsets) - 1, offsets, data)
    is_there = texts.codes >= 0
    bits = pa.py_buffer(np.packbits(is_there, bitorder="little"))
    buffers = [bits, pa.py_buffer(np.ascontiguousarray(texts.codes))]
    codes = pa.Array.from_buffers(pa.int32(), len(texts), buffers)
    return pa.DictionaryArray.from_arrays(codes, categories)


def binary_array(lines: Lists, kind: str) -> pa.LargeBinaryArray:
    """Lines, or points, as well-known binary."""
    binary, offsets = well_known_binary(lines, kind)
    buffers = [None, pa.py_buffer(offsets), pa.py_buffer(binary)]
    return pa.Array.from_buffers(pa.large_binary(), len(lines), buffers)


def _column(column: Any) -> pa.Array:
    if isinstance(column, Texts):
        return text_array(column)
    if isinstance(column, Lists):
        is_line = column.values.ndim > 1
        values = _points(column.values) if is_line else pa.array(column.values)
        return pa.LargeListArray.from_arrays(column.offsets, values)
    return pa.array(column)


def _points(coordinates: NDArray[np.float64]) -> pa.Array:
    values = pa.array(coordinates.reshape(-1))
    return pa.FixedSizeListArray.from_arrays(values, type=_POINTS)


def table_of(columns: Mapping[str, Any]) -> pa.Table:
    """Columns of any kind as a table."""
    return pa.table({name: _column(column) for name, column in columns.items()})


def _with_geometry(table: pa.Table, geometry: pa.Array, kind: str) -> pa.Table:
    geoarrow = {"ARROW:extension:name": kind, "ARROW:extension:metadata": _GEOARROW_CRS}
    return table.append_column(pa.field("geometry", geometry.type, metadata=geoarrow), geometry)


def tables(network: Network) -> tuple[pa.Table, pa.Table]:
    """See `Network.to_arrow`."""
    points = _points(network.node_coordinates())
    lines = network.roads["geometry"]
    centre_lines = pa.LargeListArray.from_arrays(lines.offsets, _points(lines.values))
    return (
        _with_geometry(table_of(network.node_columns()), points, "geoarrow.point"),
        _with_geometry(table_of(network.road_columns()), centre_lines, "geoarrow.linestring"),
    )


def plain(table: pa.Table) -> pa.Table:
    """The same with texts as they are rather than as dictionaries, which not every reader knows."""
    for i, column in enumerate(table):
        if pa.types.is_dictionary(column.type):
            table = table.set_column(i, table.column_names[i], column.cast(column.type.value_type))
    return table
