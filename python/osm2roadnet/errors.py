"""What goes wrong with a file, and with packages that are not installed."""

from __future__ import annotations

import importlib
import importlib.util
from typing import Any


class ReadError(OSError):
    """A file that can't be read: it is missing, damaged, cut short, or no OpenStreetMap file.

    Attributes:
        filename: the file's name as it was given, ``"<bytes>"`` for bytes.
        place: where in the file, such as ``"line 3, column 1"``; empty if that has no meaning.
        reason: what is wrong there.

    >>> str(ReadError("town.osm", "line 3, column 1", 'lat "48.1abc" is not a number'))
    'town.osm: line 3, column 1: lat "48.1abc" is not a number'
    """

    def __init__(self, filename: str, place: str, reason: str) -> None:
        super().__init__(reason)
        self.filename = filename
        self.place = place
        self.reason = reason

    def __reduce__(self) -> tuple[Any, ...]:
        return ReadError, (self.filename, self.place, self.reason)

    def __repr__(self) -> str:
        return f"ReadError({self.filename!r}, {self.place!r}, {self.reason!r})"

    def __str__(self) -> str:
        return ": ".join(part for part in (self.filename, self.place, self.reason) if part)


def check_type(name: str, value: object, types: type | tuple[type, ...], wanted: str) -> None:
    """Raises TypeError if an argument is of none of the types."""
    if not isinstance(value, types):
        raise TypeError(f"{name} must be {wanted}, not {type(value).__name__}")


def require(module: str, extra: str) -> Any:
    """The module of that name, imported; if a package is missing the error says how to install it.

    What goes wrong inside a package that is there is not for this to tell.
    """
    try:
        return importlib.import_module(module)
    except ModuleNotFoundError as error:
        package = (error.name or module).partition(".")[0]
        if importlib.util.find_spec(package) is not None:
            raise
        raise ImportError(
            f'this needs {package}: pip install "osm2roadnet[{extra}]"', name=package
        ) from error
