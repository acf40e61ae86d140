"""Outputs that are there whole or not at all."""

from __future__ import annotations

import errno
import os
import tempfile
from collections.abc import Collection, Iterator
from contextlib import contextmanager
from pathlib import Path
from typing import Any


@contextmanager
def output(path: Any, overwrite: bool, files: Collection[str] = ()) -> Iterator[Path]:
    """A path to write to, beside the wanted one, which it takes when the block ends well.

    Where `files` are named the output is a folder of them, and is there already.

    Raises:
        FileExistsError: if there is an output and `overwrite` is false, or if there is a folder
            that holds anything but such files.
    """
    path = Path(os.path.realpath(os.fsdecode(path)))
    _check(path, overwrite, files)
    with tempfile.TemporaryDirectory(prefix=".osm2roadnet-", dir=path.parent) as folder:
        unfinished = Path(folder, path.name)
        if files:
            unfinished.mkdir()
        yield unfinished
        _check(path, overwrite, files)
        if path.is_dir():  # can't be replaced unless it is empty
            path.rename(Path(folder, "old"))
        unfinished.replace(path)


def refuse_existing(path: Path) -> None:
    """Raises FileExistsError if there is anything but an empty folder."""
    if os.path.lexists(path) and not (path.is_dir() and not any(path.iterdir())):
        raise FileExistsError(errno.EEXIST, "exists; overwrite=True replaces it", str(path))


def _check(path: Path, overwrite: bool, files: Collection[str]) -> None:
    if path.is_dir() and not (files and {entry.name for entry in path.iterdir()} <= set(files)):
        raise FileExistsError(errno.EEXIST, "a folder that holds other files", str(path))
    if not overwrite:
        refuse_existing(path)
