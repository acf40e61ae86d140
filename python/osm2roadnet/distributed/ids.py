"""Ids in the order of a sorted file, and whose part they are in."""

from __future__ import annotations

from collections.abc import Iterable, Sequence
from typing import Any

import numpy as np
from numpy.typing import NDArray

Ids = NDArray[np.int64]


def file_order(ids: Ids) -> NDArray[np.uint64]:
    """Numbers that ascend with the ids of a sorted file: 0, -1, -2, ..., 1, 2, ..."""
    bits = ids.view(np.uint64)
    return np.where(ids <= 0, np.uint64(0) - bits, bits + np.uint64(1 << 63))


def in_file_order(arrays: Iterable[NDArray[Any]]) -> Ids:
    """The ids of all arrays, each once."""
    ids = np.unique(concatenated(arrays, np.int64))
    below = int(np.searchsorted(ids, 0, side="right"))
    return np.concatenate([ids[:below][::-1], ids[below:]])


def split(ids: Ids, seams: NDArray[np.uint64]) -> list[Ids]:
    """Ids in file order, by the part that they are in; `seams` are the last ones of all but the
    last part, as numbers in file order.
    """
    places = np.searchsorted(file_order(ids), seams, side="right")
    return np.split(ids, places)


def concatenated(arrays: Iterable[NDArray[Any]], dtype: Any) -> NDArray[Any]:
    """One array of all, which may be none."""
    return np.concatenate([np.empty(0, dtype), *arrays])


def first_numbers(counts: Sequence[tuple[int, int]], begin: int) -> Ids:
    """Where two kinds of rows of each part begin if all those of the first kind, in the reverse
    order of the parts, stand before all those of the second kind, in the order of the parts.
    """
    table = np.array(counts, np.int64).reshape(-1, 2)
    in_order = np.concatenate([table[::-1, 0], table[:, 1]])
    firsts = begin + np.cumsum(in_order) - in_order
    return np.stack([firsts[: len(table)][::-1], firsts[len(table) :]], axis=1)


def packed_ids(ids: Ids) -> tuple[NDArray[Any], ...]:
    """Ids in file order in less memory, to travel: the steps between them."""
    order = file_order(ids)
    steps = np.diff(order, prepend=np.uint64(0))
    rest = steps[1:]
    return order[:1], rest.astype(np.min_scalar_type(rest.max() if len(rest) else 0))


def unpacked_ids(packed: tuple[NDArray[Any], ...]) -> Ids:
    """And back."""
    first, rest = packed
    order = np.cumsum(np.concatenate([first, rest.astype(np.uint64)]), dtype=np.uint64)
    half = np.uint64(1 << 63)
    ids: Ids = np.where(order <= half, np.uint64(0) - order, order - half).view(np.int64)
    return ids


_NOWHERE = np.iinfo(np.int32).min


def packed_degrees(degrees: NDArray[np.float64]) -> NDArray[Any]:
    """Degrees in less memory where they are whole numbers of 100 nanodegrees, or NaN."""
    is_there = ~np.isnan(degrees)
    units = np.where(is_there, np.rint(np.nan_to_num(degrees) * 1e7), _NOWHERE).astype(np.int32)
    is_exact = np.array_equal(unpacked_degrees(units), degrees, equal_nan=True)
    return units if is_exact else degrees


def unpacked_degrees(packed: NDArray[Any]) -> NDArray[np.float64]:
    """And back, to the last bit."""
    if packed.dtype != np.int32:
        return packed
    # As the numbers of a PBF file become degrees.
    degrees = packed.astype(np.int64) * 100 / 1e9
    return np.where(packed == _NOWHERE, np.nan, degrees)
