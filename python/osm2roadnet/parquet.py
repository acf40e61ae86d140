"""GeoParquet."""

from __future__ import annotations

import json
import os
from typing import TYPE_CHECKING, Any

import numpy as np
import pyarrow as pa
import pyarrow.parquet as pq

from osm2roadnet.arrow import binary_array, plain, table_of
from osm2roadnet.geo import WGS84, extent, points_of
from osm2roadnet.outputs import output

if TYPE_CHECKING:
    from numpy.typing import NDArray

    from osm2roadnet.columns import Lists
    from osm2roadnet.network import Network


def write_parquet(network: Network, roads: Any, nodes: Any, overwrite: bool) -> None:
    """See `Network.to_parquet`."""
    if nodes is not None and os.path.realpath(roads) == os.path.realpath(nodes):
        raise ValueError(f"roads and nodes can't both be in {os.fsdecode(roads)}")
    _write(roads, overwrite, network.road_columns(), network.roads["geometry"], "LineString")
    if nodes is not None:
        points = points_of(network.node_coordinates())
        _write(nodes, overwrite, network.node_columns(), points, "Point")


def _write(path: Any, overwrite: bool, columns: dict[str, Any], lines: Lists, kind: str) -> None:
    table = geo_table(table_of(columns), lines, kind)
    with output(path, overwrite) as unfinished:
        pq.write_table(table, unfinished, compression="zstd")


def geo_table(columns: pa.Table, lines: Lists, kind: str) -> pa.Table:
    """The columns with the geometry and its boxes, and the metadata that say so."""
    boxes = _boxes(lines)
    box = "geometry_bbox" if "bbox" in columns.column_names else "bbox"  # which may be a tag
    column: dict[str, Any] = {
        "encoding": "WKB",
        "geometry_types": [f"{kind} Z"],
        "crs": WGS84,
        "covering": {"bbox": {side: [box, side] for side in boxes}},
    }
    if len(lines) > 0:
        column["bbox"] = extent(lines.values)
    geo = {"version": "1.1.0", "primary_column": "geometry", "columns": {"geometry": column}}
    return (
        plain(columns)
        .append_column("geometry", binary_array(lines, kind))
        .append_column(box, pa.StructArray.from_arrays(list(boxes.values()), list(boxes)))
        .replace_schema_metadata({"geo": json.dumps(geo)})
    )


def _boxes(lines: Lists) -> dict[str, pa.Array]:
    """The least and greatest longitude and latitude of each line, which has a point at least."""
    x, y, starts = lines.values[:, 0], lines.values[:, 1], lines.offsets[:-1]
    sides: dict[str, tuple[np.ufunc, NDArray[np.float64]]]
    sides = {
        "xmin": (np.minimum, x),
        "ymin": (np.minimum, y),
        "xmax": (np.maximum, x),
        "ymax": (np.maximum, y),
    }
    return {
        side: pa.array(least_or_greatest.reduceat(values, starts) if len(starts) else values)
        for side, (least_or_greatest, values) in sides.items()
    }
