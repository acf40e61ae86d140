"""comparison.py PROGRAM INPUT: program and reference import make the same of it, to the bit."""

import json
import subprocess
import sys
import tempfile
from itertools import islice

from osm_data import read_osm
from reference_import import network_of


class Refused(Exception):
    """The program did not import the file."""

    def __init__(self, status, message):
        super().__init__(f"exit status {status}: {message!r}")
        self.status, self.message = status, message

    def is_one_line_about(self, path):
        lines = self.message.splitlines(keepends=True)
        is_one_line = len(lines) == 1 and lines[0].endswith("\n")
        return is_one_line and self.status == 1 and lines[0].startswith(f"osm2roadnet: {path}: ")


def run(program, path):
    """The network as `network_of` describes it."""
    with tempfile.NamedTemporaryFile(suffix=".json") as report:
        arguments = [program, path, "-q", "-o", "-", "-r", report.name, "--overwrite"]
        done = subprocess.run(arguments, capture_output=True, check=False)
        if done.returncode:
            raise Refused(done.returncode, done.stderr.decode(errors="replace"))
        with open(report.name, encoding="utf-8") as written:
            return {**json.loads(done.stdout), "ways": json.load(written)["roads"]}


def differences(ours, theirs, path=""):
    """One line for each place where two values differ in any bit."""
    if repr(ours) == repr(theirs):
        return
    if isinstance(ours, dict) and isinstance(theirs, dict) and list(ours) == list(theirs):
        for key in ours:
            yield from differences(ours[key], theirs[key], f"{path}.{key}")
    elif isinstance(ours, list) and isinstance(theirs, list) and len(ours) == len(theirs):
        for i, pair in enumerate(zip(ours, theirs)):
            yield from differences(*pair, f"{path}[{i}]")
    else:
        yield f"{path}: {ours!r:.200} | {theirs!r:.200}"


def first_differences(ours, theirs):
    """Text, empty where there are none."""
    return "\n".join(islice(differences(ours, theirs), 20))


if __name__ == "__main__":
    program, source = sys.argv[1:]
    sys.exit(first_differences(run(program, source), network_of(read_osm(source))) or 0)
