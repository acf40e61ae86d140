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
def output(
    path: Any, overwrite: bool, files: Collection[str] = (), ending: str = ""
) -> Iterator[Path]:
    """A path to write to, beside the wanted one, which it takes when the block ends well.

    Its name is plain, and ends as said: not everything that writes files takes any name.
    Where `files` are named the output is a folder of them, and is there already.

    Raises:
        FileExistsError: if there is an output and `overwrite` is false, or if there is a folder
            that holds anything but such files, or neither a file nor a folder.
        IsADirectoryError, NotADirectoryError: if there is a folder for a file, or the reverse.
    """
    path = Path(os.path.realpath(os.fsdecode(path)))
    _check(path, overwrite, files)
    with tempfile.TemporaryDirectory(prefix=".osm2roadnet-", dir=path.parent) as folder:
        unfinished = Path(folder, "output" + ending)
        if files:
            unfinished.mkdir()
        yield unfinished
        _check(path, overwrite, files)
        old = Path(folder, "old")
        try:
            if path.is_dir():  # can't be replaced unless it is empty
                path.rename(old)
            unfinished.replace(path)
        except BaseException:
            if old.is_dir() and not os.path.lexists(path):
                old.rename(path)
            raise


def refuse_existing(path: Path) -> None:
    """Raises FileExistsError if there is anything but an empty folder."""
    if os.path.lexists(path) and not (path.is_dir() and not any(path.iterdir())):
        raise FileExistsError(errno.EEXIST, "exists; overwrite=True replaces it", str(path))


def _check(path: Path, overwrite: bool, files: Collection[str]) -> None:
    if path.is_dir():
        if not files:
            raise IsADirectoryError(errno.EISDIR, "is a folder", str(path))
        if not {entry.name for entry in path.iterdir()} <= set(files):
            raise FileExistsError(errno.EEXIST, "a folder that holds other files", str(path))
    elif path.exists():
        if not path.is_file():
            raise FileExistsError(errno.EEXIST, "neither a file nor a folder", str(path))
        if files:
            raise NotADirectoryError(errno.ENOTDIR, "is not a folder", str(path))
    if not overwrite:
        refuse_existing(path)
