"""Into which parts a file is taken apart."""

from __future__ import annotations

import os
from collections.abc import Iterator, Sequence
from dataclasses import dataclass
from functools import cached_property
from typing import Any

import numpy as np
from numpy.typing import NDArray

from osm2roadnet._core import parts
from osm2roadnet.distributed.ids import file_order

#: Path and name of the file; where the blob before the part begins and how many are before that;
#: where the part begins and ends.
Place = tuple[bytes, str, int, int, int, int]
#: join, oneway, tags
Options = tuple[str, str, "list[str] | None"]
#: Ids as numbers in file order.
Seams = NDArray[np.uint64]
#: Kind and id of the last element before a place and of the first one behind it.
Seam = tuple[int, int, int, int]

_TO_THE_END = (1 << 63) - 1
_NODES, _WAYS, _RELATIONS = range(3)
#: Nodes take little memory, and the fewer parts there are, the fewer pieces go to and fro.
_NODE_PARTS = 4


@dataclass(frozen=True)
class Part:
    """Blobs that follow one another."""

    place: Place
    first: tuple[int, int]  # kind and id of the first element, or less
    last: tuple[int, int]  # of the last one, or more

    def __contains__(self, kind: int) -> bool:
        return self.first[0] <= kind <= self.last[0]


class Plan:
    """The parts of a file, and in which of them elements are."""

    def __init__(self, found: Sequence[Part]) -> None:
        self.all = found
        self.nodes = self._with(_NODES)
        self.ways = self._with(_WAYS)
        self.relations = self._with(_RELATIONS)

    @cached_property
    def is_sorted(self) -> bool:
        """Whether it can be, as far as one sees from the ends of the parts."""
        ends = [end for part in self.all for end in (part.first, part.last)]
        order = [(kind, int(file_order(np.array([osm_id]))[0])) for kind, osm_id in ends[1:-1]]
        return order == sorted(order)

    @cached_property
    def node_seams(self) -> Seams:
        """The last nodes of the parts with nodes but the last one, as numbers in file order."""
        return _seams(self.nodes)

    @cached_property
    def way_seams(self) -> Seams:
        """The same of ways."""
        return _seams(self.ways)

    def _with(self, kind: int) -> list[Part]:
        return [part for part in self.all if kind in part] or [self.all[-1]]


def _seams(having: Sequence[Part]) -> Seams:
    return file_order(np.array([part.last[1] for part in having[:-1]], np.int64))


def possible_cuts(path: str, size: int) -> list[Place]:
    """Where a file can be taken apart into parts of some `size` bytes: of each place the blob
    before it and the one behind it.
    """
    name = os.fsdecode(path)
    where = os.fsencode(os.path.abspath(path))
    begins, is_data, end = parts.find_blobs(where, name)
    data = np.flatnonzero(is_data)
    ends = np.append(begins[1:], end)
    cuts, begin = [], 0
    for before, blob in zip(data.tolist(), data[1:].tolist()):
        if begins[blob] - begin < size:
            continue
        begin = int(begins[blob])
        cuts.append((where, name, int(begins[before]), before, begin, int(ends[blob])))
    return cuts


def plan_of(path: str, cuts: Sequence[Place], seams: Sequence[Seam | None]) -> Plan:
    """Parts between those cuts where both blobs have elements."""
    good = [(cut, seam) for cut, seam in zip(cuts, seams) if seam is not None]
    good = list(_without_most_of_nodes(good))
    begins = [(0, 0, 0), *((cut[2], cut[3], cut[4]) for cut, _ in good)]
    ends = [*(cut[4] for cut, _ in good), _TO_THE_END]
    firsts = [(_NODES, 0), *(seam[2:] for _, seam in good)]
    lasts = [*(seam[:2] for _, seam in good), (_RELATIONS, _TO_THE_END)]
    name, where = os.fsdecode(path), os.fsencode(os.path.abspath(path))
    return Plan(
        [
            Part((where, name, *begin, end), first, last)
            for begin, end, first, last in zip(begins, ends, firsts, lasts)
        ]
    )


def _without_most_of_nodes(good: Sequence[Any]) -> Iterator[Any]:
    left_out = 0
    for number, (cut, seam) in enumerate(good):
        next_kind = good[number + 1][1][0] if number + 1 < len(good) else _RELATIONS
        if seam[0] == seam[2] == next_kind == _NODES and left_out + 1 < _NODE_PARTS:
            left_out += 1
        else:
            left_out = 0
            yield cut, seam
