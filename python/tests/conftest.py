"""What the tests share. They run from the root of the repository: docs and doctests name files."""

import json
import os
import pathlib
import subprocess

import pytest

import osm2roadnet as rn

ROOT = pathlib.Path(__file__).resolve().parents[2]
EXAMPLE = "examples/harbour-town.osm"
DATA = ROOT / "../shared/data"
EXTRACT = DATA / "extracts/monaco-osrm.osm.pbf"


def pytest_addoption(parser):
    parser.addoption("--program", default="build/release/bin/osm2roadnet")


@pytest.fixture(autouse=True)
def _at_the_root(monkeypatch):
    monkeypatch.chdir(ROOT)


@pytest.fixture(scope="session")
def town():
    return rn.read(ROOT / EXAMPLE)


@pytest.fixture(scope="session", params=[EXAMPLE, EXTRACT], ids=["town", "extract"])
def source(request):
    path = ROOT / request.param
    if not path.exists():
        pytest.skip("there are no extracts")
    return str(path)


@pytest.fixture(scope="session", params=["compatible", "all", "none"])
def join(request):
    return request.param


@pytest.fixture(scope="session")
def network(source, join):
    return rn.read(source, join=join)


@pytest.fixture(scope="session")
def features(request, source, join, tmp_path_factory):
    """What the program makes of the same file: features of GeoJSON by their kind."""
    path = tmp_path_factory.mktemp("program") / "out.geojson"
    run_program(request.config, source, "-o", path, "--join", join, "--report", f"{path}.json")
    by_kind = {"node": [], "road": [], "restriction": []}
    for feature in json.loads(path.read_text())["features"]:
        by_kind[feature["properties"]["kind"]].append(feature)
    by_kind["report"] = path.with_suffix(".geojson.json").read_text()
    return by_kind


def run_program(config, *arguments):
    program = os.path.join(ROOT, config.getoption("--program"))
    subprocess.run([program, "-q", *map(str, arguments)], check=True)
