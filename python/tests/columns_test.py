"""The columns are what the program writes, and behave like arrays."""

import copy
import gc
import pickle
import subprocess
import sys

import numpy as np
import pytest

import osm2roadnet as rn
from conftest import EXAMPLE, run_program


def test_columns_equal_what_the_program_writes(network, features):
    roads = [feature["properties"] for feature in features["road"]]
    for name in ["id", "name", "highway", "direction", "start_node", "end_node", "length"]:
        wanted = [road["road_id" if name == "id" else name] for road in roads]
        assert list(network.roads[name]) == wanted, name
    for tag in network.tags:
        assert list(network.roads[tag]) == [road[tag] for road in roads], tag
    ways = [ids.tolist() for ids in network.roads["osm_way_ids"]]
    assert ways == [road["osm_way_ids"] for road in roads]
    for feature, line in zip(features["road"], network.roads["geometry"]):
        assert feature["geometry"]["coordinates"] == line.tolist()
    nodes = [(f["properties"]["node_id"], *f["geometry"]["coordinates"]) for f in features["node"]]
    ours = [network.nodes[name].tolist() for name in ("id", "lon", "lat", "elevation")]
    assert list(zip(*ours)) == nodes
    for end in ("start", "end"):
        of_position = network.nodes["id"][network.roads[end]]
        assert np.array_equal(of_position, network.roads[f"{end}_node"])

    restrictions = [feature["properties"] for feature in features["restriction"]]
    assert network.restrictions.rows == len(restrictions)
    for name, column in network.restrictions.items():
        rows = [row.tolist() if isinstance(row, np.ndarray) else row for row in column]
        assert rows == [row[name] for row in restrictions], name
    assert network.report.text == features["report"]
    assert len(network) == len(roads)


@pytest.mark.parametrize(
    "options",
    [{"tags": []}, {"tags": ["surface", " lit "]}, {"tags": "surface,lit"}, {"oneway": "tagged"}],
)
def test_options_are_those_of_the_program(options, request, tmp_path):
    tags = options.get("tags", "maxspeed")
    tags = tags if isinstance(tags, str) else ",".join(tags)
    net = rn.read(EXAMPLE, **{"tags": "maxspeed", **options})
    net.to_file(tmp_path / "ours.geojson")
    oneway = options.get("oneway", "implied")
    arguments = [EXAMPLE, "-o", tmp_path / "theirs.geojson", "--tags", tags, "--oneway", oneway]
    run_program(request.config, *arguments)
    assert (tmp_path / "ours.geojson").read_bytes() == (tmp_path / "theirs.geojson").read_bytes()
    assert net.tags == [tag.strip() for tag in tags.split(",") if tag]


def test_tags_that_are_called_like_columns(tmp_path):
    tags = ["start", "weight", "osm_start", "length", "bbox", "oneway"]
    net = rn.read(EXAMPLE, tags=tags)
    assert net.tags == ["osm_osm_start", "osm_weight", "osm_start", "osm_length", "bbox", "oneway"]
    assert net.roads["start"].dtype == np.int64
    _, frame = net.to_geopandas()
    assert [name for name in ["start", "weight", "osm_start"] if name in frame] == tags[:3]
    assert any("osm_oneway" in edge for *_, edge in net.to_networkx().edges(data=True))
    net.to_parquet(tmp_path / "roads.parquet")


