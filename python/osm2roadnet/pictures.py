"""What a notebook shows of a network: its figures and a small picture."""

from __future__ import annotations

from html import escape
from typing import TYPE_CHECKING

import numpy as np

from osm2roadnet.columns import Texts

if TYPE_CHECKING:
    from numpy.typing import NDArray

    from osm2roadnet.network import Network

#: The classes of roads from the most to the least important; their links are of the same.
CLASSES = (
    "motorway trunk primary secondary tertiary unclassified residential living_street road "
    "raceway service"
).split()

_SIZE = 320  # pixels along the longer side
_MOST_ROADS = 2000
_MOST_POINTS = 12000


def ranks(highways: Texts) -> NDArray[np.intp]:
    """The position in CLASSES of each road; of values that are not there, the last."""
    known = {name: rank for rank, name in enumerate(CLASSES)}
    names = ((text or "").partition(";")[0].removesuffix("_link") for text in highways.categories)
    of_categories = [known.get(name, len(CLASSES) - 1) for name in names]
    chosen: NDArray[np.intp] = np.array([*of_categories, len(CLASSES) - 1])[highways.codes]
    return chosen


def svg(network: Network) -> str:
    """A picture of the most important roads, of bounded size, for light and dark pages."""
    lines = network.roads["geometry"]
    if len(lines) == 0:
        return ""
    rank = ranks(network.roads["highway"])
    chosen = np.lexsort([-network.roads["length"], rank])[:_MOST_ROADS]
    x, y = lines.values[:, 0], lines.values[:, 1]
    west, east, south, north = x.min(), x.max(), y.min(), y.max()
    squeeze = np.cos(np.radians((south + north) / 2))
    scale = _SIZE / max((east - west) * squeeze, north - south, 1e-9)
    points = np.column_stack([(x - west) * squeeze, north - y]) * scale
    step = -(-int(lines.sizes[chosen].sum()) // _MOST_POINTS)
    paths: dict[int, list[str]] = {}
    for road in chosen[::-1].tolist():
        path = points[lines.offsets[road] : lines.offsets[road + 1]]
        path = np.concatenate([path[:-1:step], path[-1:]]).round(1)
        path = path[np.append(True, (np.diff(path, axis=0) != 0).any(axis=1))]
        width = 0.6 + max(0, 5 - int(rank[road])) * 0.4
        text = " ".join(f"{px:g} {py:g}" for px, py in path.tolist())
        paths.setdefault(round(width * 10), []).append("M" + text)
    drawn = "".join(
        f'<path stroke-width="{width / 10:g}" d="{"".join(lines)}"/>'
        for width, lines in paths.items()
    )
    size = np.ceil(points.max(axis=0)).astype(int)
    return (
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{size[0] + 8}" height="{size[1] + 8}" '
        f'viewBox="-4 -4 {size[0] + 8} {size[1] + 8}"><g fill="none" stroke="#6b8299" '
        f'stroke-linecap="round" stroke-linejoin="round">{drawn}</g></svg>'
    )


def html(network: Network) -> str:
    """The figures and the picture."""
    kilometres = network.roads["length"].sum() / 1000
    figures = {
        "nodes": f"{network.nodes.rows:,}",
        "roads": f"{len(network):,}",
        "total length": f"{kilometres:,.1f} km",
        "turn restrictions": f"{network.restrictions.rows:,}",
        "joined": network.join,
        "one-ways": network.oneway,
    }
    rows = "".join(
        f'<tr><th style="text-align:left">{name}</th><td style="text-align:left">{value}</td></tr>'
        for name, value in figures.items()
    )
    return (
        f"<div><strong>{escape(network.source)}</strong>"
        '<div style="display:flex;gap:2em;align-items:flex-start">'
        f"<table>{rows}</table>{svg(network)}</div></div>"
    )
