"""What the program makes of a file, and how that differs from what the reference import makes."""

import json
import subprocess
import tempfile
from itertools import islice


class Refused(Exception):
    """The program did not import the file."""

    def __init__(self, status, message):
        super().__init__(f"exit status {status}: {message}")
        self.status, self.message = status, message


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
