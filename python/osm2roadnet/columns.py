"""Columns of a network: NumPy arrays, texts and lists of different lengths. All are read-only."""

from __future__ import annotations

import operator
from collections.abc import Callable, Collection, Iterator, Mapping, Sequence
from typing import TYPE_CHECKING, Any, Literal, overload

import numpy as np

from osm2roadnet.errors import require

if TYPE_CHECKING:
    import pyarrow as pa
    from numpy.typing import NDArray

    from osm2roadnet._core import Triple

    FloatColumn = Literal["lon", "lat", "elevation", "length", "weight"]
    Int64Column = Literal[
        "id", "start_node", "end_node", "osm_relation_id", "from_road_id", "to_road_id"
    ]
    TextColumn = Literal["name", "highway", "restriction", "vehicles", "condition", "except"]
    ListColumn = Literal["osm_way_ids", "geometry", "via_node_ids", "via_road_ids"]


def frozen(array: NDArray[Any]) -> NDArray[Any]:
    """The same array, which can no longer be written to."""
    array.flags.writeable = False
    return array


class Texts(Sequence["str | None"]):
    """A column of texts, None where there is none. Each distinct text is stored once.

    Compared with a text it gives a mask, as an array does:

    >>> import osm2roadnet as rn
    >>> roads = rn.read("examples/harbour-town.osm").roads
    >>> roads["highway"][0], len(roads["highway"])
    ('motorway', 130)
    >>> float(roads["length"][roads["highway"] == "motorway"].sum().round())
    2940.0

    Attributes:
        codes: int32, for each row the position of its text in ``categories``, -1 for none.
        offsets: int64, one more than there are distinct texts: where each begins in ``data``.
        data: uint8, the distinct texts in UTF-8, one after another.
    """

    __hash__ = None  # type: ignore[assignment]

    def __init__(
        self, codes: NDArray[np.int32], offsets: NDArray[np.int64], data: NDArray[np.uint8]
    ) -> None:
        self.codes = frozen(codes)
        self.offsets = frozen(offsets)
        self.data = frozen(data)
        self._categories: NDArray[np.object_] | None = None

    @property
    def categories(self) -> NDArray[np.object_]:
        """The distinct texts as str, in order of appearance."""
        if self._categories is None:
            data = self.data.tobytes()
            ends = self.offsets.tolist()
            texts = [data[a:b].decode() for a, b in zip(ends, ends[1:])]
            self._categories = frozen(np.array(texts, dtype=object))
        return self._categories

    def to_numpy(self) -> NDArray[np.object_]:
        """str or None for each row; equal texts are one object."""
        choices = np.append(self.categories, np.array([None], dtype=object))
        chosen: NDArray[np.object_] = choices[self.codes]  # -1 is the last one, None
        return chosen

    def to_arrow(self) -> pa.DictionaryArray:
        """A dictionary array over the same memory."""
        return require("osm2roadnet.arrow", "arrow").text_array(self)

    def isin(self, texts: Sequence[str | None]) -> NDArray[np.bool_]:
        """A mask of the rows that have one of the texts."""
        if isinstance(texts, str):
            raise TypeError("isin takes some texts; for a single one there is ==")
        wanted = set(texts)
        found = np.fromiter((text in wanted for text in (*self.categories, None)), dtype=bool)
        mask: NDArray[np.bool_] = found[self.codes]
        return mask

    def __array__(self, dtype: Any = None, copy: bool | None = None) -> NDArray[Any]:
        if copy is False:
            raise ValueError("texts have no array without making one")
        return self.to_numpy() if dtype is None else self.to_numpy().astype(dtype)

    def __len__(self) -> int:
        return len(self.codes)

    @overload
    def __getitem__(self, row: int) -> str | None: ...
    @overload
    def __getitem__(self, row: slice | NDArray[Any]) -> Texts: ...
    def __getitem__(self, row: Any) -> str | Texts | None:
        """The text of a row; for a slice, a mask or an array of positions, those rows."""
        code = self.codes[row]
        if isinstance(code, np.ndarray):
            return Texts(code, self.offsets, self.data)
        if code < 0:
            return None
        begin, end = self.offsets[code : code + 2]
        return self.data[begin:end].tobytes().decode()

    def __iter__(self) -> Iterator[str | None]:
        return iter(self.to_numpy())

    def __eq__(self, other: object) -> Any:
        if other is None or isinstance(other, str):
            return self.isin([other])
        if isinstance(other, Texts):
            if len(self) != len(other):
                return False
            # Their codes can be compared once both count the same texts.
            position = {text: i for i, text in enumerate(self.categories)}
            codes = [position.get(text, -2) for text in other.categories]
            return self.codes == np.array([*codes, -1])[other.codes]
        return NotImplemented

    def __ne__(self, other: object) -> Any:
        equal = self.__eq__(other)
        return equal if equal is NotImplemented else np.logical_not(equal)

    def __reduce__(self) -> tuple[Any, ...]:
        return Texts, (self.codes, self.offsets, self.data)

    def __repr__(self) -> str:
        return f"Texts({_shown(self)})"


