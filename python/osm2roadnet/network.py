"""The network that `read` returns."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import numpy as np

from osm2roadnet import files, graphs, map_page, pictures
from osm2roadnet.columns import Columns, Lists, texts_of, untaken
from osm2roadnet.errors import require
from osm2roadnet.report import Report

if TYPE_CHECKING:
    import os

    import geopandas as gpd
    import igraph as ig
    import networkx as nx
    import pyarrow as pa
    import scipy.sparse as sp
    from matplotlib.axes import Axes
    from numpy.typing import ArrayLike, NDArray

    from osm2roadnet._core import Import

    StrPath = str | os.PathLike[str]


class Network:
    """A road network: nodes at junctions and ends, roads between them, turn restrictions.

    `read` makes it. It never changes: its arrays are read-only, and live for as long as somebody
    holds them. Its length is the number of roads. It can be pickled and compared.

    Attributes:
        nodes: columns, one row a node:

            - ``id``: int64, the OpenStreetMap node's
            - ``lon``, ``lat``: float64, degrees on WGS 84
            - ``elevation``: float64, metres above the ground, from the layers of bridges and
              tunnels; may be NaN

        roads: columns, one row a road:

            - ``id``: int64, ascending; where roads were joined some numbers are missing
            - ``name``, ``highway``: `Texts`, the tags
            - ``direction``: uint8, 1 from start to end node, 2 from end to start, 3 both
            - ``start_node``, ``end_node``: int64, ids of nodes, in the order of the centre line
            - ``start``, ``end``: int64, their positions in ``nodes``
            - ``length``: float64, metres along the centre line; computed when first asked for
            - ``weight``: float64, how many pieces of road were joined into it
            - ``osm_way_ids``: `Lists` of int64, the OpenStreetMap ways it was made of, ascending
            - one for each tag that was asked for: `Texts`; see `tags`
            - ``geometry``: `Lists` of points, the centre line from start to end: float64 of the
              shape (points, 3), longitude, latitude, elevation

        source: what was read.
        join, oneway: how it was read.
        limits: the least and greatest latitude, then the same of longitude; None if unknown.
        reference: latitude, longitude and altitude of the origin of the network.
        counts: how many elements there were in the file and what became of them.

    >>> import osm2roadnet as rn
    >>> net = rn.read("examples/harbour-town.osm")
    >>> net
    <Network of examples/harbour-town.osm: 99 nodes, 130 roads, 0 turn restrictions>
    >>> float(net.roads["length"].sum().round())
    21523.0
    """

    __hash__ = None  # type: ignore[assignment]

    def __init__(self, core: Import, source: str, join: str, oneway: str) -> None:
        self.source = source
        self.join = join
        self.oneway = oneway
        self.nodes = Columns(len(core.nodes["id"]), core.nodes)
        self.roads, self._tags = road_columns(core)
        self.limits = core.limits
        self.reference = core.reference
        self.counts = core.counts
        self.against_ways: NDArray[np.uint8] = core.roads["reversed"]
        self._core: Import | None = core
        self._restrictions: Columns | None = None
        self._report: Report | None = None

    @property
    def tags(self) -> list[str]:
        """The names of the columns of ``roads`` that are tags.

        One that is like the name of another column has ``osm_`` before it.
        """
        return list(self._tags)

    @property
    def restrictions(self) -> Columns:
        """Columns, one row a turn restriction.

        ``restriction``, ``vehicles``, ``condition``, ``except``: `Texts`, as tagged;
        ``from_road_id``, ``to_road_id``, ``osm_relation_id``: int64; ``from_direction``,
        ``to_direction``: uint8, how these roads are travelled; ``via_node_ids``,
        ``via_road_ids``: `Lists` of int64, the nodes on the way and the roads between them.
        """
        if self._restrictions is None:
            self._restrictions = restriction_columns(self.imported("the table of restrictions").restrictions)
        return self._restrictions

    @property
    def report(self) -> Report:
        """What became of each way, and what to check; computed when first asked for.

        Raises:
            RuntimeError: if the network was unpickled and nobody had asked before.
        """
        if self._report is None:
            core = self.imported("a report that nobody has asked for")
            self._report = Report(core.report())
        return self._report

    def imported(self, what: str) -> Import:
        """The import, which a network that was unpickled lacks."""
        if self._core is None:
            raise RuntimeError(
                f"{what} needs the import, which pickling leaves out: read it once more"
            )
        return self._core

    def node_coordinates(self) -> NDArray[np.float64]:
        """Longitude, latitude and elevation of each node: the shape is (nodes, 3)."""
        return np.column_stack([self.nodes[name] for name in ("lon", "lat", "elevation")])

    def node_columns(self) -> dict[str, Any]:
        """The columns of nodes that the exchange formats have."""
        return {"node_id": self.nodes["id"]}

    def road_columns(self) -> dict[str, Any]:
        """The columns of roads that the exchange formats have, under their names and in order."""
        names = "name highway direction start_node end_node length osm_way_ids".split()
        columns = {name: self.roads[name] for name in names}
        tags = {known: self.roads[name] for name, known in self._tags.items()}
        return {"road_id": self.roads["id"], **columns, **tags}

    def to_geopandas(self) -> tuple[gpd.GeoDataFrame, gpd.GeoDataFrame]:
        """Nodes and roads as GeoDataFrames in EPSG:4326, with elevations.

        Their indexes are the ids of nodes and roads; the columns are those of a GeoPackage that
        the program writes. Needs ``osm2roadnet[geo]``.
        """
        frames: tuple[gpd.GeoDataFrame, gpd.GeoDataFrame] = require(
            "osm2roadnet.frames", "geo"
        ).frames(self)
        return frames

    def to_networkx(self) -> nx.MultiDiGraph[int]:
        """A graph that OSMnx takes as its own.

        A two-way road is two edges. Nodes are their ids in OpenStreetMap and have ``x``, ``y``,
        ``street_count`` and ``elevation``. Edges have ``osmid`` (int, or a list of them),
        ``road_id``, ``highway``, ``oneway``, ``reversed``, ``length`` in metres, ``geometry``
        (a LineString in the edge's own direction), and ``name`` and tags where there are any.
        ``oneway`` being taken, the tag of that name is in ``osm_oneway``. Needs
        ``osm2roadnet[graphs]``.
        """
        return graphs.to_networkx(self)

    def to_igraph(self) -> ig.Graph:
        """The same as a directed graph of igraph, without geometries.

        Vertices have the order of ``nodes``, and their ids as ``osmid``; what an edge lacks is
        None. Needs ``osm2roadnet[graphs]``.
        """
        return graphs.to_igraph(self)

    def to_csr(
        self, weight: str | ArrayLike | None = "length"
    ) -> tuple[sp.csr_array[Any, tuple[int, int]], NDArray[np.int64]]:
        """A matrix of the costs from node to node, and the ids of its rows and columns.

        Args:
            weight: a column of ``roads``, or one number a road, or None for 1 each. Of several
                edges from one node to another the matrix has the one that costs least.

        Needs ``osm2roadnet[graphs]``.

        Raises:
            ValueError: if there are not as many numbers as roads.
        """
        return graphs.to_csr(self, weight)

    def to_arrow(self) -> tuple[pa.Table, pa.Table]:
        """Nodes and roads as Arrow tables.

        Columns of roads are over the same memory; texts are dictionaries, and ``geometry`` is
        GeoArrow, with elevations. Needs ``osm2roadnet[arrow]``.
        """
        tables: tuple[pa.Table, pa.Table] = require("osm2roadnet.arrow", "arrow").tables(self)
        return tables

    def to_parquet(
        self, roads: StrPath, nodes: StrPath | None = None, *, overwrite: bool = False
    ) -> None:
        """Writes roads, and nodes if there is a second path, as GeoParquet 1.1.

        The columns are those of `to_geopandas`, ``osm_way_ids`` as a list, and the box around
        each geometry, by which readers leave out what they do not need.
        Needs ``osm2roadnet[arrow]``.

        Raises:
            FileExistsError: if a file exists, unless `overwrite` is true.
            ValueError: if both paths are the same.
        """
        require("osm2roadnet.parquet", "arrow").write_parquet(self, roads, nodes, overwrite)

    def to_file(self, path: StrPath, format: str | None = None, *, overwrite: bool = False) -> None:
        """Writes the network as the program does; docs/formats.md has each format.

        Args:
            path: where to; it is there whole or not at all.
            format: ``gpkg``, ``geojson``, ``geojsonl``, ``fgb``, ``gmns``, ``graphml``, ``html``
                or ``json``; by default what the path ends in. ``gpkg`` and ``fgb`` need
                ``osm2roadnet[files]``.
            overwrite: whether to replace what is there.

        Raises:
            ValueError: if there is no such format.
            FileExistsError: if the path exists, unless `overwrite` is true.
            OSError: if it can't be written.
            RuntimeError: if the network was unpickled, and the format is neither ``gpkg`` nor
                ``fgb``.
        """
        files.to_file(self, path, format, overwrite)

    def plot(
        self, ax: Axes | None = None, *, color: str | None = None, oneways: bool = False
    ) -> Axes:
        """Draws the roads with Matplotlib, in widths and colours of their classes.

        Args:
            ax: where to; by default a new figure.
            color: one for all roads, as a ground to draw on.
            oneways: whether to draw arrows on one-way roads.

        Needs ``osm2roadnet[plot]``.
        """
        axes: Axes = require("osm2roadnet.plots", "plot").plot(self, ax, color, oneways)
        return axes

    def explore(
        self, path: StrPath | None = None, *, show: bool | None = None, overwrite: bool = False
    ) -> map_page.MapPage:
        """Writes the network as a map to look at, and opens it in a browser.

        One page that needs nothing else: roads and nodes to ask, streets to search, the report to
        go through; docs/map-page.md has more. A notebook shows what this returns.

        Args:
            path: where to write it; by default a new file among the temporary ones.
            show: whether to open a browser; by default everywhere but in notebooks.
            overwrite: whether to replace what is there.

        Raises:
            FileExistsError, OSError, RuntimeError: as `to_file`.

        Warns:
            UserWarning: if there are more than 300,000 roads, which few browsers show with ease.
        """
        return map_page.explore(self, path, show, overwrite)

    def __len__(self) -> int:
        return self.roads.rows

    def __bool__(self) -> bool:
        return True

    def __eq__(self, other: object) -> bool:
        """Whether nodes, roads and restrictions are the same, to the last bit."""
        if not isinstance(other, Network):
            return NotImplemented
        return (
            self.nodes == other.nodes
            and self.roads == other.roads
            and self.restrictions == other.restrictions
        )

    def __copy__(self) -> Network:
        return self

    def __deepcopy__(self, memo: dict[int, Any]) -> Network:
        return self  # nobody can change it

    def __getstate__(self) -> dict[str, Any]:
        return {**self.__dict__, "_core": None, "_restrictions": self.restrictions}

    def __repr__(self) -> str:
        return (
            f"<Network of {self.source}: {self.nodes.rows:,} nodes, {len(self):,} roads, "
            f"{self.restrictions.rows:,} turn restrictions>"
        )

    def _repr_html_(self) -> str:
        return pictures.html(self)


def road_columns(core: Import) -> tuple[Columns, dict[str, str]]:
    """The columns, and of the tags what the exchange formats call them."""
    roads, texts = core.roads, texts_of(core.texts)
    columns = {
        "id": roads["id"],
        "name": texts.pop("name"),
        "highway": texts.pop("highway"),
        **{name: roads[name] for name in ("direction", "start_node", "end_node", "start", "end")},
        "length": core.lengths,
        "weight": roads["weight"],
        "osm_way_ids": Lists(*core.ways),
    }
    tags = untaken(texts, columns)
    columns |= {name: texts[known] for name, known in tags.items()}
    columns["geometry"] = Lists(*core.lines)
    return Columns(len(roads["id"]), columns), tags


def restriction_columns(columns: dict[str, Any]) -> Columns:
    texts = texts_of({name: columns[name] for name in _RESTRICTION_TEXTS})
    lists = {f"{name[:-1]}_ids": Lists(*columns[name]) for name in ("via_nodes", "via_roads")}
    made: dict[str, Any] = {**columns, **texts, **lists}
    return Columns(len(columns["from_road_id"]), {name: made[name] for name in _RESTRICTIONS})


_RESTRICTION_TEXTS = ("restriction", "vehicles", "condition", "except")
_RESTRICTIONS = (  # in the order of the exchange formats
    *_RESTRICTION_TEXTS,
    "from_road_id",
    "from_direction",
    "via_node_ids",
    "via_road_ids",
    "to_road_id",
    "to_direction",
    "osm_relation_id",
)
