"""What workers do with the parts of a file. Arrays go in and come out.

Whoever has nodes or ways of a file is meant by *part*; of what a step gives to the other parts it
makes a list, an item a part.
"""

from __future__ import annotations

from collections import Counter
from collections.abc import Sequence
from types import SimpleNamespace
from typing import Any

import numpy as np
import pyarrow as pa

from osm2roadnet._core import parts
from osm2roadnet.arrow import table_of
from osm2roadnet.distributed.ids import (
    Ids,
    concatenated,
    first_numbers,
    in_file_order,
    packed_degrees,
    packed_ids,
    split,
    unpacked_degrees,
    unpacked_ids,
)
from osm2roadnet.distributed.plan import Options, Place, Seam, Seams
from osm2roadnet.distributed.numbering import Array, Made, batches_of, ids_of, rows_by_part, there
from osm2roadnet.network import road_columns


def find_seam(place: Place) -> Seam | None:
    """The elements at both sides of a place in the file; None where there are none."""
    seam: Seam | None = parts.find_seam(place)
    return seam


def decode_ways(place: Place, options: Options, via_ways: Sequence[Ids], node_seams: Seams) -> Made:
    """The ways of a part that are roads by their tags, the nodes that they need, and the ends of
    the ways that turn restrictions go over.
    """
    batch, nodes, ends, count, highways, roads = parts.decode_ways(
        place, options, in_file_order(via_ways)
    )
    return {
        "batch": batch,
        "nodes": [packed_ids(some) for some in split(nodes, node_seams)],
        "ends": split(in_file_order([ends]), node_seams),
        "counts": {"ways": count, "highway_ways": highways, "roads_by_tags": roads},
    }


def find_nodes(place: Place, packed: Sequence[tuple[Array, ...]]) -> Made:
    """Where the nodes of a part are that ways need."""
    wanted = [unpacked_ids(some) for some in packed]
    nodes = in_file_order(wanted)
    lat, lon, count, limits, has_bounds = parts.decode_nodes(place, nodes)
    rows = [parts.find_rows(nodes, ids) for ids in wanted]
    return {
        "nodes": {"ids": nodes, "lat": lat, "lon": lon, "rows": rows},
        "positions": [
            (packed_degrees(lat[of_part]), packed_degrees(lon[of_part])) for of_part in rows
        ],
        "counts": {"nodes": count},
        "limits": (limits, has_bounds),
    }


def select_roads(batch: Array, positions: Sequence[tuple[Array, Array]]) -> Made:
    """The ways of a part that become roads, and how they use the nodes that were asked for."""
    lat, lon = (
        concatenated(map(unpacked_degrees, column), np.float64) for column in zip(*positions)
    )
    roads, is_used, uses, selected, missing = parts.select_roads(batch, lat, lon)
    ends = np.cumsum([len(some) for some, _ in positions])[:-1]
    return {
        "roads": {"batch": roads, "is used": is_used},
        "uses": np.split(uses, ends),
        "counts": {"selected_ways": selected, "missing_nodes": missing},
    }


def find_junctions(
    nodes: Made, uses: Sequence[Array], fixed: Sequence[Ids], is_joined: bool
) -> Made:
    """Which nodes of a part are junctions, and where roads may be joined."""
    ids, lat, lon, rows = (nodes[name] for name in ("ids", "lat", "lon", "rows"))
    fixed_rows = parts.find_rows(ids, in_file_order(fixed)) if is_joined else np.arange(len(ids))
    places = parts.find_places(len(ids), list(zip(rows, uses)), fixed_rows)
    junctions = np.flatnonzero(places)
    return {
        "places": [places[some] for some in rows],
        "junctions": (ids[junctions], lat[junctions], lon[junctions]),
        "counts": {"junctions": len(junctions)},
    }


def cut_ways(selected: Made, places: Sequence[Array]) -> Made:
    """The ways of a part with the places where they are cut, and how their roads go on."""
    used = concatenated(places, np.uint8)[selected["is used"].astype(bool)]
    batch, ways, road_ends, negative, roots, open_nodes, open_roads = parts.cut_ways(
        selected["batch"], used
    )
    return {
        "roads": {"batch": batch, "ways": ways, "ends": road_ends, "roots": roots},
        "counts": (negative, len(roots) - negative),
        "open": (open_nodes, open_roads),
    }


def join_chains(numbers: Made, open_roads: Sequence[tuple[Ids, Array]]) -> list[Ids]:
    """Of each road of a part that one of another part continues: the first road of them all."""
    ids = [ids_of(numbers, part, roads) for part, (_, roads) in enumerate(open_roads)]
    nodes = concatenated([nodes for nodes, _ in open_roads], np.int64)
    chains = parts.join_chains(nodes, concatenated(ids, np.int64))
    return np.split(chains, np.cumsum([len(some) for some in ids])[:-1])


def name_chains(
    part: int, numbers: Made, roads: Made, found: tuple[Ids, Array], firsts: Ids
) -> Ids:
    """Of each road of a part: the first of all that it may be joined with."""
    roots = roads["roots"]
    chains = ids_of(numbers, part, np.arange(len(roots)))
    chains[found[1]] = firsts
    named: Ids = chains[roots]
    return named


def send_roads(part: int, numbers: Made, roads: Made, chains: Ids) -> list[Array | None]:
    """The ways of the roads that are joined in each part: where the first road of a chain is."""
    return batches_of(part, numbers, roads, rows_by_part(numbers, chains))


