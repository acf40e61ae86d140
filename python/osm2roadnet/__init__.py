"""Road networks from OpenStreetMap files, in NumPy arrays and what others make of them.

>>> import osm2roadnet as rn
>>> net = rn.read("examples/harbour-town.osm")
>>> len(net)
113
"""

from osm2roadnet.columns import Columns, Lists, Texts
from osm2roadnet.errors import ReadError
from osm2roadnet.network import Network
from osm2roadnet.read import read
from osm2roadnet.report import Report
from osm2roadnet.version import version as __version__

__all__ = ["Columns", "Lists", "Network", "ReadError", "Report", "Texts", "__version__", "read"]
