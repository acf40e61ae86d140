"""Tables with workers as Dask DataFrames."""

from __future__ import annotations

from typing import Any

import dask.dataframe as dd
import numpy as np
import pandas as pd
import pyarrow as pa
from dask.delayed import delayed

from osm2roadnet.arrow import binary_array, plain
from osm2roadnet.columns import Lists


def frame(rows: Any) -> dd.DataFrame:
    """A Dask DataFrame of `Rows`."""
    make = delayed(_some, name="make frame", pure=False)
    made = [make(future, first, last) for future, first, last in rows.parts]
    future = rows.parts[0][0]
    meta = future.client.submit(_some, future, 0, 0).result()
    whole: dd.DataFrame = dd.from_delayed(made, meta=meta, verify_meta=False)
    return whole


def lines_of(table: pa.Table) -> Lists:
    """The column of geometries."""
    column = table["geometry"].combine_chunks()
    points = column.values.values.to_numpy().reshape(-1, 3)
    return Lists(column.offsets.to_numpy(), points)


def _some(rows: tuple[pa.Table, int], first: int, last: int) -> pd.DataFrame:
    return frame_of(rows[0].slice(first, last - first))


def frame_of(table: pa.Table) -> pd.DataFrame:
    """A table as pandas has it."""
    table = plain(table.combine_chunks())
    if "geometry" in table.column_names:
        place = table.column_names.index("geometry")
        # Of a slice the offsets count from the beginning of the whole.
        lines = lines_of(table)
        begin, end = lines.offsets[0], lines.offsets[-1]
        whole = Lists(lines.offsets - begin, np.ascontiguousarray(lines.values[begin:end]))
        table = table.set_column(place, "geometry", binary_array(whole, "LineString"))
    made: pd.DataFrame = table.to_pandas(types_mapper=_as_arrow)
    return made


def _as_arrow(kind: pa.DataType) -> Any:
    is_plain = pa.types.is_integer(kind) or pa.types.is_floating(kind)
    if pa.types.is_large_string(kind):
        return pd.StringDtype("pyarrow")
    return None if is_plain else pd.ArrowDtype(kind)
