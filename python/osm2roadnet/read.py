"""Reading a file."""

from __future__ import annotations

import io
import os
from collections.abc import Callable, Iterable
from typing import TYPE_CHECKING, Any, BinaryIO

from osm2roadnet import _core
from osm2roadnet.network import Network
from osm2roadnet.progress import shown

if TYPE_CHECKING:
    Source = str | os.PathLike[str] | BinaryIO | bytes | bytearray | memoryview


def read(
    source: Source,
    *,
    join: str = "compatible",
    oneway: str = "implied",
    tags: Iterable[str] | None = None,
    threads: int | None = None,
    progress: bool | Callable[[str, int, int], object] | None = None,
) -> Network:
    """Reads an OpenStreetMap file and builds a road network from it.

    Ctrl-C ends it at any stage, and other threads of Python run on.

    Args:
        source: the path of a file, a file that is open in binary mode (it is read from where it
            is), or the bytes of one. OSM XML or PBF, also inside gzip or bzip2; told by content.
        join: which roads that continue one another become one: ``"compatible"``, those that agree
            in direction, layer, name and tags, so that nothing is lost; ``"all"``; ``"none"``.
        oneway: which ways are one-way: ``"implied"``, those tagged so and also roundabouts,
            motorways and whatever else implies it; ``"tagged"``, the former alone.
        tags: the OpenStreetMap tags that become columns; by default those that most networks
            need. A text has commas between them.
        threads: how many unpack PBF files; by default as many as there are processors.
        progress: True for a bar, on a terminal or in a notebook; or what is called with the
            name of the stage, how much of it is done and how much there is (0 if nobody knows).
            What it raises ends the reading.

    Returns:
        The network, which needs the file no more.

    Raises:
        ReadError: if the file can't be read, or is not what it should be.
        MemoryError: if there is not enough memory.
        TypeError, ValueError: if an argument is not one of the above.

    >>> import osm2roadnet as rn
    >>> rn.read("examples/harbour-town.osm", join="all", tags=["surface", "lit"]).tags
    ['surface', 'lit']
    """
    keys = tags.split(",") if isinstance(tags, str) else tags
    if not (progress is None or isinstance(progress, bool) or callable(progress)):
        raise TypeError(f"progress is True or can be called, not {progress!r}")
    name = _name_of(source)
    with shown(progress) as report:
        core = _core.read(
            _readable(source, name),
            join,
            oneway,
            None if keys is None else list(keys),
            threads or 0,
            report,
        )
    return Network(core, name, join, oneway)


def _name_of(source: Any) -> str:
    if isinstance(source, (str, os.PathLike)):
        return os.fsdecode(source)
    name = getattr(source, "name", None)
    return name if isinstance(name, str) else f"<{type(source).__name__}>"


def _readable(source: Any, name: str) -> str | tuple[int, str] | bytes | bytearray | memoryview:
    """What the compiled module reads: a path, a descriptor and its name, or bytes."""
    if isinstance(source, (str, os.PathLike)):
        return name
    if isinstance(source, (bytes, bytearray, memoryview)):
        return source
    if isinstance(source, io.TextIOBase):
        raise TypeError(f"{name} is open as text; open it in binary mode")
    if not hasattr(source, "read"):
        raise TypeError(f"can't read {source!r}; give a path, a file or bytes")
    raw = getattr(source, "raw", source)
    if isinstance(raw, io.FileIO) and raw.seekable():
        # Past what Python has read ahead.
        os.lseek(raw.fileno(), source.tell(), os.SEEK_SET)
        return raw.fileno(), name
    content = source.read()
    if not isinstance(content, (bytes, bytearray, memoryview)):
        raise TypeError(f"{name} gives {type(content).__name__}, not bytes")
    return content
