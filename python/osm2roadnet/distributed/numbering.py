"""Roads by their ids, and the ways that they are pieces of."""

from __future__ import annotations

from collections.abc import Sequence
from typing import Any

import numpy as np
from numpy.typing import NDArray

from osm2roadnet._core import parts
from osm2roadnet.distributed.ids import Ids, first_numbers

Array = NDArray[Any]
#: What a step has made, by names.
Made = dict[str, Any]


def number_roads(counts: Sequence[tuple[int, int]]) -> Made:
    """The ids of the first roads of each part: of ways with negative ids, and of the others."""
    return {"firsts": first_numbers(counts, 1), "counts": np.array(counts, np.int64)}


def ids_of(numbers: Made, part: int, roads: Array) -> Ids:
    first_negative, first = numbers["firsts"][part]
    negative = numbers["counts"][part][0]
    roads = roads.astype(np.int64)
    ids: Ids = np.where(roads < negative, first_negative + roads, first + roads - negative)
    return ids


def rows_by_part(numbers: Made, roads: Ids) -> list[Ids]:
    """The rows of roads by the part that the road of this id comes from."""
    firsts = numbers["firsts"]
    order = np.concatenate([firsts[::-1, 0], firsts[:, 1]])
    # Of parts that begin with the same id the last has it; the others have no road.
    places = np.searchsorted(order, roads, side="right") - 1
    count = len(firsts)
    owners = np.where(places < count, count - 1 - places, places - count)
    by_owner = np.argsort(owners, kind="stable")
    return np.split(by_owner, np.searchsorted(owners[by_owner], np.arange(1, count)))


def batches_of(part: int, numbers: Made, roads: Made, sent: Sequence[Ids]) -> list[Array | None]:
    wanted = [(rows, ids_of(numbers, part, rows)) for rows in sent if len(rows)]
    batches = iter(parts.ways_of_roads(roads["batch"], roads["ends"], wanted))
    return [next(batches) if len(rows) else None for rows in sent]


def there(batches: Sequence[Array | None]) -> list[Array]:
    return [batch for batch in batches if batch is not None]
