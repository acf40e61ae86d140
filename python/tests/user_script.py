"""What a user writes, as mypy sees it."""

from __future__ import annotations

import numpy as np
from numpy.typing import NDArray

import osm2roadnet as rn


def told(stage: str, done: int, total: int) -> None:
    print(stage, done, total)


def longest(path: str) -> tuple[str | None, float]:
    net = rn.read(path, join="all", tags=["maxspeed"], threads=2, progress=told)
    lengths: NDArray[np.float64] = net.roads["length"]
    first: str | None = net.roads["name"][0]
    some: rn.Texts = net.roads["highway"][:10]
    points: NDArray[np.float64] = net.roads["geometry"][0]
    ids: NDArray[np.int64] = net.nodes["id"]
    nodes, roads = net.to_geopandas()
    graph = net.to_networkx()
    matrix, order = net.to_csr()
    shape: tuple[int, ...] = matrix.shape
    net.to_file("town.gpkg", overwrite=True)
    print(first, some, points, ids, nodes.crs, roads.crs, graph.number_of_edges(), shape, order)
    try:
        rn.read(b"")
    except rn.ReadError as error:
        print(error.filename + error.place + error.reason)
    return first, float(lengths.max())
