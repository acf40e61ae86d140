"""The map page: a network in a browser, in one file."""

from __future__ import annotations

import os
import re
import tempfile
import warnings
import webbrowser
from html import escape
from pathlib import Path
from typing import TYPE_CHECKING, Any

from osm2roadnet import _core

if TYPE_CHECKING:
    from osm2roadnet.network import Network


class MapPage:
    """A page that was written; a notebook shows it.

    Attributes:
        path: where it is.
    """

    def __init__(self, path: Path) -> None:
        self.path = path

    def __fspath__(self) -> str:
        return str(self.path)

    def __repr__(self) -> str:
        return f"<MapPage {self.path}>"

    def _repr_html_(self) -> str:
        page = escape(self.path.read_text(encoding="utf-8"))
        return (
            '<iframe style="width: 100%; height: 36em; border: 0" title="Map of the road network" '
            f'srcdoc="{page}"></iframe>'
        )


def explore(network: Network, path: Any, show: bool | None, overwrite: bool) -> MapPage:
    """See `Network.explore`."""
    if len(network) > _core.comfortable_roads:
        warnings.warn(
            f"more than {_core.comfortable_roads:,} roads are slow to open in a browser, if they "
            'open at all; QGIS shows them all from to_file("FILE.gpkg")',
            stacklevel=3,
        )
    if path is None:
        folder = tempfile.mkdtemp(prefix="osm2roadnet-")
        path = Path(folder, re.sub(r"[^\w.-]", "_", Path(network.source).name) + ".html")
    page = MapPage(Path(os.fsdecode(path)).absolute())
    network.to_file(page, "html", overwrite=overwrite)
    if show or (show is None and not _is_notebook()):
        webbrowser.open(page.path.as_uri())
    return page


def _is_notebook() -> bool:
    try:
        return get_ipython().has_trait("kernel")  # type: ignore[name-defined, no-any-return]
    except NameError:
        return False
