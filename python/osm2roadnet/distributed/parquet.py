"""GeoParquet of several files, along a space-filling curve."""

from __future__ import annotations

import os
from collections.abc import Sequence
from pathlib import Path
from typing import TYPE_CHECKING, Any

import numpy as np
import pyarrow as pa
import pyarrow.parquet as pq
from numpy.typing import NDArray

from osm2roadnet.arrow import plain
from osm2roadnet.columns import Lists
from osm2roadnet.distributed.frames import lines_of
from osm2roadnet.geo import points_of
from osm2roadnet.outputs import output
from osm2roadnet.parquet import geo_table

if TYPE_CHECKING:
    from osm2roadnet.distributed.network import Network, Rows

_BITS = 20  # of each coordinate: some 40 m
_SAMPLES = 256  # of each part
_FOLDERS = ("roads", "nodes", "restrictions")
_POSITIONS = ("start", "end", "weight")  # which the exchange formats don't have


def write_parquet(network: Network, folder: Any, overwrite: bool) -> None:
    """See `Network.to_parquet`."""
    with output(folder, overwrite, _FOLDERS) as unfinished:
        for name in _FOLDERS:
            (unfinished / name).mkdir()
        rows = network._roads, network._nodes
        futures = [
            f for some, name in zip(rows, _FOLDERS) for f in _written(some, unfinished / name)
        ]
        client = network.client
        for part, (future, first, last) in enumerate(network._restrictions.parts):
            path = _path(unfinished / "restrictions", part)
            futures.append(client.submit(_write_plain, future, first, last, path, pure=False))
        client.gather(futures)


def _path(folder: Path, part: int) -> str:
    return str(folder / f"part-{part:05}.parquet")


def _written(rows: Rows, folder: Path) -> list[Any]:
    """Futures of files, of about as many as there are parts of some size."""
    client = rows.parts[0][0].client
    places = [client.submit(_place, *part, pure=False) for part in rows.parts]
    samples = client.gather([client.submit(_sample, place, pure=False) for place in places])
    cuts = _cuts(samples, len(rows.parts))
    split = [
        client.submit(_split, *part, place, cuts, pure=False)
        for part, place in zip(rows.parts, places)
    ]
    return [
        client.submit(
            _write,
            [client.submit(_item, some, part) for some in split],
            _path(folder, part),
            pure=False,
        )
        for part in range(len(cuts) + 1)
    ]


def _item(some: Sequence[Any], part: int) -> Any:
    return some[part]


def _coordinates(table: pa.Table) -> Lists:
    if "geometry" in table.column_names:
        return lines_of(table)
    return points_of(np.column_stack([table[name] for name in ("lon", "lat", "elevation")]))


def _place(rows: tuple[pa.Table, int], first: int, last: int) -> NDArray[np.int64]:
    """Where on the curve each row of a part begins."""
    lines = _coordinates(rows[0].slice(first, last - first))
    return along_curve(lines.values[lines.offsets[:-1], :2])


def along_curve(points: NDArray[np.float64]) -> NDArray[np.int64]:
    """The places of longitudes and latitudes on the curve of Hilbert (1891) over the world."""
    size = 1 << _BITS
    scaled = (points + (180, 90)) / (360, 180) * size
    x, y = np.clip(scaled, 0, size - 1).astype(np.int64).T
    places = np.zeros(len(points), np.int64)
    for bit in range(_BITS - 1, -1, -1):
        half = 1 << bit
        right, upper = x >> bit & 1, y >> bit & 1
        places += half * half * (3 * right ^ upper)
        turned = upper == 0
        mirrored = turned & (right == 1)
        x, y = np.where(mirrored, size - 1 - x, x), np.where(mirrored, size - 1 - y, y)
        x, y = np.where(turned, y, x), np.where(turned, x, y)
    return places


def _sample(places: NDArray[np.int64]) -> tuple[NDArray[np.int64], int]:
    ordered = np.sort(places)
    some = np.linspace(0, len(ordered) - 1, min(_SAMPLES, len(ordered))).astype(int)
    return ordered[some], len(ordered)


def _cuts(samples: Sequence[tuple[NDArray[np.int64], int]], count: int) -> NDArray[np.int64]:
    """Places between which there are about as many rows each."""
    places = np.concatenate([places for places, _ in samples])
    weights = np.concatenate([np.full(len(p), n / max(len(p), 1)) for p, n in samples])
    order = np.argsort(places, kind="stable")
    reached = np.cumsum(weights[order])
    wanted = reached[-1:] * np.arange(1, count) / count if len(reached) else reached
    return np.unique(places[order][np.searchsorted(reached, wanted)])


def _split(
    rows: tuple[pa.Table, int], first: int, last: int, places: Any, cuts: Any
) -> list[pa.Table]:
    table = rows[0].slice(first, last - first).append_column("place", pa.array(places))
    owners = np.searchsorted(cuts, places, side="right")
    return [table.filter(pa.array(owners == part)) for part in range(len(cuts) + 1)]


def _write(tables: Sequence[pa.Table], path: str) -> None:
    whole = pa.concat_tables(tables).unify_dictionaries().combine_chunks()
    ids = whole["id"].to_numpy()
    order = np.lexsort([ids, whole["place"].to_numpy()])
    table = whole.take(pa.array(order)).combine_chunks().drop_columns("place")
    lines = _coordinates(table)
    is_road = "geometry" in table.column_names
    names = [name for name in table.column_names if name not in (*_POSITIONS, "geometry")]
    columns = table.select(names if is_road else ["id"])
    kind, name = ("LineString", "road_id") if is_road else ("Point", "node_id")
    columns = columns.rename_columns([name, *columns.column_names[1:]])
    _save(geo_table(columns, lines, kind), path)


def _write_plain(rows: tuple[pa.Table, int], first: int, last: int, path: str) -> None:
    _save(plain(rows[0].slice(first, last - first)), path)


def _save(table: pa.Table, path: str) -> None:
    # A worker that dies leaves no half of a file under this name, and another one may write it too.
    unfinished = f"{path}.{os.getpid()}"
    pq.write_table(table, unfinished, compression="zstd")
    os.replace(unfinished, path)
