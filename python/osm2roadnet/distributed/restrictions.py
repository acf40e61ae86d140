"""Turn restrictions: their relations, and the roads of the ways that they name."""

from __future__ import annotations

from collections.abc import Sequence

import numpy as np
import pyarrow as pa

from osm2roadnet._core import parts
from osm2roadnet.arrow import table_of
from osm2roadnet.distributed.ids import Ids, concatenated, in_file_order, split
from osm2roadnet.distributed.numbering import Array, Made, batches_of, there
from osm2roadnet.distributed.plan import Options, Place, Seams
from osm2roadnet.network import restriction_columns


def decode_relations(place: Place, options: Options, node_seams: Seams, way_seams: Seams) -> Made:
    """The turn restrictions of a part, and whom they name in which parts."""
    batch, via_nodes, ways, via_ways, count = parts.decode_relations(place, options)
    return {
        "batch": batch,
        "via nodes": split(in_file_order([via_nodes]), node_seams),
        "ways": split(in_file_order([ways]), way_seams),
        "via ways": split(in_file_order([via_ways]), way_seams),
        "counts": {"relations": count},
    }


def chains_of_ways(roads: Made, chains: Ids, ways: Sequence[Ids]) -> list[Ids]:
    """The chains of roads that ways of a part are in, of which turn restrictions speak."""
    ends = np.concatenate([[0], roads["ends"]]).astype(np.int64)
    found = []
    for some in ways:
        rows = np.searchsorted(roads["ways"], some)
        is_road = (rows < len(roads["ways"])) & (np.append(roads["ways"], 0)[rows] == some)
        rows = rows[is_road]
        ranges = [np.arange(ends[row], ends[row + 1]) for row in rows.tolist()]
        found.append(np.unique(chains[concatenated(ranges, np.int64)]))
    return found


def gather_chains(found: Sequence[Ids]) -> Ids:
    """The same of the ways of all parts."""
    chains: Ids = np.unique(concatenated(found, np.int64))
    return chains


def send_chains(
    part: int, numbers: Made, roads: Made, chains: Ids, wanted: Sequence[Ids]
) -> list[Array | None]:
    """The ways of the roads of these chains."""
    sent = [np.flatnonzero(np.isin(chains, some)) for some in wanted]
    return batches_of(part, numbers, roads, sent)


def map_restrictions(
    options: Options, batches: Sequence[Array | None], relations: Array
) -> tuple[pa.Table, int]:
    """The turn restrictions of a part on the network, and how many of them have negative ids."""
    columns = restriction_columns(parts.part_restrictions(options, there(batches), relations))
    return table_of(columns), int(np.count_nonzero(columns["osm_relation_id"] < 0))
