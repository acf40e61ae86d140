"""The steps of a distributed import and what they need of one another, as a graph for Dask."""

from __future__ import annotations

import operator
import uuid
from collections import Counter
from collections.abc import Callable, Sequence
from dataclasses import dataclass
from typing import Any

from osm2roadnet.distributed import numbering, restrictions, steps
from osm2roadnet.distributed.plan import Options, Plan

Key = tuple[Any, ...]


class Tasks:
    """A graph of Dask's, whose names a person understands."""

    def __init__(self) -> None:
        self.graph: dict[Key, Any] = {}
        self._token = uuid.uuid4().hex
        self._counts: Counter[str] = Counter()

    def add(self, name: str, function: Callable[..., Any], *arguments: Any) -> Key:
        """A task; arguments may be keys of others, and lists of these."""
        key = (f"{name}-{self._token}", self._counts[name])
        self._counts[name] += 1
        self.graph[key] = (function, *arguments)
        return key

    def take(self, name: str, key: Key, item: Any) -> Key:
        """What stands under a name, or at a place, in what a task has made."""
        return self.add(name, operator.getitem, key, item)

    def exchange(
        self, name: str, senders: Sequence[Key], item: str | None, receivers: int
    ) -> list[list[Key]]:
        """For each receiver what each sender has for it."""
        if item is not None:
            senders = [self.take(name, key, item) for key in senders]
        return [[self.take(name, key, r) for key in senders] for r in range(receivers)]


@dataclass
class Outcome:
    """The keys of what comes out."""

    roads: list[Key]  # each: columns, and how many of the rows are of ways with negative ids
    nodes: list[Key]
    restrictions: list[Key]
    facts: Key


def graph_of(plan: Plan, options: Options) -> tuple[dict[Key, Any], Outcome]:
    """All tasks of an import."""
    return _Import(plan, options).build()


