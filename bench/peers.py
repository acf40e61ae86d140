"""peers.py FILE.osm.pbf... [--runs N]: the Python package beside others that read such files.

Each tool reads the file into GeoDataFrames, or into a MultiDiGraph, in a process of its own, by turns;
printed are the medians of the seconds that it takes, without imports, by the clock and of all
processors, and of the peak memory of the process, and how many rows or edges it made. Each knows roads
of its own kind, so that their numbers differ. OSMnx reads XML alone: the same data, converted by osmium
(not measured). With --program, the package's bare reading is held against the command line's (whole
processes, both). Where each Python is that has the tools is said by --ours and --peers:

    python3 -m venv /tmp/venv-peers
    /tmp/venv-peers/bin/pip install pyrosm osmnx osm2gmns quackosm osmium pyogrio
"""

import argparse
import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

CLASSES = ["motorway", "trunk", "primary", "secondary", "tertiary"]
CLASSES += [f"{name}_link" for name in CLASSES]
CLASSES += ["unclassified", "residential", "living_street", "service", "raceway", "road"]


def ours_frames(path):
    import osm2roadnet
    import osm2roadnet.frames  # which imports what it needs

    return lambda: osm2roadnet.read(path).to_geopandas()[1]


def ours_graph(path):
    import networkx  # noqa: F401
    import shapely  # noqa: F401

    import osm2roadnet

    return lambda: osm2roadnet.read(path).to_networkx()


def ours_read(path):
    import osm2roadnet

    return lambda: osm2roadnet.read(path)


def networkx_itself(path):
    """The same graph once more, of what it is made of."""
    import networkx
    import osm2roadnet

    graph = osm2roadnet.read(path).to_networkx()
    nodes, edges = list(graph.nodes(data=True)), list(graph.edges(data=True))
    del graph

    def build():
        made = networkx.MultiDiGraph()
        made.add_nodes_from(nodes)
        made.add_edges_from(edges)
        return made

    return build


def pyrosm_frames(path):
    import pyrosm

    return lambda: pyrosm.OSM(path).get_network("driving+service")


def pyrosm_graph(path):
    import networkx  # noqa: F401
    import pyrosm

    def build():
        osm = pyrosm.OSM(path)
        nodes, edges = osm.get_network("driving+service", nodes=True)
        return osm.to_graph(nodes, edges, graph_type="networkx")

    return build


def quackosm_frames(path):
    import quackosm

    def build():
        with tempfile.TemporaryDirectory() as folder:
            return quackosm.convert_pbf_to_geodataframe(
                path, {"highway": CLASSES}, working_directory=folder, ignore_cache=True,
                verbosity_mode="silent",
            )  # fmt: skip

    return build


def pyosmium_frames(path):
    import geopandas
    import osmium

    def build():
        ways = osmium.FileProcessor(path).with_locations()
        ways = ways.with_filter(osmium.filter.EntityFilter(osmium.osm.WAY))
        ways = ways.with_filter(osmium.filter.TagFilter(*(("highway", c) for c in CLASSES)))
        ways = ways.with_filter(osmium.filter.GeoInterfaceFilter(tags=["name", "highway"]))
        return geopandas.GeoDataFrame.from_features(ways)

    return build


def gdal_frames(path):
    import pyogrio

    where = f"highway IN ({', '.join(repr(name) for name in CLASSES)})"
    return lambda: pyogrio.read_dataframe(path, layer="lines", where=where)


def osmnx_graph(path):
    import osmnx

    return lambda: osmnx.graph_from_xml(f"{path}.xml.osm")


def osm2gmns_network(path):
    import osm2gmns

    return lambda: osm2gmns.getNetFromFile(path, mode_types="auto")


# What is measured, of whom, with the package whose version is told.
TOOLS = {
    "columns": {"osm2roadnet": (ours_read, "osm2roadnet")},
    "GeoDataFrame": {
        "osm2roadnet": (ours_frames, "osm2roadnet"),
        "pyrosm": (pyrosm_frames, "pyrosm"),
        "QuackOSM": (quackosm_frames, "quackosm"),
        "pyosmium": (pyosmium_frames, "osmium"),
        "GDAL (pyogrio)": (gdal_frames, "pyogrio"),
    },
    "graph": {
        "osm2roadnet": (ours_graph, "osm2roadnet"),
        "NetworkX by itself": (networkx_itself, "networkx"),
        "pyrosm": (pyrosm_graph, "pyrosm"),
        "OSMnx": (osmnx_graph, "osmnx"),
        "osm2gmns (no graph, its own tables)": (osm2gmns_network, "osm2gmns"),
    },
}


