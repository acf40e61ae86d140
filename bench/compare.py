"""compare.py PROGRAM FILE... [--runs N] [--formats]: what an import costs, and what an output does.

Runs two commands by turns and prints, for each pair, the medians of CPU time and peak memory and the
median of the ratio of CPU times, run by run: a ratio holds where the speed of the machine drifts, a
bare time does not. The whole import is held against tools that read or import the same, if they are
installed: osmium fileinfo -e (osmium-tool, reads only), planetsplitter (routino), netconvert (sumo);
all of them Debian packages. With --formats, an import with each output is held against one without.
"""
import argparse
import os
import pathlib
import resource
import shutil
import statistics
import subprocess
import tempfile


FORMATS = ["json", "geojson", "geojsonl", "gpkg", "fgb", "gmns", "graphml"]


def peers(source, folder):
    """Command lines by name; XML-only tools are left out for PBF."""
    commands = {"osmium fileinfo -e": ["osmium", "fileinfo", "-e", source],
                "planetsplitter": ["planetsplitter", f"--dir={folder}", source]}
    if source.endswith((".osm", ".osm.gz")):
        commands["netconvert"] = ["netconvert", "--osm-files", source, "-o", f"{folder}/net.xml",
                                  "--no-warnings"]
    return {name: line for name, line in commands.items() if shutil.which(line[0])}


def measure(command):
    """CPU seconds and peak MiB of one run."""
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise SystemExit(f"{command} failed with {process.returncode}")
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def mib(values):
    """The median peak; that of a process counts from before it became the command, when it was this."""
    own = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024
    peak = statistics.median(values)
    return f"{peak:.1f}" if peak > own else f"< {own:.0f}"


def main():
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("program")
    arguments.add_argument("files", nargs="+")
    arguments.add_argument("--runs", type=int, default=7)
    arguments.add_argument("--formats", action="store_true")
    options = arguments.parse_args()
    row = "{:<30} {:<20} {:>8} {:>8} {:>8} {:>8} {:>8}"
    print(row.format("file", "peer", "ours s", "peer s", "ratio", "ours MiB", "peer MiB"))
    for source in options.files:
        bare = [options.program, source, "--quiet"]
        with tempfile.TemporaryDirectory() as folder:
            if options.formats:
                rows = [(f"{name} / none", [*bare, "-o", f"{folder}/out.{name}", "--overwrite"], bare)
                        for name in FORMATS]
            else:
                rows = [(name, bare, peer) for name, peer in peers(source, folder).items()]
            for name, ours, peer in rows:
                measure(ours), measure(peer)  # to warm the caches
                pairs = [(measure(ours), measure(peer)) for _ in range(options.runs)]
                median = lambda values: statistics.median(values)
                print(row.format(pathlib.Path(source).name, name,
                                 f"{median(a[0] for a, _ in pairs):.3f}",
                                 f"{median(b[0] for _, b in pairs):.3f}",
                                 f"{median(a[0] / b[0] for a, b in pairs):.2f}",
                                 mib(a[1] for a, _ in pairs), mib(b[1] for _, b in pairs)),
                      flush=True)


if __name__ == "__main__":
    main()