class Lists(Sequence["NDArray[Any]"]):
    """A column of lists of different lengths: of ids, or of the points of a line.

    Attributes:
        offsets: int64, one more than there are rows: where each list begins in ``values``.
        values: the values of all rows, one after another.
    """

    __hash__ = None  # type: ignore[assignment]

    def __init__(self, offsets: NDArray[np.int64], values: NDArray[Any]) -> None:
        self.offsets = frozen(offsets)
        self.values = frozen(values)

    @property
    def sizes(self) -> NDArray[np.int64]:
        """How many values each row has."""
        return np.diff(self.offsets)

    def __len__(self) -> int:
        return len(self.offsets) - 1

    @overload
    def __getitem__(self, row: int) -> NDArray[Any]: ...
    @overload
    def __getitem__(self, row: slice) -> Lists: ...
    def __getitem__(self, row: Any) -> NDArray[Any] | Lists:
        """The values of a row; for a slice without a step, those rows. Nothing is copied."""
        if isinstance(row, slice):
            first, last, step = row.indices(len(self))
            if step != 1:
                raise ValueError("lists can't be taken in steps")
            return Lists(self.offsets[first : max(first, last) + 1], self.values)
        try:
            row = operator.index(row)
        except TypeError:
            kind = type(row).__name__
            raise TypeError(f"lists are taken by position or slice, not by {kind}") from None
        begin, end = self.offsets[:-1][row], self.offsets[1:][row]
        values: NDArray[Any] = self.values[begin:end]
        return values

    def __eq__(self, other: object) -> Any:
        if not isinstance(other, Lists):
            return NotImplemented
        mine, others = (
            lists.values[lists.offsets[0] : lists.offsets[-1]] for lists in (self, other)
        )
        return np.array_equal(self.sizes, other.sizes) and np.array_equal(
            mine, others, equal_nan=True
        )

    def to_texts(self) -> list[str]:
        """The values of each row with ";" between them, as OpenStreetMap lists values."""
        texts = list(map(str, self.values.tolist()))
        ends = self.offsets.tolist()
        return list(map(";".join, map(texts.__getitem__, map(slice, ends, ends[1:]))))

    def __reduce__(self) -> tuple[Any, ...]:
        first, last = self.offsets[[0, -1]].tolist()
        offsets = self.offsets - first if first > 0 else self.offsets
        return Lists, (offsets, self.values[first:last])

    def __repr__(self) -> str:
        return f"Lists({_shown([row.tolist() for row in self[:4]], len(self))})"


class Columns(Mapping[str, Any]):
    """Columns of the same number of rows by their names. Some are computed when first asked for."""

    def __init__(self, rows: int, columns: Mapping[str, Any | Callable[[], Any]]) -> None:
        self.rows = rows
        self._columns = dict(columns)
        for column in columns.values():
            if isinstance(column, np.ndarray):
                frozen(column)

    @overload
    def __getitem__(self, name: FloatColumn) -> NDArray[np.float64]: ...
    @overload
    def __getitem__(self, name: Int64Column) -> NDArray[np.int64]: ...
    @overload
    def __getitem__(self, name: TextColumn) -> Texts: ...
    @overload
    def __getitem__(self, name: ListColumn) -> Lists: ...
    @overload
    def __getitem__(self, name: str) -> Any: ...
    def __getitem__(self, name: str) -> Any:
        column = self._columns[name]
        if callable(column):
            column = self._columns[name] = frozen(column())
        return column

    def __iter__(self) -> Iterator[str]:
        return iter(self._columns)

    def __len__(self) -> int:
        return len(self._columns)

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Columns):
            return NotImplemented
        return list(self) == list(other) and all(_same(self[name], other[name]) for name in self)

    __hash__ = None  # type: ignore[assignment]

    def __reduce__(self) -> tuple[Any, ...]:
        return Columns, (self.rows, {name: self[name] for name in self})

    def __repr__(self) -> str:
        return f"<{self.rows:,} rows of {', '.join(self)}>"


def texts_of(triples: Mapping[str, Triple]) -> dict[str, Texts]:
    """The columns of texts that the compiled module gives."""
    return {name: Texts(*triple) for name, triple in triples.items()}


def untaken(names: Collection[str], taken: Collection[str]) -> dict[str, str]:
    """These names by what they are called: with "osm_" before those that are taken."""
    called = {}
    for known in names:
        name = known
        while name.lower() in taken or (name != known and name in names):
            name = "osm_" + name
        called[name] = known
    return called


def _same(a: Any, b: Any) -> bool:
    if isinstance(a, np.ndarray):
        return np.array_equal(a, b, equal_nan=a.dtype.kind == "f")
    return bool(np.all(a == b))


def _shown(rows: Sequence[Any], size: int | None = None) -> str:
    size = len(rows) if size is None else size
    first = ", ".join(repr(row) for row in rows[:4])
    return f"[{first}, ...], {size:,} rows" if size > 4 else f"[{first}]"
