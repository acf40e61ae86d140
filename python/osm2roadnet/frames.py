"""GeoDataFrames."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import geopandas as gpd
import pandas as pd
import shapely

from osm2roadnet.collector import paused
from osm2roadnet.columns import Lists, Texts
from osm2roadnet.geo import CRS, shapely_lines

if TYPE_CHECKING:
    from osm2roadnet.network import Network


_TEXT = pd.Series(["text"]).dtype  # by version of pandas, and with or without Arrow


def _column(column: Any) -> Any:
    if isinstance(column, Texts):
        is_arrow = getattr(_TEXT, "storage", "") == "pyarrow"
        texts: Any = column.to_arrow() if is_arrow else column.to_numpy()
        return pd.array(texts, dtype=_TEXT)
    return column.to_texts() if isinstance(column, Lists) else column


def frames(network: Network) -> tuple[gpd.GeoDataFrame, gpd.GeoDataFrame]:
    """See `Network.to_geopandas`."""
    columns = network.road_columns()
    road_ids = pd.Index(columns.pop("road_id"), name="road_id")
    roads = gpd.GeoDataFrame(
        {name: _column(column) for name, column in columns.items()},
        geometry=shapely_lines(network.roads["geometry"]),
        crs=CRS,
        index=road_ids,
    )
    with paused():
        points = shapely.points(network.node_coordinates())
    nodes = gpd.GeoDataFrame(
        geometry=points,
        crs=CRS,
        index=pd.Index(network.nodes["id"], name="node_id"),
    )
    return nodes, roads
