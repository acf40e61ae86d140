"""The network that `osm2roadnet.distributed.read` returns."""

from __future__ import annotations

import math
from collections.abc import Iterator, Sequence
from functools import cached_property
from typing import TYPE_CHECKING, Any

import dask.dataframe as dd
from distributed import Client, as_completed, get_client

from osm2roadnet.distributed import frames, steps
from osm2roadnet.distributed.graph import Tasks, graph_of
from osm2roadnet.distributed.plan import Options, Plan, plan_of, possible_cuts
from osm2roadnet.distributed.parquet import write_parquet
from osm2roadnet.errors import ReadError

if TYPE_CHECKING:
    from osm2roadnet.network import StrPath


class Rows:
    """A table whose parts are with the workers.

    Attributes:
        parts: futures of tables, and which rows of each: the parts of the whole, in their order.
        count: how many rows there are.
    """

    def __init__(
        self, futures: Sequence[Any], sizes: Sequence[tuple[int, int]], last: bool
    ) -> None:
        """`sizes` are of the rows that stand first in each table, and of those behind them.

        Of all tables the ones in the reverse order of the tables, which `last` says are the rows
        behind or the first, stand behind or before all the others.
        """
        first = [(future, 0, size[0]) for future, size in zip(futures, sizes)]
        second = [(future, size[0], sum(size)) for future, size in zip(futures, sizes)]
        whole = first + second[::-1] if last else first[::-1] + second
        # Without any row there are still the columns, which the first table has.
        self.parts = [part for part in whole if part[1] < part[2]] or [(futures[0], 0, 0)]
        self.count = sum(map(sum, sizes))


class Network:
    """A road network, distributed over a cluster. Its length is the number of roads.

    It holds the memory of the workers until it is closed, as ``with`` does it, or forgotten.

    Attributes:
        source: what was read.
        join, oneway: how it was read.
        client: of the cluster.
        limits: the least and greatest latitude, then the same of longitude; None if unknown.
        reference: latitude, longitude and altitude of the origin of the network.
        counts: how many elements there were in the file and what became of them.
        account: how many ways with the tag ``highway`` there were, how many were imported, and how
            many were not for each reason, under the names that the report has for them.
    """

    def __init__(self, source: str, options: Options, client: Any, partition_size: int) -> None:
        self.source = source
        self.join, self.oneway, _ = options
        cuts = possible_cuts(source, partition_size)
        self._own: Any = None
        self.client: Any = client or _current_client()
        if self.client is None:
            self.client = self._own = _new_client()
        try:
            self._read(options, cuts)
        except BaseException:
            self.close()
            raise

    def _read(self, options: Options, cuts: Any) -> None:
        seams = self.client.gather(self._each("look at parts", steps.find_seam, cuts))
        plan = plan_of(self.source, cuts, seams)
        if not plan.is_sorted:
            self._raise_first_error(plan)
        graph, outcome = graph_of(plan, options)
        keys = [outcome.roads, outcome.nodes, outcome.restrictions, outcome.facts]
        made = self.client.get(graph, keys, sync=False)
        roads, nodes, restrictions, facts = made
        try:
            for future in _each_done([*roads, *nodes, *restrictions, facts]):
                if future.status == "error":
                    future.result()
        except ReadError:
            self._raise_first_error(plan)
            raise
        self._take_facts(facts.result())
        self._roads = Rows(roads, self._sizes["roads"], last=False)
        self._nodes = Rows(nodes, self._sizes["nodes"], last=True)
        self._restrictions = Rows(restrictions, self._sizes["restrictions"], last=False)

    def _take_facts(self, facts: dict[str, Any]) -> None:
        self.limits: tuple[float, float, float, float] | None = facts["limits"]
        south, north, west, east = self.limits or (math.nan,) * 4
        self.reference = ((south + north) * 0.5, (west + east) * 0.5, 0.0)
        self._sizes = facts["sizes"]
        counts = facts["counts"]
        self.counts: dict[str, int] = {
            **{name: counts[name] for name in ("nodes", "ways", "relations", "highway_ways")},
            "selected_ways": counts["selected_ways"],
            "joined_nodes": counts["junctions"] - sum(map(sum, self._sizes["nodes"])),
        }
        not_whole = counts["missing_nodes"] + counts["selected_ways"]
        self.account: dict[str, int] = {
            "highwayWays": counts["highway_ways"],
            "imported": counts["selected_ways"],
            "notARoad": counts["highway_ways"] - counts["roads_by_tags"],
            "missingNodes": counts["missing_nodes"],
            "fewerThanTwoNodes": counts["roads_by_tags"] - not_whole,
        }

    def _raise_first_error(self, plan: Plan) -> None:
        """A file that is bad in several places is refused for the first of them."""
        places = [part.place for part in plan.all]
        for future in self._each("check parts", steps.check, places):
            future.result()

    def _each(self, name: str, function: Any, items: Sequence[Any]) -> Any:
        tasks = Tasks()
        keys = [tasks.add(name, function, item) for item in items]
        return self.client.get(tasks.graph, keys, sync=False)

    @cached_property
    def roads(self) -> dd.DataFrame:
        """The columns of `osm2roadnet.Network.roads`, by ascending id. ``geometry`` is well-known
        binary with elevations, and texts and lists are Arrow's.
        """
        return frames.frame(self._roads)

    @cached_property
    def nodes(self) -> dd.DataFrame:
        """The columns of `osm2roadnet.Network.nodes`, in the same order."""
        return frames.frame(self._nodes)

    @cached_property
    def restrictions(self) -> dd.DataFrame:
        """The columns of `osm2roadnet.Network.restrictions`, in the same order."""
        return frames.frame(self._restrictions)

    def to_parquet(self, folder: StrPath, *, overwrite: bool = False) -> None:
        """Writes GeoParquet 1.1: the folders ``roads`` and ``nodes``, of a file for each partition,
        along a space-filling curve, so that readers of a region leave out most of them; and
        ``restrictions`` without geometries.

        The workers write, so that they must find the folder under this name. It is there whole or
        not at all.

        Raises:
            FileExistsError: if it exists, unless `overwrite` is true.
        """
        write_parquet(self, folder, overwrite)

    def close(self) -> None:
        """Gives back the workers' memory, and ends the cluster that was made for this network."""
        for name in ("roads", "nodes", "restrictions", "_roads", "_nodes", "_restrictions"):
            self.__dict__.pop(name, None)
        if self._own is not None:
            self._own.close()
            self._own = None

    def __enter__(self) -> Network:
        return self

    def __exit__(self, *exception: object) -> None:
        self.close()

    def __len__(self) -> int:
        return self._roads.count

    def __bool__(self) -> bool:
        return True

    def __repr__(self) -> str:
        return (
            f"<Distributed network of {self.source}: {self._nodes.count:,} nodes, {len(self):,} "
            f"roads, {self._restrictions.count:,} turn restrictions>"
        )


# Dask's types are not complete.
_new_client: Any = Client
_each_done: Any = as_completed


def _current_client() -> Any:
    try:
        return get_client()
    except ValueError:
        return None
