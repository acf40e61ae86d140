"""A picture with Matplotlib."""

from __future__ import annotations

from typing import TYPE_CHECKING

import matplotlib.pyplot as plt
import numpy as np
from matplotlib.collections import LineCollection

from osm2roadnet.pictures import ranks

if TYPE_CHECKING:
    from matplotlib.axes import Axes

    from osm2roadnet.network import Network

_PAPER = "#fbfaf7"
# From the most to the least important class, as pictures.CLASSES has them: points and colours.
_STYLES = [
    (2.6, "#b5483a"),
    (2.4, "#c8643c"),
    (2.0, "#d68a3c"),
    (1.6, "#c9a13f"),
    (1.2, "#7d8f69"),
    (0.9, "#6d7f8f"),
    (0.8, "#8494a1"),
    (0.7, "#97a4ae"),
    (0.7, "#97a4ae"),
    (0.7, "#97a4ae"),
    (0.45, "#b3bcc3"),
]


def plot(network: Network, ax: Axes | None, color: str | None, oneways: bool) -> Axes:
    """See `Network.plot`."""
    if ax is None:
        _, ax = plt.subplots(figsize=(8, 8), facecolor=_PAPER, layout="constrained")
    lines = network.roads["geometry"]
    places = lines.values[:, :2]
    rank = ranks(network.roads["highway"])
    for value in np.unique(rank)[::-1].tolist():
        roads = np.flatnonzero(rank == value)
        width, own_color = _STYLES[value]
        points = map(slice, lines.offsets[roads].tolist(), lines.offsets[roads + 1].tolist())
        ax.add_collection(
            LineCollection(
                list(map(places.__getitem__, points)),
                linewidths=width,
                colors=color or own_color,
                capstyle="round",
                joinstyle="round",
                zorder=2 - value / len(_STYLES),
            )
        )
    ax.autoscale_view()
    latitude = np.radians(np.mean(ax.get_ylim()))
    ax.set_aspect(1 / np.cos(latitude))
    ax.set_axis_off()
    if oneways:
        _draw_arrows(network, ax, float(np.cos(latitude)))
    return ax


def _draw_arrows(network: Network, ax: Axes, squeeze: float) -> None:
    """In the middle of each one-way road, in its direction of travel."""
    lines, direction = network.roads["geometry"], network.roads["direction"]
    roads = np.flatnonzero(direction != 3)
    middle = lines.offsets[roads] + np.maximum(lines.sizes[roads] // 2, 1)
    a, b = lines.values[middle - 1, :2], lines.values[middle, :2]
    x, y = (a + b).T / 2
    dx, dy = ((b - a) * np.where(direction[roads] == 2, -1, 1)[:, np.newaxis]).T
    ax.quiver(
        x,
        y,
        np.ones(len(roads)),
        np.zeros(len(roads)),
        angles=np.degrees(np.arctan2(dy, dx * squeeze)),
        pivot="mid",
        units="dots",
        width=1,
        scale=1 / 8,
        scale_units="dots",
        headwidth=5,
        headlength=5,
        headaxislength=4,
        color="#33404d",
        zorder=3,
    )
