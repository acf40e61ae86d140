"""same_network.py PROGRAM INPUT: the program and the reference import make the same network of INPUT.

Everything must be equal exactly, except that elevations may differ by 1e-9 (a mean depends on the
order of its terms in the last bits) and that the roads at a node may be listed in any order.
"""
import itertools
import json
import math
import subprocess
import sys

from osm_file import OsmFile
from reference_import import network_of


def differences(path, ours, theirs):
    """One line for each place where two values differ."""
    if isinstance(ours, dict) and isinstance(theirs, dict) and list(ours) == list(theirs):
        for key in ours:
            yield from differences(f"{path}.{key}", ours[key], theirs[key])
    elif isinstance(ours, list) and isinstance(theirs, list) and len(ours) == len(theirs):
        if path.endswith(("incomingRoads", "outgoingRoads")):
            ours, theirs = sorted(ours), sorted(theirs)
        for i, pair in enumerate(zip(ours, theirs)):
            yield from differences(f"{path}[{i}]", *pair)
    elif ours != theirs or type(ours) is not type(theirs):
        is_elevation = ".elevations[" in path or path.endswith(".position[2]")
        if not (is_elevation and None not in (ours, theirs)
                and math.isclose(ours, theirs, rel_tol=1e-9, abs_tol=1e-9)):
            yield f"{path}: {ours!r:.200} | {theirs!r:.200}"


def main():
    program, source = sys.argv[1:]
    output = subprocess.run([program, source, "-o", "-"], check=True, stdout=subprocess.PIPE).stdout
    found = list(itertools.islice(
        differences("", json.loads(output), network_of(OsmFile(source))), 20))
    sys.exit("\n".join(found) or 0)


if __name__ == "__main__":
    main()
