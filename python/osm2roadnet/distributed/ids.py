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