def join_roads(options: Options, batches: Sequence[Array | None], seams: Seams) -> Made:
    """The joined roads of a part, all but their elevations, and what they bring to their nodes."""
    roads, elevations, ends = parts.part_network(options, there(batches))
    nodes = split(ends[0], seams)
    places = np.cumsum([len(some) for some in nodes])[:-1]
    others = [np.split(column, places) for column in ends[1:]]
    return {
        "roads": {
            "columns": roads,
            "elevations": elevations,
            "nodes": [np.unique(n) for n in nodes],
        },
        "ends": list(zip(map(packed_ids, nodes), *others)),
    }


def level_nodes(junctions: tuple[Ids, Array, Array], ends: Sequence[tuple[Any, ...]]) -> Made:
    """The nodes of a part that are in the network, with their elevations, those with negative ids
    behind the others; and for the roads of each part the elevations and rows of their nodes.
    """
    of_parts = [unpacked_ids(part[0]) for part in ends]
    kinds = (np.uint8, np.uint64, np.float64)
    columns = [concatenated(column, kind) for column, kind in zip(list(zip(*ends))[1:], kinds)]
    nodes, elevations = parts.mean_elevations(concatenated(of_parts, np.int64), *columns)
    ids, lat, lon = junctions
    rows = parts.find_rows(ids, nodes)
    order = np.argsort(nodes.view(np.uint64), kind="stable")
    positive = int(np.count_nonzero(nodes >= 0))
    row_of = np.empty(len(nodes), np.int64)
    row_of[order] = np.arange(len(nodes))
    row_of[nodes < 0] -= positive
    made = {"id": nodes, "lon": lon[rows], "lat": lat[rows], "elevation": elevations}
    wanted = [parts.find_rows(nodes, np.unique(some)) for some in of_parts]
    return {
        "nodes": (table_of({name: column[order] for name, column in made.items()}), positive),
        "sizes": (len(nodes) - positive, positive),
        "answers": [(elevations[some], row_of[some]) for some in wanted],
    }


def number_nodes(sizes: Sequence[tuple[int, int]]) -> Ids:
    """The rows of the first nodes of each part: those with negative ids, and the others."""
    # In the order of unsigned ids: the negative ones come last.
    negative, others = np.array(sizes, np.int64).sum(axis=0)
    firsts: Ids = first_numbers(sizes, 0) + np.array([others, -negative])
    return firsts


def profile_roads(
    roads: Made, answers: Sequence[tuple[Array, Array]], firsts: Ids, numbers: Made
) -> list[pa.Table | None]:
    """The finished roads, by the part that the first of those comes from that each was made of.

    Roads that continue one another but were not joined are in one place up to here.
    """
    nodes, elevations, rows = [], [], []
    for part, (ids, (heights, places)) in enumerate(zip(roads["nodes"], answers)):
        nodes.append(ids)
        elevations.append(heights)
        rows.append(places + np.where(ids < 0, firsts[part, 0], firsts[part, 1]))
    all_nodes = concatenated(nodes, np.int64)
    order = np.argsort(all_nodes)
    sorted_nodes = all_nodes[order]
    height, row = concatenated(elevations, np.float64)[order], concatenated(rows, np.int64)[order]
    columns = roads["columns"]
    table = columns["numbers"]
    start, end = (np.searchsorted(sorted_nodes, table[f"{name}_node"]) for name in ("start", "end"))
    offsets, points = columns["lines"]
    lines = parts.set_elevations(offsets, points, height[start], roads["elevations"], height[end])
    finished: Any = SimpleNamespace(
        roads={**table, "start": row[start], "end": row[end]},
        texts=columns["texts"],
        ways=columns["ways"],
        lines=(offsets, lines),
        lengths=lambda: parts.lengths(offsets, lines),
    )
    whole = table_of(road_columns(finished)[0])
    found = rows_by_part(numbers, table["id"])
    # The first part has a table in any case, for its columns.
    return [
        whole.take(pa.array(some)) if len(some) or part == 0 else None
        for part, some in enumerate(found)
    ]


def sort_roads(tables: Sequence[pa.Table | None], numbers: Made) -> tuple[pa.Table, int]:
    """The roads of a part by ascending id, and how many of them come from ways with negative ids."""
    there = [table for table in tables if table is not None]
    if not there:
        return pa.table({}), 0
    whole = pa.concat_tables(there).unify_dictionaries().combine_chunks()
    ids = whole["id"].to_numpy()
    last_negative = numbers["counts"][:, 0].sum()
    return whole.take(pa.array(np.argsort(ids))), int(np.count_nonzero(ids <= last_negative))


def count_rows(table: tuple[pa.Table, int]) -> tuple[int, int]:
    """How many rows of a table stand before a place, and how many behind it."""
    return table[1], table[0].num_rows - table[1]


def sum_up(
    counts: Sequence[dict[str, int]],
    limits: Sequence[tuple[tuple[float, float, float, float], bool]],
    roads: Sequence[tuple[int, int]],
    nodes: Sequence[tuple[int, int]],
    restrictions: Sequence[tuple[int, int]],
) -> Made:
    """What is known of the whole."""
    total: Counter[str] = Counter()
    for some in counts:
        total.update(some)
    boxes = [box for box, is_given in limits if is_given] or [box for box, _ in limits]
    known = [box for box in boxes if not np.isnan(box).any()]
    limit = known[0] if known else None
    if len(known) > 1:
        south, north, west, east = zip(*known)
        limit = (min(south), max(north), min(west), max(east))
    sizes = {"roads": roads, "nodes": nodes, "restrictions": restrictions}
    return {"counts": dict(total), "limits": limit, "sizes": sizes}


def check(place: Place) -> None:
    """Raises what is wrong with a part."""
    parts.decode_nodes(place, np.empty(0, np.int64))
