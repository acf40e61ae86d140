"""Directed graphs: a two-way road is two edges, one each way."""

from __future__ import annotations

from collections import deque
from itertools import repeat
from operator import setitem
from typing import TYPE_CHECKING, Any

import numpy as np

from osm2roadnet.collector import paused
from osm2roadnet.columns import Columns, Lists, Texts, untaken
from osm2roadnet.errors import require
from osm2roadnet.geo import shapely_lines

if TYPE_CHECKING:
    from collections.abc import Sequence

    import igraph as ig
    import networkx as nx
    import scipy.sparse as sp
    from numpy.typing import ArrayLike, NDArray

    from osm2roadnet.network import Network

_AGAINST, _BOTH = 1, 2  # the ways that a road was made of run against it, or some do


class Edges:
    """The edges of a network: those that run as their roads are drawn, then the others.

    Attributes:
        roads: for each edge the position of its road in the columns.
        is_backward: whether it runs from the road's end to its start.
        sources, targets: the positions of its nodes.
    """

    def __init__(self, network: Network) -> None:
        roads = network.roads
        directions = roads["direction"]
        forward, backward = (np.flatnonzero(directions & bit) for bit in (1, 2))
        start, end = roads["start"], roads["end"]
        self.roads = np.concatenate([forward, backward])
        self.is_backward = np.arange(len(self.roads)) >= len(forward)
        self.sources = np.concatenate([start[forward], end[backward]])
        self.targets = np.concatenate([end[forward], start[backward]])

    def street_counts(self, nodes: int) -> NDArray[np.int64]:
        """How many streets meet at each node, as OSMnx counts them: two edges that run against
        each other are one, and so are all loops at a node, which begin and end there."""
        low, high = np.minimum(self.sources, self.targets), np.maximum(self.sources, self.targets)
        pairs, pair = np.unique(low * np.int64(nodes) + high, return_inverse=True)
        is_up = self.sources == low
        up, down = (np.bincount(pair[way], minlength=len(pairs)) for way in (is_up, ~is_up))
        streets = np.maximum(up, down)
        low, high = pairs // max(nodes, 1), pairs % max(nodes, 1)
        streets[low == high] = 1
        ends = np.bincount(low, streets, nodes) + np.bincount(high, streets, nodes)
        return ends.astype(np.int64)


def _values(objects: Sequence[Any]) -> NDArray[np.object_]:
    """An array of these objects, which may be lists."""
    array = np.empty(len(objects), dtype=object)
    array[:] = objects
    return array


def _way_ids(network: Network, roads: NDArray[np.intp]) -> list[Any]:
    """The id of each road's way, or a list of them, which is nobody else's."""
    lists = network.roads["osm_way_ids"]
    ids = lists.values.astype(object)
    begins, ends = lists.offsets[roads], lists.offsets[roads + 1]
    first = ids[begins]
    many = np.flatnonzero(ends - begins > 1)
    slices = map(slice, begins[many].tolist(), ends[many].tolist())
    first[many] = _values(list(map(ids.tolist().__getitem__, slices)))
    return list(first)


def _texts(network: Network, texts: Texts, roads: NDArray[np.intp]) -> list[Any]:
    """A text for each road; a list of its own where ways with different texts were joined."""
    column = texts[roads].to_numpy()
    if network.join == "all":
        is_list = np.array([*(";" in text for text in texts.categories), False])
        is_joined = network.roads["osm_way_ids"].sizes[roads] > 1
        joined = np.flatnonzero(is_joined & is_list[texts.codes[roads]])
        column[joined] = _values([text.split(";") for text in column[joined]])
    return list(column)


def _reversed(network: Network, edges: Edges) -> list[Any]:
    """Whether an edge runs against its way, as OSMnx has it: False for one-way roads."""
    drawn = network.against_ways[edges.roads]
    is_both_ways = network.roads["direction"][edges.roads] == 3
    is_reversed = is_both_ways & ((drawn == _AGAINST) != edges.is_backward)
    column = is_reversed.astype(object)
    both = np.flatnonzero(is_both_ways & (drawn == _BOTH))
    column[both] = _values([[False, True] for _ in both])
    return list(column)


def edge_attributes(
    network: Network, edges: Edges
) -> tuple[dict[str, list[Any]], dict[str, Texts]]:
    """What the edges have, and what only some of them have, by the names that OSMnx uses."""
    roads = network.roads
    always = {
        "osmid": _way_ids(network, edges.roads),
        "road_id": roads["id"][edges.roads].tolist(),
        "highway": _texts(network, roads["highway"], edges.roads),
        "oneway": (roads["direction"][edges.roads] != 3).tolist(),
        "reversed": _reversed(network, edges),
        "length": roads["length"][edges.roads].tolist(),
    }
    taken = {*always, "geometry", "key", "source", "target", "u", "v", "weight"}
    tags = {name: roads[tag] for name, tag in untaken(network.tags, taken).items()}
    return always, {"name": roads["name"], **tags}