class _Import:
    """Makes the tasks stage by stage; each leaves keys for later ones, of an item a part."""

    def __init__(self, plan: Plan, options: Options) -> None:
        self.plan = plan
        self.options = options
        self.tasks = Tasks()
        self.ways = range(len(plan.ways))
        self.nodes = range(len(plan.nodes))
        self.node_seams = self.tasks.add("last nodes of parts", _same, plan.node_seams)
        self.way_seams = self.tasks.add("last ways of parts", _same, plan.way_seams)

    def build(self) -> tuple[dict[Key, Any], Outcome]:
        self._decode()
        self._select()
        self._cut()
        self._chain()
        roads, nodes = self._join()
        turns = self._restrict()
        counted = (*self.relations, *self.decoded, *self.found, *self.selected, *self.junctions)
        sizes = [
            [self.tasks.add("count rows", steps.count_rows, key) for key in keys]
            for keys in (roads, nodes, turns)
        ]
        facts = self.tasks.add(
            "sum up",
            steps.sum_up,
            self._take("counts", counted, "counts"),
            self._take("limits", self.found, "limits"),
            *sizes,
        )
        return self.tasks.graph, Outcome(roads, nodes, turns, facts)

    def _decode(self) -> None:
        tasks, options = self.tasks, self.options
        self.relations = [
            tasks.add(
                "decode restrictions",
                restrictions.decode_relations,
                part.place,
                options,
                self.node_seams,
                self.way_seams,
            )
            for part in self.plan.relations
        ]
        via = tasks.exchange("ways of restrictions", self.relations, "via ways", len(self.ways))
        self.decoded = [
            tasks.add("decode ways", steps.decode_ways, part.place, options, some, self.node_seams)
            for part, some in zip(self.plan.ways, via)
        ]
        wanted = tasks.exchange("ids of nodes", self.decoded, "nodes", len(self.nodes))
        self.found = [
            tasks.add("find nodes", steps.find_nodes, part.place, some)
            for part, some in zip(self.plan.nodes, wanted)
        ]

    def _select(self) -> None:
        positions = self.tasks.exchange(
            "positions of nodes", self.found, "positions", len(self.ways)
        )
        self.selected = [
            self.tasks.add("select roads", steps.select_roads, batch, some)
            for batch, some in zip(self._take("ways", self.decoded, "batch"), positions)
        ]

    def _cut(self) -> None:
        tasks, join = self.tasks, self.options[0]
        uses = tasks.exchange("uses of nodes", self.selected, "uses", len(self.nodes))
        # Of compatible roads none are joined where turns are restricted.
        restricted = [
            tasks.exchange("nodes of restrictions", keys, item, len(self.nodes))
            for keys, item in ((self.decoded, "ends"), (self.relations, "via nodes"))
        ]
        self.junctions = [
            tasks.add(
                "find junctions",
                steps.find_junctions,
                table,
                uses[q],
                restricted[0][q] + restricted[1][q] if join == "compatible" else [],
                join != "none",
            )
            for q, table in enumerate(self._take("nodes", self.found, "nodes"))
        ]
        places = tasks.exchange("junctions", self.junctions, "places", len(self.ways))
        self.cut = [
            tasks.add("cut ways", steps.cut_ways, batch, some)
            for batch, some in zip(self._take("roads by ways", self.selected, "roads"), places)
        ]

    def _chain(self) -> None:
        tasks = self.tasks
        sizes = self._take("numbers of roads", self.cut, "counts")
        self.numbers = tasks.add("number roads", numbering.number_roads, sizes)
        open_roads = self._take("open ends", self.cut, "open")
        firsts = tasks.add("join chains", steps.join_chains, self.numbers, open_roads)
        self.roads = self._take("pieces", self.cut, "roads")
        self.chains = [
            tasks.add(
                "name chains",
                steps.name_chains,
                p,
                self.numbers,
                self.roads[p],
                open_roads[p],
                tasks.take("chains", firsts, p),
            )
            for p in self.ways
        ]

    def _join(self) -> tuple[list[Key], list[Key]]:
        tasks, ways = self.tasks, len(self.ways)
        sent = [
            tasks.add("send roads", steps.send_roads, p, self.numbers, self.roads[p], chains)
            for p, chains in enumerate(self.chains)
        ]
        received = tasks.exchange("roads of chains", sent, None, ways)
        joined = [
            tasks.add("join roads", steps.join_roads, self.options, some, self.node_seams)
            for some in received
        ]
        ends = tasks.exchange("ends of roads", joined, "ends", len(self.nodes))
        level = [
            tasks.add("level nodes", steps.level_nodes, table, some)
            for table, some in zip(self._take("tables", self.junctions, "junctions"), ends)
        ]
        answers = tasks.exchange("elevations of nodes", level, "answers", ways)
        node_sizes = self._take("numbers of nodes", level, "sizes")
        firsts = tasks.add("number nodes", steps.number_nodes, node_sizes)
        profiled = [
            tasks.add("profile roads", steps.profile_roads, roads, some, firsts, self.numbers)
            for roads, some in zip(self._take("joined roads", joined, "roads"), answers)
        ]
        home = tasks.exchange("finished roads", profiled, None, ways)
        roads = [tasks.add("sort roads", steps.sort_roads, some, self.numbers) for some in home]
        return roads, self._take("finished nodes", level, "nodes")

    def _restrict(self) -> list[Key]:
        tasks, count = self.tasks, len(self.relations)
        named = tasks.exchange("ways of restrictions", self.relations, "ways", len(self.ways))
        of_ways = [
            tasks.add(
                "chains of ways",
                restrictions.chains_of_ways,
                self.roads[p],
                self.chains[p],
                named[p],
            )
            for p in self.ways
        ]
        wanted = [
            tasks.add("gather chains", restrictions.gather_chains, some)
            for some in tasks.exchange("chains of restrictions", of_ways, None, count)
        ]
        sent = [
            tasks.add(
                "send chains",
                restrictions.send_chains,
                p,
                self.numbers,
                self.roads[p],
                self.chains[p],
                wanted,
            )
            for p in self.ways
        ]
        received = tasks.exchange("roads of restrictions", sent, None, count)
        return [
            tasks.add(
                "map restrictions", restrictions.map_restrictions, self.options, some, relations
            )
            for some, relations in zip(received, self._take("relations", self.relations, "batch"))
        ]

    def _take(self, name: str, keys: Sequence[Key], item: str) -> list[Key]:
        return [self.tasks.take(name, key, item) for key in keys]


def _same(value: Any) -> Any:
    return value
