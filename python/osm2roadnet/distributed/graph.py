"""The steps of a distributed import and what they need of one another, as a graph for Dask."""

from __future__ import annotations

import operator
import uuid
from collections import Counter
from collections.abc import Callable, Sequence
from dataclasses import dataclass
from typing import Any

from osm2roadnet.distributed import steps
from osm2roadnet.distributed.plan import Plan

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


def graph_of(plan: Plan, options: steps.Options) -> tuple[dict[Key, Any], Outcome]:
    """All tasks of an import."""
    return _Import(plan, options).build()


class _Import:
    def __init__(self, plan: Plan, options: steps.Options) -> None:
        self.plan = plan
        self.options = options
        self.tasks = Tasks()
        self.counts: list[Key] = []

    def build(self) -> tuple[dict[Key, Any], Outcome]:
        plan, tasks, options = self.plan, self.tasks, self.options
        ways, nodes = range(len(plan.ways)), range(len(plan.nodes))
        join = options[0]
        node_seams = tasks.add("last nodes of the parts", _same, plan.node_seams)
        way_seams = tasks.add("last ways of the parts", _same, plan.way_seams)

        relations = self._each(
            "decode restrictions", plan.relations, steps.decode_relations, options, node_seams,
            way_seams,
        )
        named = tasks.exchange("ways of restrictions", relations, "ways", len(ways))
        via = tasks.exchange("ways of restrictions", relations, "via ways", len(ways))
        decoded = [
            tasks.add("decode ways", steps.decode_ways, part.place, options, via[p], node_seams)
            for p, part in enumerate(plan.ways)
        ]
        wanted = tasks.exchange("ids of nodes", decoded, "nodes", len(nodes))
        found = [
            tasks.add("find nodes", steps.find_nodes, part.place, wanted[q])
            for q, part in enumerate(plan.nodes)
        ]
        positions = tasks.exchange("positions of nodes", found, "positions", len(ways))
        batches = [tasks.take("ways", key, "batch") for key in decoded]
        selected = [
            tasks.add("select roads", steps.select_roads, batches[p], positions[p], node_seams)
            for p in ways
        ]
        uses = tasks.exchange("uses of nodes", selected, "uses", len(nodes))
        ends = tasks.exchange("nodes of restrictions", decoded, "ends", len(nodes))
        vias = tasks.exchange("nodes of restrictions", relations, "via nodes", len(nodes))
        tables = [tasks.take("nodes", key, "nodes") for key in found]
        junctions = [
            tasks.add(
                "find junctions", steps.find_junctions, tables[q], uses[q],
                [*ends[q], *vias[q]] if join == "compatible" else [], join != "none",
            )
            for q in nodes
        ]
        places = tasks.exchange("junctions", junctions, "places", len(ways))
        chosen = [tasks.take("ways", key, "batch") for key in selected]
        cut = [tasks.add("cut ways", steps.cut_ways, chosen[p], places[p]) for p in ways]
        sizes = [tasks.take("numbers of roads", key, "counts") for key in cut]
        numbers = tasks.add("number roads", steps.number_roads, sizes)
        open_roads = [tasks.take("open ends", key, "open") for key in cut]
        joined = tasks.add("join chains", steps.join_chains, numbers, open_roads)
        roads = [tasks.take("roads", key, "roads") for key in cut]
        chains = [
            tasks.add(
                "name chains", steps.name_chains, p, numbers, roads[p], open_roads[p],
                tasks.take("chains", joined, p),
            )
            for p in ways
        ]
        sent = [
            tasks.add("send roads", steps.send_roads, p, numbers, roads[p], chains[p])
            for p in ways
        ]
        received = tasks.exchange("roads of chains", sent, None, len(ways))
        made = [
            tasks.add("join roads", steps.join_roads, options, received[d], node_seams)
            for d in ways
        ]
        at_nodes = tasks.exchange("ends of roads", made, "ends", len(nodes))
        kept = [tasks.take("junctions", key, "junctions") for key in junctions]
        level = [
            tasks.add("level nodes", steps.level_nodes, kept[q], at_nodes[q]) for q in nodes
        ]
        answers = tasks.exchange("elevations of nodes", level, "answers", len(ways))
        node_sizes = [tasks.take("numbers of nodes", key, "sizes") for key in level]
        firsts = tasks.add("number nodes", steps.number_nodes, node_sizes)
        unfinished = [tasks.take("joined roads", key, "roads") for key in made]
        home = tasks.exchange("finished roads", [
            tasks.add(
                "profile roads", steps.profile_roads, unfinished[d], answers[d], firsts, numbers
            )
            for d in ways
        ], None, len(ways))
        finished = [tasks.add("sort roads", steps.sort_roads, home[p], numbers) for p in ways]
        restrictions = self._restrictions(relations, roads, chains, numbers, named)
        counts = [
            tasks.take("counts", key, "counts")
            for key in (*relations, *decoded, *found, *selected, *junctions)
        ]
        limits = [tasks.take("limits", key, "limits") for key in found]
        finished_nodes = [tasks.take("finished nodes", key, "nodes") for key in level]
        sizes = [
            [tasks.add("count rows", steps.count_rows, key) for key in some]
            for some in (finished, finished_nodes, restrictions)
        ]
        facts = tasks.add("sum up", steps.sum_up, counts, limits, *sizes)
        outcome = Outcome(finished, finished_nodes, restrictions, facts)
        return tasks.graph, outcome

    def _restrictions(
        self, relations: list[Key], roads: list[Key], chains: list[Key], numbers: Key,
        named: list[list[Key]],
    ) -> list[Key]:
        tasks = self.tasks
        ways = range(len(roads))
        of_ways = [
            tasks.add("chains of restrictions", steps.chains_of_ways, roads[p], chains[p], named[p])
            for p in ways
        ]
        found = tasks.exchange("chains of restrictions", of_ways, None, len(relations))
        wanted = [
            tasks.add("gather chains", steps.gather_chains, found[r])
            for r in range(len(relations))
        ]
        sent = [
            tasks.add("send chains", steps.send_chains, p, numbers, roads[p], chains[p], wanted)
            for p in ways
        ]
        received = tasks.exchange("roads of restrictions", sent, None, len(relations))
        return [
            tasks.add(
                "map restrictions", steps.map_restrictions, self.options, received[r],
                tasks.take("restrictions", key, "batch"),
            )
            for r, key in enumerate(relations)
        ]

    def _each(self, name: str, parts: Any, function: Callable[..., Any], *rest: Any) -> list[Key]:
        return [
            self.tasks.add(name, function, part.place, *rest)
            for part in parts
        ]


def _same(value: Any) -> Any:
    return value
