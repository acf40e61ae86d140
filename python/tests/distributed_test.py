"""Networks from a cluster are, to the last bit, those of one machine."""

import os
import random
import sys
import threading
import time

import distributed
import geopandas as gpd
import numpy as np
import osmium
import pyarrow as pa
import pyarrow.parquet as pq
import pytest

import osm2roadnet as rn
from conftest import EXTRACT, ROOT
from osm2roadnet.arrow import table_of
from osm2roadnet.distributed.frames import frame_of
from osm2roadnet.distributed.parquet import along_curve
from pbf import write_pbf

sys.path.append(str(ROOT / "tests/reference"))
import random_towns  # noqa: E402


@pytest.fixture(scope="module")
def client():
    with (
        distributed.LocalCluster(
            n_workers=3, threads_per_worker=1, memory_limit="1GiB", dashboard_address=None
        ) as cluster,
        distributed.Client(cluster) as client,
    ):
        yield client


@pytest.fixture(scope="module")
def towns(tmp_path_factory):
    """Random towns with turn restrictions at random, and ids of either sign."""
    rng = random.Random("towns")
    # Wider ranges have steps from id to id that the format can't hold.
    random_towns.ID_RANGES = [(-(2**9), 2**9), (-(2**33), 2**33), (-(2**61), 2**61)]
    builder = random_towns.Builder(rng)
    data = random_towns.union([builder.town() for _ in range(30)])
    usual = {"highway": "road"}  # or hardly any two roads would agree
    ways = [
        (osm_id, nodes, data.tags[osm_id] if rng.random() < 0.3 else usual)
        for osm_id, nodes in data.references.items()
    ]
    meeting = {}
    for osm_id, nodes, _ in ways:
        for node in nodes:
            meeting.setdefault(node, []).append(osm_id)
    relations = []
    for node, (first, *others) in rng.sample(sorted(meeting.items()), len(meeting) // 3):
        over = (0, node, "via") if rng.random() < 0.7 else (1, rng.choice(ways)[0], "via")
        members = [(1, first, "from"), over, (1, rng.choice([first, *others]), "to")]
        kind = rng.choice(["no_left_turn", "only_straight_on", "no_u_turn"])
        tags = {"type": "restriction", "restriction": kind}
        relations.append((builder.fresh_id(), members, tags))
    path = tmp_path_factory.mktemp("towns") / "towns.osm.pbf"
    nodes = [(osm_id, *position) for osm_id, position in data.positions.items()]
    write_pbf(path, nodes, ways, relations, 40)
    return str(path)


@pytest.fixture(scope="module")
def extract(tmp_path_factory):
    """The shared extract in many small blobs."""
    if not EXTRACT.exists():
        pytest.skip("there are no extracts")
    nodes, ways, relations = [], [], []
    for element in osmium.FileProcessor(str(EXTRACT)):
        tags = {tag.k: tag.v for tag in element.tags}
        if element.is_node():
            nodes.append((element.id, element.lat, element.lon))
        elif element.is_way():
            ways.append((element.id, [node.ref for node in element.nodes], tags))
        elif len(element.members):
            members = [("nwr".index(m.type), m.ref, m.role) for m in element.members]
            relations.append((element.id, members, tags))
    path = tmp_path_factory.mktemp("extract") / "extract.osm.pbf"
    write_pbf(path, nodes, ways, relations, 700)
    return str(path)


def assert_same(net, one):
    for name in ("nodes", "roads", "restrictions"):
        mine, its = getattr(net, name).compute(), frame_of(table_of(getattr(one, name)))
        assert list(mine) == list(its)
        for column in its:
            assert same_bits(mine[column], its[column]), (name, column)
    assert net.counts == one.counts and net.limits == one.limits
    assert np.array_equal(net.reference, one.reference, equal_nan=True)
    report = one.report
    assert net.account == {
        "highwayWays": report["highwayWays"],
        "imported": report["imported"],
        **{reason: len(ways) for reason, ways in report["notImported"].items()},
    }


def same_bits(some, others):
    if some.dtype.kind == "f":
        return np.array_equal(some.to_numpy().view(np.int64), others.to_numpy().view(np.int64))
    return pa.chunked_array(pa.array(some)).equals(pa.chunked_array(pa.array(others)))


@pytest.mark.parametrize("join", ["compatible", "all", "none"])
def test_random_towns(client, towns, join):
    chosen = {"join": join, "oneway": "tagged", "tags": ["layer", "ref", "Name"]}
    one = rn.read(towns, **chosen)
    assert join == "none" or one.counts["joined_nodes"] > 10
    assert one.restrictions.rows > 10
    with rn.distributed.read(towns, client=client, partition_size=2000, **chosen) as net:
        assert net.roads.npartitions > 3
        assert_same(net, one)


def test_extract(client, extract, tmp_path):
    one = rn.read(extract)
    with rn.distributed.read(extract, client=client, partition_size=40_000) as net:
        assert net.roads.npartitions > 2
        assert_same(net, one)
        folder = tmp_path / "network"
        net.to_parquet(folder)
        with pytest.raises(FileExistsError):
            net.to_parquet(folder)
    for name, ids_of, columns in (
        ("roads", "road_id", one.road_columns()),
        ("nodes", "node_id", one.node_columns()),
    ):
        files = sorted((folder / name).iterdir())
        assert len(files) > 1
        parts = [gpd.read_parquet(file) for file in files]
        assert all(part.crs == "EPSG:4326" for part in parts)
        whole = [row for part in parts for row in part[ids_of]]
        assert sorted(whole) == sorted(columns[ids_of].tolist())
        first = [np.array([g.coords[0][:2] for g in part.geometry]) for part in parts]
        assert (np.diff(along_curve(np.concatenate(first))) >= 0).all()
        assert set(parts[0]) - {"bbox"} == {*columns, "geometry"}
    (restrictions,) = (folder / "restrictions").iterdir()
    assert pq.read_table(restrictions).num_rows == one.restrictions.rows


@pytest.mark.parametrize("count", [0, 9])
def test_files_without_roads(client, tmp_path, count):
    path = str(tmp_path / "nodes.osm.pbf")
    write_pbf(path, [(osm_id, 1.0, osm_id / 9) for osm_id in range(count)], [], [], 2)
    with rn.distributed.read(path, client=client, partition_size=1) as net:
        assert_same(net, rn.read(path))
        net.to_parquet(tmp_path / "network")
    assert gpd.read_parquet(tmp_path / "network" / "roads").empty


def test_a_worker_that_dies(client, extract):
    """What it had is made again, wherever the import is."""
    killed = []

    def kill_one():
        while not client.run_on_scheduler(_has_begun, "cut ways"):
            time.sleep(0.01)
        address, process = next(iter(client.run(os.getpid).items()))
        os.kill(process, 9)
        killed.append(address)

    killer = threading.Thread(target=kill_one)
    killer.start()
    with rn.distributed.read(extract, join="all", client=client, partition_size=20_000) as net:
        killer.join()
        assert_same(net, rn.read(extract, join="all"))
    assert killed


def _has_begun(prefix, dask_scheduler):
    return prefix in dask_scheduler.task_prefixes


def refusal(read, path, **arguments):
    with pytest.raises(rn.ReadError) as raised:
        read(path, **arguments)
    return str(raised.value)


def test_files_that_are_refused(client, extract, tmp_path):
    content = open(extract, "rb").read()
    bad = tmp_path / "bad.osm.pbf"

    def refused(made):
        bad.write_bytes(made)
        message = refusal(rn.distributed.read, bad, client=client, partition_size=30_000)
        assert "\n" not in message
        return message

    def damaged(*places):
        made = bytearray(content)
        for place in places:
            made[place] ^= 0xFF
        return bytes(made)

    # In the last blob, in several, in a header, and cut short
    for made in (
        damaged(len(content) - 9),
        damaged(len(content) - 9, len(content) // 2),
        damaged(len(content) // 3, len(content) // 2),
        damaged(2),
        content[:-1],
        content[: len(content) // 2],
        b"",
        b"PK\x03\x04",
    ):
        assert refused(made) == refusal(rn.read, bad)
    for made in (b"\x1f\x8b", b"BZh9"):
        assert 'only a PBF file can be read in parts; "osmium sort' in refused(made)
    xml = tmp_path / "town.osm"
    xml.write_bytes(b"<osm/>")
    assert 'only a PBF file can be read in parts; "osmium sort' in refusal(
        rn.distributed.read, xml, client=client
    )
    missing = tmp_path / "none.osm.pbf"
    assert refusal(rn.distributed.read, missing, client=client) == refusal(rn.read, missing)


@pytest.mark.parametrize("blob_size", [1, 100])
def test_files_that_are_not_sorted(client, tmp_path, blob_size):
    path = tmp_path / "unsorted.osm.pbf"
    nodes = [(osm_id, 0.0, osm_id / 100) for osm_id in range(1, 9)]
    write_pbf(path, nodes, [(1, [1, 2], {"highway": "road"})], [], blob_size)
    one, two = tmp_path / "one", tmp_path / "two"
    write_pbf(one, nodes[4:], [], [], blob_size)
    write_pbf(two, nodes[:4], [(1, [1, 2], {"highway": "road"})], [], blob_size)
    header = two.read_bytes().index(b"OSMData") - 6
    path.write_bytes(one.read_bytes() + two.read_bytes()[header:])
    message = refusal(rn.distributed.read, path, client=client, partition_size=1)
    assert "node 1 stands behind node 8: only a sorted file" in message
    assert "osmium sort" in message


def test_arguments(towns):
    for arguments in ({"join": "some"}, {"partition_size": 0}, {"tags": ["highway"]}):
        with pytest.raises(ValueError):
            rn.distributed.read(towns, **arguments)
