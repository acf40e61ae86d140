"""The formats of the program."""

from __future__ import annotations

import errno
import os
from pathlib import Path
from typing import TYPE_CHECKING, Any

import numpy as np

from osm2roadnet.columns import Lists, Texts
from osm2roadnet.errors import check_type, require
from osm2roadnet.geo import CRS, points_of
from osm2roadnet.outputs import output, refuse_existing
from osm2roadnet.styles import add_styles

if TYPE_CHECKING:
    from osm2roadnet.network import Network

ATTRIBUTION = "\N{COPYRIGHT SIGN} OpenStreetMap contributors, ODbL-1.0"

#: The formats by the endings of their names.
FORMATS = {name: name for name in "json geojson geojsonl gpkg fgb gmns graphml html".split()}
FORMATS["ndjson"] = "geojsonl"


def to_file(network: Network, path: Any, format: str | None, overwrite: bool) -> None:
    """See `Network.to_file`."""
    check_type("path", path, (str, bytes, os.PathLike), "a path")
    check_type("format", format, (str, type(None)), "a text")
    path = Path(os.fsdecode(path))
    ending = path.suffix[1:] if format is None else format
    known = FORMATS.get(ending.lower())
    if known is None:
        raise ValueError(f'there is no format "{ending}"; there are {", ".join(FORMATS)}')
    if known in ("gpkg", "fgb"):
        _write_layers(network, path, known == "gpkg", overwrite)
    else:
        if not overwrite:
            refuse_existing(path)
        imported = network.imported("any format but gpkg and fgb")
        imported.write(str(path), known, overwrite)


def _write_layers(network: Network, path: Path, is_one_file: bool, overwrite: bool) -> None:
    pyogrio = require("pyogrio", "files")
    arrow = require("osm2roadnet.arrow", "files")
    layers = {
        "nodes": (network.node_columns(), points_of(network.node_coordinates()), "Point"),
        "roads": (network.road_columns(), network.roads["geometry"], "LineString"),
        "restrictions": (dict(network.restrictions), _first_nodes(network), "Point"),
    }
    files = [] if is_one_file else [f"{name}.fgb" for name in layers]
    with output(path, overwrite, files, ".gpkg" if is_one_file else "") as unfinished:
        target = unfinished
        for name, (columns, geometry, kind) in layers.items():
            if not is_one_file:
                target = unfinished / f"{name}.fgb"
            table = arrow.plain(arrow.table_of(_as_stored(columns)))
            try:
                pyogrio.write_arrow(
                    table.append_column("geometry", arrow.binary_array(geometry, kind)),
                    target,
                    layer=name,
                    driver="GPKG" if is_one_file else "FlatGeobuf",
                    append=target.exists(),
                    geometry_name="geometry",
                    geometry_type=f"{kind} Z",
                    crs=CRS,
                    layer_options={"DESCRIPTION": ATTRIBUTION},
                )
            except (pyogrio.errors.DataLayerError, pyogrio.errors.DataSourceError) as error:
                raise OSError(errno.EIO, str(error), str(path)) from error
        if is_one_file:
            add_styles(unfinished, layers)


def _as_stored(columns: dict[str, Any]) -> dict[str, Any]:
    """Lists as texts, and small numbers as what these formats have."""
    pa = require("pyarrow", "files")
    stored = dict(columns)
    for name, column in columns.items():
        if isinstance(column, Lists):
            stored[name] = pa.array(column.to_texts(), pa.string(), mask=column.sizes == 0)
        elif not isinstance(column, Texts) and column.dtype == np.uint8:
            stored[name] = column.astype(np.int32)
    return stored


def _first_nodes(network: Network) -> Lists:
    """The places of the restrictions: the first of the nodes on their ways."""
    via, ids = network.restrictions["via_node_ids"], network.nodes["id"]
    order = np.argsort(ids)
    rows = order[np.searchsorted(ids[order], via.values[via.offsets[:-1]])]
    return points_of(network.node_coordinates()[rows])
