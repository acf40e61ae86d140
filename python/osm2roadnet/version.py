"""The version of the package that is installed."""

from importlib.metadata import version as _version_of

version = _version_of("osm2roadnet")