def test_texts(town):
    texts = town.roads["name"]
    values = texts.to_numpy()
    name = texts.categories[3]
    is_it = texts == name
    assert 0 < is_it.sum() < len(texts)
    assert np.array_equal(is_it, values == name)
    assert np.array_equal(texts != name, ~is_it)
    assert np.array_equal(texts == None, [value is None for value in values])  # noqa: E711
    assert np.array_equal(texts.isin([name, None]), is_it | (texts == None))  # noqa: E711
    assert set(texts[is_it]) == {name}
    assert [texts[i] for i in range(-len(texts), len(texts))] == [*values, *values]
    assert np.array_equal(np.asarray(texts), values)
    assert len({id(value) for value in values}) == len(set(values)) == len(texts.categories) + 1
    assert texts.to_arrow().to_pylist() == values.tolist()
    # Equal texts in another dictionary
    codes = np.where(texts.codes < 0, -1, len(texts.categories) - 1 - texts.codes)
    turned = texts.categories[::-1]
    data = np.frombuffer("".join(turned).encode(), np.uint8).copy()
    sizes = [len(text.encode()) for text in turned]
    other = rn.Texts(codes.astype(np.int32), np.cumsum([0, *sizes]), data)
    assert (other == texts).all() and not (other[::-1] == texts).all()
    assert texts[::2].to_arrow().to_pylist() == values[::2].tolist()
    with pytest.raises(IndexError):
        texts[len(texts)]
    with pytest.raises(TypeError, match="=="):
        texts.isin(name)


def test_lists(town):
    ways = town.roads["osm_way_ids"]
    assert ways[-1].tolist() == list(ways)[-1].tolist()
    assert [row.tolist() for row in ways[3:7]] == [row.tolist() for row in list(ways)[3:7]]
    assert ways[3:7] == ways[3:7] and not ways[3:7] == ways[4:8]
    assert ways.to_texts() == [";".join(map(str, row)) for row in ways]
    with pytest.raises(IndexError):
        ways[len(ways)]
    with pytest.raises(TypeError, match="by position or slice"):
        ways[ways.sizes > 1]
    for some in (ways[5:9], ways[3:3]):
        loaded = pickle.loads(pickle.dumps(some))
        assert loaded == some and len(loaded.values) == some.sizes.sum()


def arrays_of(network):
    for columns in (network.nodes, network.roads, network.restrictions):
        for column in columns.values():
            if isinstance(column, np.ndarray):
                yield column
            elif isinstance(column, rn.Lists):
                yield from (column.offsets, column.values)
            else:
                yield from (column.codes, column.offsets, column.data, column.categories)


def test_arrays_are_read_only_and_outlive_the_network():
    network = rn.read(EXAMPLE)
    pairs = [(array, array.copy()) for array in arrays_of(network)]
    assert len(pairs) > 60
    del network
    gc.collect()
    for array, copied in pairs:
        assert not array.flags.writeable
        with pytest.raises(ValueError):
            array[...] = 0
        assert np.array_equal(array, copied, equal_nan=array.dtype.kind == "f")


def test_pickling_copies_and_comparison(town):
    buffers = []
    pickled = pickle.dumps(town, protocol=5, buffer_callback=buffers.append)
    assert len(pickled) < sum(buffer.raw().nbytes for buffer in buffers) / 5
    for loaded in (pickle.loads(pickled, buffers=buffers), pickle.loads(pickle.dumps(town))):
        assert loaded == town and repr(loaded) == repr(town)
        assert not any(array.flags.writeable for array in arrays_of(loaded))
        assert loaded.to_networkx().number_of_edges() > 0
    assert copy.deepcopy(town) == copy.copy(town) == town
    assert town != rn.read(EXAMPLE, join="all") and town != 1

    fresh = rn.read(EXAMPLE)
    for action in (lambda net: net.report, lambda net: net.to_file("/nowhere/x.json")):
        with pytest.raises(RuntimeError, match="read it once more"):
            action(pickle.loads(pickle.dumps(fresh)))
    assert fresh.report and pickle.loads(pickle.dumps(fresh)).report == fresh.report


def test_imports_nothing_but_numpy():
    script = f"import osm2roadnet as rn; net = rn.read({EXAMPLE!r}); repr(net), net._repr_html_()"
    others = "pandas geopandas networkx igraph scipy pyarrow matplotlib shapely tqdm".split()
    command = [sys.executable, "-X", "importtime", "-c", script]
    imported = subprocess.run(command, check=True, capture_output=True, text=True).stderr
    names = {line.rpartition("|")[2].strip() for line in imported.splitlines()}
    assert {"numpy", "osm2roadnet._core"} <= names and not names & set(others)
