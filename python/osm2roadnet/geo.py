"""Coordinates: where they are, and as well-known binary."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Final

import numpy as np

from osm2roadnet.collector import paused
from osm2roadnet.columns import Lists
from osm2roadnet.errors import require

if TYPE_CHECKING:
    from numpy.typing import NDArray

#: The coordinate reference system of all coordinates, as packages take it.
CRS: Final = "EPSG:4326"


def _axis(name: str, abbreviation: str, direction: str) -> dict[str, str]:
    return {
        "name": name,
        "abbreviation": abbreviation,
        "direction": direction,
        "unit": "degree",
    }


#: The same as PROJJSON, which the metadata of GeoParquet and GeoArrow wants.
WGS84: Final[dict[str, Any]] = {
    "$schema": "https://proj.org/schemas/v0.7/projjson.schema.json",
    "type": "GeographicCRS",
    "name": "WGS 84",
    "datum": {
        "type": "GeodeticReferenceFrame",
        "name": "World Geodetic System 1984",
        "ellipsoid": {
            "name": "WGS 84",
            "semi_major_axis": 6378137,
            "inverse_flattening": 298.257223563,
        },
    },
    "coordinate_system": {
        "subtype": "ellipsoidal",
        "axis": [
            _axis("Geodetic latitude", "Lat", "north"),
            _axis("Geodetic longitude", "Lon", "east"),
        ],
    },
    "id": {"authority": "EPSG", "code": 4326},
}


def points_of(coordinates: NDArray[np.float64]) -> Lists:
    """Points as lines of one point each."""
    return Lists(np.arange(len(coordinates) + 1), coordinates)


def extent(coordinates: NDArray[np.float64]) -> list[float]:
    """The least of each column, then the greatest of each; elevations only if all are finite."""
    finite = coordinates[:, np.isfinite(coordinates).all(axis=0)]
    return [*finite.min(axis=0).tolist(), *finite.max(axis=0).tolist()]


_KINDS: Final = {"Point": 1001, "LineString": 1002, "MultiPoint": 1004, "MultiLineString": 1005}


def well_known_binary(lines: Lists, kind: str) -> tuple[NDArray[np.uint8], NDArray[np.int64]]:
    """Lines, or points, as ISO well-known binary with Z, little-endian, and where each begins."""
    header = np.dtype([("order", "u1"), ("kind", "<u4"), ("size", "<u4")])
    headers = np.empty(len(lines), header)
    headers["order"] = 1
    headers["kind"] = _KINDS[kind]
    headers["size"] = lines.sizes
    width = header.itemsize if kind == "LineString" else 5  # a point has no size
    head = headers.view(np.uint8).reshape(len(lines), header.itemsize)[:, :width]
    points = np.ascontiguousarray(lines.values, "<f8")
    point_bytes = points.dtype.itemsize * points.shape[1]
    offsets = lines.offsets * point_bytes + np.arange(len(lines) + 1) * width
    binary = np.empty(offsets[-1], np.uint8)
    is_point = np.ones(len(binary), bool)
    places = offsets[:-1, np.newaxis] + np.arange(width)
    is_point[places] = False
    binary[places] = head
    binary[is_point] = points.reshape(-1).view(np.uint8)
    return binary, offsets


def shapely_lines(lines: Lists) -> NDArray[np.object_]:
    """A LineString of Shapely for each, of as many dimensions as the points have."""
    shapely = require("shapely", "geo")
    with paused():
        made: NDArray[np.object_] = shapely.from_ragged_array(
            shapely.GeometryType.LINESTRING, lines.values, (lines.offsets,)
        )
    return made
