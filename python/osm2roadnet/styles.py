"""How QGIS shows the layers of a GeoPackage."""

from __future__ import annotations

from collections.abc import Iterable
from contextlib import closing
from pathlib import Path

# The table as QGIS makes it, and what a GeoPackage says of each of its tables.
_TABLE = """
CREATE TABLE layer_styles (
  id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL,
  f_table_catalog TEXT, f_table_schema TEXT, f_table_name TEXT, f_geometry_column TEXT,
  styleName TEXT, styleQML TEXT, styleSLD TEXT, useAsDefault BOOLEAN, description TEXT,
  owner TEXT, ui TEXT, update_time DATETIME
);
INSERT INTO gpkg_contents (table_name, data_type, identifier, last_change)
  VALUES ('layer_styles', 'attributes', 'layer_styles', '1970-01-01T00:00:00.000Z');
"""
_ROW = """
INSERT INTO layer_styles (f_table_catalog, f_table_schema, f_table_name, f_geometry_column,
  styleName, styleQML, styleSLD, useAsDefault, description, owner, ui, update_time)
  VALUES ('', '', :layer, :geometry, :layer, :qml, '', 1, 'by osm2roadnet', '', '',
  '1970-01-01T00:00:00.000Z')
"""


def add_styles(geopackage: Path, layers: Iterable[str]) -> None:
    """Adds the table in which QGIS looks for the style of each layer."""
    import sqlite3
    from importlib.resources import files

    with closing(sqlite3.connect(geopackage)) as database, database:
        database.executescript(_TABLE)
        for layer in layers:
            qml = files("osm2roadnet").joinpath("styles", f"{layer}.qml").read_text("utf-8")
            database.execute(_ROW, {"layer": layer, "geometry": "geom", "qml": qml})
