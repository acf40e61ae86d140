"""What became of each way, and what deserves a look."""

from __future__ import annotations

import json
from collections import Counter
from collections.abc import Iterator, Mapping
from functools import cached_property
from html import escape
from typing import Any

_SEVERITIES = ("high", "medium", "low")


class Report(Mapping[str, Any]):
    """The report of the program as docs/report.md describes it: members by their names.

    >>> import osm2roadnet as rn
    >>> report = rn.read("examples/harbour-town.osm").report
    >>> report["highwayWays"], report["imported"]
    (93, 80)
    >>> report.findings[0]["kind"], report.findings[0]["severity"]
    ('traps', 'high')

    Attributes:
        text: the same as JSON.
    """

    def __init__(self, text: str) -> None:
        self.text = text

    @cached_property
    def _members(self) -> dict[str, Any]:
        members: dict[str, Any] = json.loads(self.text)
        return members

    @cached_property
    def findings(self) -> list[dict[str, Any]]:
        """The places to check, each with its kind, the most severe first."""
        found = [
            {"kind": kind, **place} for kind, places in self["toCheck"].items() for place in places
        ]
        return sorted(found, key=lambda place: _SEVERITIES.index(place["severity"]))

    def __getitem__(self, name: str) -> Any:
        return self._members[name]

    def __iter__(self) -> Iterator[str]:
        return iter(self._members)

    def __len__(self) -> int:
        return len(self._members)

    def __reduce__(self) -> tuple[Any, ...]:
        return Report, (self.text,)

    def __repr__(self) -> str:
        counts = Counter(place["severity"] for place in self.findings)
        severities = ", ".join(f"{counts[name]:,} {name}" for name in _SEVERITIES)
        return (
            f"<Report: {self['imported']:,} of {self['highwayWays']:,} ways imported, "
            f"{len(self.findings):,} places to check ({severities})>"
        )

    def _repr_html_(self) -> str:
        kinds = Counter((place["kind"], place["severity"]) for place in self.findings)
        first: dict[Any, str] = {}
        for place in self.findings:
            first.setdefault((place["kind"], place["severity"]), place["text"])
        rows = "".join(
            f"<tr><td>{escape(kind)}</td><td>{severity}</td><td>{count:,}</td>"
            f'<td style="text-align:left">{escape(first[kind, severity])}</td></tr>'
            for (kind, severity), count in kinds.items()
        )
        return (
            f"<p>{escape(repr(self)[1:-1])}</p>"
            "<table><thead><tr><th>kind</th><th>severity</th><th>places</th>"
            f'<th style="text-align:left">the first</th></tr></thead><tbody>{rows}</tbody></table>'
        )
