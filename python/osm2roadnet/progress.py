"""What shows how far reading is."""

from __future__ import annotations

import sys
from collections.abc import Callable, Iterator
from contextlib import contextmanager
from typing import Any


@contextmanager
def shown(progress: bool | Callable[[str, int, int], object] | None) -> Iterator[Any]:
    """What to call with the stage, how much of it is done, and of how much; None for nothing."""
    if progress is None or progress is False:
        yield None
    elif progress is not True:
        yield progress
    else:
        bar = _bar()
        try:
            yield bar
        finally:
            if bar is not None:
                bar.close()


def _bar() -> _Bar | _Line | None:
    try:
        from tqdm.auto import tqdm
    except ImportError:
        return _Line() if sys.stderr is not None and sys.stderr.isatty() else None
    return _Bar(tqdm)


class _Bar:
    """A bar of tqdm, on a terminal or in a notebook."""

    def __init__(self, tqdm: Any) -> None:
        self._bar = tqdm(unit_scale=True, leave=False, disable=None)
        self._stage = ""

    def __call__(self, stage: str, done: int, total: int) -> None:
        if stage != self._stage:
            self._stage = stage
            self._bar.reset()
            self._bar.set_description(stage, refresh=False)
        self._bar.total = total or None
        self._bar.update(done - self._bar.n)

    def close(self) -> None:
        self._bar.close()


class _Line:
    """One line on a terminal."""

    def __call__(self, stage: str, done: int, total: int) -> None:
        share = f" {100 * done // total} %" if total else ""
        self._show(stage + share)

    def close(self) -> None:
        self._show("")

    def _show(self, text: str) -> None:
        sys.stderr.write(f"\r\033[K{text}")
        sys.stderr.flush()
