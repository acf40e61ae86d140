"""Road networks from OpenStreetMap files, in NumPy arrays and what others make of them.

>>> import osm2roadnet as rn
>>> net = rn.read("examples/harbour-town.osm")
>>> len(net)
130
"""

from osm2roadnet import distributed
from osm2roadnet.columns import Columns, Lists, Texts
from osm2roadnet.errors import ReadError
from osm2roadnet.network import Network
from osm2roadnet.read import read
from osm2roadnet.report import Report

__all__ = [
    "Columns",
    "Lists",
    "Network",
    "ReadError",
    "Report",
    "Texts",
    "__version__",
    "distributed",
    "read",
]

__version__: str


def __getattr__(name: str) -> str:
    if name != "__version__":
        raise AttributeError(f"module {__name__!r} has no attribute {name!r}")
    from importlib.metadata import version

    return version(__name__)
