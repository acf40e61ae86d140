"""malformed_files.py PROGRAM FOLDER: what the program makes of the odd and broken files in FOLDER.

MANIFEST.tsv has a row for each: whether it is accepted or rejected (any: either), and maybe the
graph that is made of it. What is accepted must also be the network that the reference import makes.
"""

import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from comparison import Refused, first_differences, run
from osm_data import read_osm
from reference_import import find_junctions, import_network, network_of, select_ways


def descriptions(data):
    """The graph in the words of the manifest: in full, with the number of roads, with names."""
    nodes, roads = import_network(data)
    roads = list(roads.values())
    junctions = find_junctions([data.references[way] for way in select_ways(data)])
    counts = (
        f"ACCEPT; junctions {len(junctions)}, roads cut {sum(road.weight for road in roads):.0f}"
        f" -> Nodes {len(nodes)}, roads {len(roads)}"
    )
    lines = "; ".join(
        f"{road.id}:{road.line} dir{road.direction} ways{sorted(road.way_ids)}" for road in roads
    )
    names = "; ".join(f'"{road.name}"' for road in roads)
    return [f"{counts} [{lines}]", f"{counts} [{len(roads)} roads]", f"ACCEPT; {names}"]


def fault(program, folder, row):
    """What is wrong with what the program made of a row's file; empty where nothing is."""
    name, expected, _, graph = row
    path = str(folder / name)
    try:
        network = run(program, path)
    except Refused as refused:
        if expected == "accept" or not refused.is_one_line_about(path):
            return f"refused: {refused}"
        return ""
    if expected != "accept":
        return "not rejected" if expected == "reject" else ""
    try:
        data = read_osm(path)
    except UnicodeDecodeError as error:  # pyosmium hands no text over that is not UTF-8
        print(f"{path}: not compared: {error}")
        return ""
    if graph and graph not in descriptions(data):
        return f"the reference makes {descriptions(data)[0]} instead of {graph}"
    return first_differences(network, network_of(data))


def main():
    program, folder = sys.argv[1], Path(sys.argv[2])
    if not folder.exists():
        sys.exit(f"skipped: there is no {folder}")
    lines = (folder / "MANIFEST.tsv").read_text(encoding="utf-8").splitlines()
    rows = [line.split("\t") for line in lines[1:]]
    with ThreadPoolExecutor() as pool:
        faults = list(pool.map(lambda row: fault(program, folder, row), rows))
    wrong = [f"{row[0]}: {text}" for row, text in zip(rows, faults) if text]
    print(f"{len(rows)} files, {len(wrong)} of them wrong")
    sys.exit("\n".join(wrong) or not rows)


if __name__ == "__main__":
    main()