def run_one(kind, tool, path):
    """In a process of its own: prints what came of it."""
    from importlib.metadata import version

    prepare, package = TOOLS[kind][tool]
    build = prepare(path)
    start, start_cpu = time.perf_counter(), time.process_time()
    made = build()
    seconds, cpu = time.perf_counter() - start, time.process_time() - start_cpu
    size = len(getattr(made, "edges", made)) if hasattr(made, "__len__") else 0
    print(json.dumps({"seconds": seconds, "cpu": cpu, "size": size, "version": version(package)}))


def measure(command, limit):
    """What a process prints, with its peak memory in MiB; or the reason why not."""
    with tempfile.TemporaryFile("w+") as out, tempfile.TemporaryFile("w+") as err:
        start = time.perf_counter()
        # The threads of NumPy's linear algebra, which nobody needs here, spin for a while after import.
        process = subprocess.Popen(["timeout", str(limit), *command], stdout=out, stderr=err,
                                   env={**os.environ, "OPENBLAS_NUM_THREADS": "1"})
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        seconds = time.perf_counter() - start
        out.seek(0), err.seek(0)
        if process.returncode == 124:
            return {"failure": f"took more than {limit} s"}
        lines = out.read().splitlines()
        if process.returncode != 0:
            return {"failure": (err.read().strip().splitlines() or ["failed"])[-1][:100]}
        told = json.loads(lines[-1]) if lines and lines[-1].startswith("{") else {"size": 0}
        cpu = usage.ru_utime + usage.ru_stime
        memory = usage.ru_maxrss / 1024
        return {"seconds": seconds, "cpu": cpu, "version": "", **told, "MiB": memory}


def main():
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("files", nargs="+")
    arguments.add_argument("--runs", type=int, default=3)
    arguments.add_argument("--limit", type=int, default=600, help="seconds for one run")
    arguments.add_argument("--ours", default=sys.executable, help="a Python with this package")
    arguments.add_argument("--peers", default="/tmp/venv-peers/bin/python")
    arguments.add_argument("--program", help="the program, to hold bare reading against")
    options = arguments.parse_args()
    row = "| {:<24} | {:<12} | {:<42} | {:>8} | {:>8} | {:>6} | {:>9} |"
    print(row.format("file", "what", "tool", "seconds", "CPU s", "MiB", "rows"))
    print(row.format(*["---"] * 7))
    for path in map(os.path.abspath, options.files):
        with tempfile.TemporaryDirectory() as folder:
            # OSMnx finds its XML beside the file of the same name.
            link = os.path.join(folder, os.path.basename(path))
            os.symlink(path, link)
            subprocess.run(["osmium", "cat", path, "-o", f"{link}.xml.osm"], check=True)
            commands = {}
            if options.program:
                commands["columns", "the program"] = [options.program, path, "-q", "--join",
                                                      "compatible", "--oneway", "implied"]
            for kind, tools in TOOLS.items():
                for tool, (_, package) in tools.items():
                    is_ours = package in ("osm2roadnet", "networkx")
                    python = options.ours if is_ours else options.peers
                    commands[kind, tool] = [python, __file__, "--one", kind, tool, link]
            results = {key: [] for key in commands}
            for _ in range(options.runs):
                for key, command in commands.items():
                    if not any("failure" in result for result in results[key]):
                        results[key].append(measure(command, options.limit))
            for (kind, tool), all_runs in results.items():
                last = all_runs[-1]
                name = f"{tool} {last.get('version', '')}".strip()
                if "failure" in last:
                    print(
                        row.format(pathlib.Path(path).name, kind, name, last["failure"], "", "", "")
                    )
                    continue
                seconds, cpu, memory = (
                    statistics.median(result[value] for result in all_runs)
                    for value in ("seconds", "cpu", "MiB")
                )
                figures = f"{seconds:.3f}", f"{cpu:.3f}", f"{memory:.0f}", f"{last['size']:,}"
                print(row.format(pathlib.Path(path).name, kind, name, *figures), flush=True)


if __name__ == "__main__":
    if sys.argv[1:2] == ["--one"]:
        run_one(*sys.argv[2:])
    else:
        main()
