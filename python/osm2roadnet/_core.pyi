"""The compiled module: the engine, and its networks as arrays."""

from collections.abc import Callable
from typing import Any, TypeAlias

import numpy as np
from numpy.typing import NDArray

Triple: TypeAlias = tuple[NDArray[np.int32], NDArray[np.int64], NDArray[np.uint8]]

#: What workers do with parts of a file: functions of arrays, which python/core/parts.cpp lists.
parts: Any

#: How many roads a browser shows with ease.
comfortable_roads: int

class Import:
    nodes: dict[str, NDArray[Any]]
    roads: dict[str, NDArray[Any]]
    texts: dict[str, Triple]
    lines: tuple[NDArray[np.int64], NDArray[np.float64]]
    ways: tuple[NDArray[np.int64], NDArray[np.int64]]
    restrictions: dict[str, Any]
    limits: tuple[float, float, float, float] | None
    reference: tuple[float, float, float]
    counts: dict[str, int]
    def lengths(self) -> NDArray[np.float64]: ...
    def report(self) -> str: ...
    def write(self, path: str, format: str, overwrite: bool) -> None: ...

def read(
    source: str | tuple[int, str] | bytes | bytearray | memoryview,
    join: str,
    oneway: str,
    tags: list[str] | None,
    threads: int,
    progress: Callable[[str, int, int], object] | None,
) -> Import: ...