def _dicts(columns: dict[str, list[Any]]) -> list[dict[str, Any]]:
    """A dictionary for each row."""
    return list(map(dict, map(zip, repeat(list(columns)), zip(*columns.values()))))


def _add(dicts: list[dict[str, Any]], name: str, rows: NDArray[np.intp], values: list[Any]) -> None:
    """Adds a value to some of the dictionaries."""
    deque(map(setitem, map(dicts.__getitem__, rows.tolist()), repeat(name), values), maxlen=0)


def to_networkx(network: Network) -> nx.MultiDiGraph[int]:
    """See `Network.to_networkx`."""
    from importlib.metadata import version

    networkx = require("networkx", "graphs")
    nodes, edges = network.nodes, Edges(network)
    graph: nx.MultiDiGraph[int] = networkx.MultiDiGraph(
        crs="epsg:4326", simplified=True, created_with=f"osm2roadnet {version('osm2roadnet')}"
    )
    with paused():
        ids = nodes["id"].astype(object)
        graph.add_nodes_from(zip(ids.tolist(), _node_dicts(nodes, edges)))
        sources, targets = ids[edges.sources].tolist(), ids[edges.targets].tolist()
        graph.add_edges_from(zip(sources, targets, _edge_dicts(network, edges)))
    return graph


def _node_dicts(nodes: Columns, edges: Edges) -> list[dict[str, Any]]:
    points = _dicts(
        {
            "x": nodes["lon"].tolist(),
            "y": nodes["lat"].tolist(),
            "street_count": edges.street_counts(nodes.rows).tolist(),
        }
    )
    known = np.flatnonzero(np.isfinite(nodes["elevation"]))
    _add(points, "elevation", known, nodes["elevation"][known].tolist())
    return points


def _edge_dicts(network: Network, edges: Edges) -> list[dict[str, Any]]:
    shapely = require("shapely", "graphs")
    drawn = network.roads["geometry"]
    flat = Lists(drawn.offsets, np.ascontiguousarray(drawn.values[:, :2]))
    lines = shapely_lines(flat)[edges.roads]
    lines[edges.is_backward] = shapely.reverse(lines[edges.is_backward])
    always, sometimes = edge_attributes(network, edges)
    attributes = _dicts({**always, "geometry": lines.tolist()})
    for name, texts in sometimes.items():
        rows = np.flatnonzero(texts.codes[edges.roads] >= 0)
        _add(attributes, name, rows, _texts(network, texts, edges.roads[rows]))
    return attributes


def to_igraph(network: Network) -> ig.Graph:
    """See `Network.to_igraph`."""
    igraph = require("igraph", "graphs")
    edges = Edges(network)
    always, sometimes = edge_attributes(network, edges)
    nodes = network.nodes
    return igraph.Graph(
        n=nodes.rows,
        edges=np.column_stack([edges.sources, edges.targets]),
        directed=True,
        vertex_attrs={
            "osmid": nodes["id"].tolist(),
            "x": nodes["lon"].tolist(),
            "y": nodes["lat"].tolist(),
        },
        edge_attrs={
            **always,
            **{
                name: _texts(network, texts, edges.roads) for name, texts in sometimes.items()
            },
        },
    )


def to_csr(
    network: Network, weight: str | ArrayLike | None
) -> tuple[sp.csr_array[Any, tuple[int, int]], NDArray[np.int64]]:
    """See `Network.to_csr`."""
    sparse = require("scipy.sparse", "graphs")
    edges = Edges(network)
    if weight is None:
        weight = np.ones(len(network))
    values = np.asarray(network.roads[weight] if isinstance(weight, str) else weight, dtype=float)
    if values.shape != (len(network),):
        raise ValueError(f"weight has the shape {values.shape}, not that of the roads")
    costs = values[edges.roads]
    # Of several edges from one node to another the cheapest alone: SciPy would add them up.
    order = np.lexsort([costs, edges.targets, edges.sources])
    sources, targets = edges.sources[order], edges.targets[order]
    is_first = np.ones(len(order), dtype=bool)
    is_first[1:] = (np.diff(sources) != 0) | (np.diff(targets) != 0)
    size = network.nodes.rows
    starts = np.concatenate([[0], np.cumsum(np.bincount(sources[is_first], minlength=size))])
    matrix = sparse.csr_array(
        (costs[order][is_first], targets[is_first], starts), shape=(size, size)
    )
    return matrix, network.nodes["id"]
