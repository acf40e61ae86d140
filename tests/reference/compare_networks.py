#!/usr/bin/env python3
"""Compare two networks in the `json` format of osm2roadnet.

    compare_networks.py A.json B.json

Exits 0 if they are equal, else prints up to 20 differences and exits 1 (2 for
wrong arguments). Everything must be equal exactly, except that elevations may
differ by 1e-9 (a mean depends on the order of its terms in the last bits) and
that the roads at a node may be listed in any order. A null equals only a null.
"""

import json
import math
import sys
from itertools import islice

TOLERANCE = 1e-9


def load(path):
    """Parse strictly: NaN and Infinity are not JSON, a key stands once in an object."""

    def refuse(constant):
        raise ValueError(f"{constant} is not JSON")

    def unique(pairs):
        if len(dict(pairs)) != len(pairs):
            raise ValueError(f"an object repeats a key: {[key for key, _ in pairs]}")
        return dict(pairs)

    with open(path, encoding="utf-8") as file:
        return json.load(file, parse_constant=refuse, object_pairs_hook=unique)


def is_number(value):
    return isinstance(value, (int, float)) and not isinstance(value, bool)


def has_id(value):
    return isinstance(value, dict) and is_number(value.get("id"))


def differences(path, a, b):
    """Yield one line per difference between two values at the same path."""
    if isinstance(a, dict) and isinstance(b, dict):
        for key in [*a, *(key for key in b if key not in a)]:
            if key not in a or key not in b:
                yield f"{path}.{key}: only in {'A' if key in a else 'B'}"
            else:
                yield from differences(f"{path}.{key}", a[key], b[key])
    elif isinstance(a, list) and isinstance(b, list):
        yield from list_differences(path, a, b)
    elif is_number(a) and is_number(b):
        if a != b and not (is_elevation(path) and close(a, b)):
            yield f"{path}: {a!r} | {b!r}"
    elif type(a) is not type(b) or a != b:
        yield f"{path}: {a!r} | {b!r}"


def list_differences(path, a, b):
    if path in (".nodes", ".roads") and all(map(has_id, a + b)):
        yield from element_differences(path, a, b)
        return
    if path.endswith(("incomingRoads", "outgoingRoads")) and all(map(is_number, a + b)):
        a, b = sorted(a), sorted(b)
    if len(a) != len(b):
        yield f"{path}: {len(a)} values | {len(b)} values"
        return
    for index, pair in enumerate(zip(a, b)):
        yield from differences(f"{path}[{index}]", *pair)


def element_differences(path, a, b):
    """Match nodes or roads by id, so that one that is missing is one difference."""
    for name, elements in (("A", a), ("B", b)):
        ids = [element["id"] for element in elements]
        if any(first >= second for first, second in zip(ids, ids[1:])):
            yield f"{path}: ids in {name} do not ascend"
    of_a, of_b = ({element["id"]: element for element in elements} for elements in (a, b))
    for key in sorted(of_a.keys() | of_b.keys()):
        if key not in of_a or key not in of_b:
            yield f"{path}[id {key}]: only in {'A' if key in of_a else 'B'}"
        else:
            yield from differences(f"{path}[id {key}]", of_a[key], of_b[key])


def is_elevation(path):
    return ".elevations[" in path or path.endswith(".position[2]")


def close(a, b):
    return math.isclose(a, b, rel_tol=TOLERANCE, abs_tol=TOLERANCE)


def main():
    if len(sys.argv) != 3:
        print("usage: compare_networks.py A.json B.json", file=sys.stderr)
        return 2
    networks = []
    for path in sys.argv[1:]:
        try:
            networks.append(load(path))
        except ValueError as error:
            print(f"{path}: {error}")
            return 1
    found = list(islice(differences("", *networks), 20))
    print(*found, sep="\n", end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
