"""Reading a file."""

from __future__ import annotations

import io
import os
import tempfile
from collections.abc import Callable, Iterable, Iterator
from contextlib import contextmanager
from typing import TYPE_CHECKING, Any, BinaryIO

from osm2roadnet import _core
from osm2roadnet.errors import ReadError, check_type
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
            is, and then stands where reading ended), or the bytes of one. OSM XML or PBF, also inside gzip or bzip2; told by content.
        join: which roads that continue one another become one: ``"compatible"``, those that agree
            in direction, layer, name and tags, so that nothing is lost; ``"all"``; ``"none"``.
        oneway: which ways are one-way: ``"implied"``, those tagged so and also roundabouts,
            motorways and whatever else implies it; ``"tagged"``, the former alone.
        tags: the OpenStreetMap tags that become columns; by default those that most networks
            need. A text has commas between them.
        threads: how many unpack PBF files, 1024 at most; by default, or if it is 0, as many as
            there are processors.
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
    check_type("join", join, str, "a text")
    check_type("oneway", oneway, str, "a text")
    check_type("tags", tags, (Iterable, type(None)), "some texts")
    keys = tags.split(",") if isinstance(tags, str) else None if tags is None else list(tags)
    for key in keys or ():
        check_type("each of tags", key, str, "a text")
    check_type("threads", threads, (int, type(None)), "a whole number")
    if not 0 <= (threads or 0) <= 1024:
        raise ValueError(f"threads is {threads}; it may be 0 to 1024")
    if not callable(progress):
        check_type("progress", progress, (bool, type(None)), "True or what can be called")
    name = _name_of(source)
    shown_name = name or f"<{type(source).__name__}>"
    try:
        with shown(progress) as report, _readable(source, shown_name) as readable:
            core = _core.read(readable, join, oneway, keys, threads or 0, report)
    except ReadError as error:
        error.filename = name or error.filename
        raise
    return Network(core, shown_name, join, oneway)


def _name_of(source: Any) -> str | None:
    path = source if isinstance(source, (str, os.PathLike)) else getattr(source, "name", None)
    return os.fsdecode(path) if isinstance(path, (str, bytes, os.PathLike)) else None


@contextmanager
def _readable(source: Any, name: str) -> Iterator[Any]:
    """What the compiled module reads: a path, a descriptor and its name, or bytes."""
    if isinstance(source, (str, os.PathLike)):
        yield name
    elif isinstance(source, (bytes, bytearray, memoryview)):
        yield source
    elif isinstance(source, io.TextIOBase):
        raise TypeError(f"{name} is open as text; open it in binary mode")
    elif not hasattr(source, "read"):
        raise TypeError(f"source must be a path, a file or bytes, not {type(source).__name__}")
    elif _is_plain_file(source):
        source.flush()
        descriptor = source.fileno()
        os.lseek(descriptor, source.tell(), os.SEEK_SET)  # past what Python has read ahead
        try:
            yield descriptor, name
        finally:
            source.seek(os.lseek(descriptor, 0, os.SEEK_CUR))
    else:
        content = source.read()
        check_type(f"what {name} gives", content, (bytes, bytearray, memoryview), "bytes")
        yield content


def _is_plain_file(source: Any) -> bool:
    """Whether it gives what its descriptor gives: others, although they have one, may unpack."""
    file: Any = source.file if isinstance(source, tempfile._TemporaryFileWrapper) else source
    raw = file.raw if type(file) in (io.BufferedReader, io.BufferedRandom) else file
    return type(raw) is io.FileIO and raw.seekable()
