"""What others make of a network, with their own functions."""

import errno
import html
import json
import math
import os
import pathlib
import shutil
import sys
import xml.etree.ElementTree as ElementTree

import geopandas
import matplotlib
import networkx
import numpy as np
import osmnx
import pyarrow.parquet
import pyogrio
import pytest
import scipy.sparse.csgraph
import shapely

import osm2roadnet as rn
from conftest import run_program

matplotlib.use("agg")


@pytest.fixture(scope="module")
def graph(network):
    return network.to_networkx()


def test_geodataframes(network):
    nodes, roads = network.to_geopandas()
    assert nodes.crs == roads.crs == "EPSG:4326"
    assert roads.index.name == "road_id" and nodes.index.name == "node_id"
    assert (roads.geometry.count_coordinates() == network.roads["geometry"].sizes).all()
    for end, at in (("start_node", 0), ("end_node", -1)):
        ends = shapely.get_point(roads.geometry.values, at)
        assert (ends == nodes.geometry.loc[roads[end]].values).all()
    for name in ("name", "highway", *network.tags):
        texts = roads[name].astype(object).where(roads[name].notna(), None)
        assert texts.tolist() == list(network.roads[name]), name
        assert roads[name].dtype == roads["highway"].dtype
    metres = roads.geometry.to_crs(roads.estimate_utm_crs()).length
    assert np.allclose(metres, network.roads["length"], rtol=2e-3, atol=0.01)


def test_edges_of_the_graph(network, graph):
    roads = network.roads
    direction = roads["direction"]
    assert graph.number_of_edges() == len(network) + np.sum(direction == 3)
    of_nodes = zip(*(network.nodes[name].tolist() for name in ("id", "lon", "lat")))
    places = {node: (x, y) for node, x, y in of_nodes}
    assert list(graph) == list(places)
    rows = {road: row for row, road in enumerate(roads["id"].tolist())}
    seen = []
    for source, target, edge in graph.edges(data=True):
        road = rows[edge["road_id"]]
        ends = [int(roads[end][road]) for end in ("start_node", "end_node")]
        line = [tuple(point[:2]) for point in roads["geometry"][road].tolist()]
        coordinates = list(edge["geometry"].coords)
        is_forward = ends == [source, target] and coordinates == line
        assert is_forward or (ends == [target, source] and coordinates == line[::-1])
        assert (coordinates[0], coordinates[-1]) == (places[source], places[target])
        assert direction[road] in (3, 1 if is_forward else 2)
        assert edge["oneway"] is bool(direction[road] != 3)
        assert edge["length"] == roads["length"][road]
        ids = edge["osmid"] if isinstance(edge["osmid"], list) else [edge["osmid"]]
        assert ids == roads["osm_way_ids"][road].tolist()
        assert isinstance(edge["osmid"], int) or len(ids) > 1
        for tag in ("name", "highway", *network.tags):
            value = edge.get("osm_oneway" if tag == "oneway" else tag)
            assert (";".join(value) if isinstance(value, list) else value) == roads[tag][road]
        seen.append((edge["road_id"], is_forward))
    assert len(set(seen)) == len(seen)
    edges = graph.edges(data=True)
    lists = [id(value) for *_, edge in edges for value in edge.values() if isinstance(value, list)]
    assert len(set(lists)) == len(lists)


def test_osmnx_takes_the_graph_as_its_own(graph, tmp_path):
    osmnx.convert.validate_graph(graph)
    counts = osmnx.stats.count_streets_per_node(graph)
    assert counts == dict(graph.nodes(data="street_count"))
    stats = osmnx.stats.basic_stats(graph)
    assert stats["n"] == len(graph) and stats["street_length_total"] > 0

    graph = osmnx.add_edge_travel_times(osmnx.add_edge_speeds(graph, fallback=50))
    (origin, *_), target = graph, max(networkx.strongly_connected_components(graph), key=len).pop()
    origin = next(iter(networkx.ancestors(graph, target)))
    for weight in ("length", "travel_time"):
        route = osmnx.shortest_path(graph, origin, target, weight=weight)
        assert (route[0], route[-1]) == (origin, target)
    x, y = graph.nodes[target]["x"], graph.nodes[target]["y"]
    assert osmnx.nearest_nodes(graph, x, y) == target

    nodes, edges = osmnx.graph_to_gdfs(graph)
    again = osmnx.graph_from_gdfs(nodes, edges)
    assert networkx.utils.graphs_equal(again, graph) or len(again.edges) == len(graph.edges)
    projected = osmnx.project_graph(graph)
    lengths = osmnx.graph_to_gdfs(projected, nodes=False)
    assert np.allclose(lengths.geometry.length, lengths["length"], rtol=2e-3, atol=0.01)

    osmnx.save_graphml(graph, tmp_path / "graph.graphml")
    loaded = osmnx.load_graphml(tmp_path / "graph.graphml")
    for one, other in zip(graph.edges(data=True, keys=True), loaded.edges(data=True, keys=True)):
        same = {name: value for name, value in one[3].items() if name != "road_id"}
        assert one[:3] == other[:3]
        assert same == {name: other[3][name] for name in same}
    figure, _ = osmnx.plot_graph(graph, show=False)
    assert figure.axes


def test_reversed_is_what_osmnx_makes_of_the_same_ways(tmp_path):
    path = tmp_path / "ways.osm"
    ways = {
        1: ([1, 2], ""),
        2: ([3, 2], ""),
        3: ([3, 4], "-1"),
        4: ([4, 5], "yes"),
        5: ([6, 5], ""),
    }
    lines = [f"<node id='{i}' lat='{i * i / 1e4}' lon='{i / 1e4}'/>" for i in range(1, 7)]
    for way, (nodes, oneway) in ways.items():
        tags = {"highway": "service", "name": "Quay", "oneway": oneway}
        lines.append(f"<way id='{way}'>" + "".join(f"<nd ref='{node}'/>" for node in nodes))
        lines += [f"<tag k='{k}' v='{v}'/>" for k, v in tags.items() if v]
        lines.append("</way>")
    path.write_text(f"<osm version='0.6'>{''.join(lines)}</osm>")

    def edges(graph):
        return {
            (u, v): (
                sorted(np.atleast_1d(edge["reversed"]).tolist()),
                sorted(np.atleast_1d(edge["osmid"]).tolist()),
                edge["oneway"],
            )
            for u, v, edge in graph.edges(data=True)
        }

    net = rn.read(path)
    ours = edges(net.to_networkx())
    assert ours == edges(osmnx.graph_from_xml(path, retain_all=True))
    assert ours[1, 3] == ([False, True], [1, 2], False)
    net.against_ways = np.ones_like(net.against_ways)  # as if all were drawn the other way
    assert edges(net.to_networkx())[1, 3] == ([True], [1, 2], False)


def test_matrix(network, graph):
    matrix, nodes = network.to_csr()
    assert nodes.tolist() == list(graph) and matrix.has_sorted_indices
    wanted = networkx.single_source_dijkstra_path_length(graph, nodes[0], weight="length")
    found = scipy.sparse.csgraph.dijkstra(matrix, indices=0)
    for node, metres in zip(nodes.tolist(), found):
        assert math.isclose(wanted.get(node, np.inf), metres, rel_tol=1e-12)
    pairs = {(u, v) for u, v in graph.edges()}
    hops, _ = network.to_csr(weight=None)
    assert hops.sum() == len(pairs) == matrix.nnz
    twice, _ = network.to_csr(weight=network.roads["length"] * 2)
    assert (twice != matrix * 2).nnz == 0
    with pytest.raises(ValueError, match="shape"):
        network.to_csr(weight=[1.0])


def test_igraph(network, graph):
    made = network.to_igraph()
    assert made.is_directed() and made.vs["osmid"] == list(graph)
    ids = made.vs["osmid"]
    edges = [(ids[e.source], ids[e.target], e["road_id"], e["length"]) for e in made.es]
    wanted = [(u, v, e["road_id"], e["length"]) for u, v, e in graph.edges(data=True)]
    assert sorted(edges) == sorted(wanted)
    names = {road: name for road, name in zip(made.es["road_id"], made.es["name"])}
    if network.join != "all":  # where names are lists
        assert names == dict(zip(network.roads["id"].tolist(), network.roads["name"]))


def test_arrow_and_parquet(network, tmp_path):
    _, roads = network.to_geopandas()
    nodes_table, roads_table = network.to_arrow()
    memory = roads_table["length"].chunk(0).buffers()[1].address
    assert memory == network.roads["length"].ctypes.data
    assert (geopandas.GeoDataFrame.from_arrow(roads_table).geometry == roads.geometry.values).all()
    assert nodes_table.num_rows == network.nodes.rows

    paths = [tmp_path / "roads.parquet", tmp_path / "nodes.parquet"]
    network.to_parquet(*paths)
    with pytest.raises(FileExistsError):
        network.to_parquet(paths[0])
    read = geopandas.read_parquet(paths[0])
    assert read.crs == roads.crs and (read.geometry == roads.geometry.values).all()
    read["osm_way_ids"] = [";".join(map(str, ids)) for ids in read["osm_way_ids"]]
    assert read.astype(object).equals(roads.reset_index()[read.columns].astype(object))
    west, south, east, north = roads.total_bounds
    box = (west, south, (west + east) / 2, (south + north) / 2)
    inside = geopandas.read_parquet(paths[0], bbox=box)
    assert set(inside["road_id"]) == set(roads.index[roads.bounds.pipe(meets, box)])
    metadata = json.loads(pyarrow.parquet.read_schema(paths[1]).metadata[b"geo"])
    sides = pyarrow.parquet.read_table(paths[0])["bbox"].to_pylist()
    assert sides == roads.bounds.set_axis(["xmin", "ymin", "xmax", "ymax"], axis=1).to_dict(
        "records"
    )
    column = metadata["columns"]["geometry"]
    assert metadata["version"] == "1.1.0" and column["geometry_types"] == ["Point Z"]
    assert len(column["bbox"]) == 6
    assert geopandas.read_parquet(paths[1]).geometry.has_z.all()


def meets(bounds, box):
    return (
        (bounds.minx <= box[2])
        & (bounds.maxx >= box[0])
        & (bounds.miny <= box[3])
        & (bounds.maxy >= box[1])
    )


@pytest.mark.parametrize(
    "ending", ["gpkg", "fgb", "gmns", "graphml", "geojson", "ndjson", "html", "json"]
)
def test_files_are_the_programs(ending, source, tmp_path, request):
    network = rn.read(source)
    ours, theirs = tmp_path / f"ours.{ending}", tmp_path / f"theirs.{ending}"
    defaults = ["--join", "compatible", "--oneway", "implied"]
    run_program(request.config, source, "-o", theirs, *defaults)
    network.to_file(ours)
    if ending in ("gpkg", "fgb"):
        for layer in ("nodes", "roads", "restrictions"):
            names = [path if ending == "gpkg" else path / f"{layer}.fgb" for path in (ours, theirs)]
            mine, wanted = (pyogrio.read_info(name, layer=layer) for name in names)
            for fact in ("fields", "dtypes", "geometry_type", "features", "crs"):
                assert np.array_equal(mine[fact], wanted[fact]), (layer, fact)
            mine, wanted = (pyogrio.read_dataframe(name, layer=layer) for name in names)
            order = [name for name in mine.columns if name.endswith("_id")]
            mine, wanted = (frame.sort_values(order, ignore_index=True) for frame in (mine, wanted))
            assert mine.drop(columns="length", errors="ignore").equals(
                wanted.drop(columns="length", errors="ignore")
            )
    elif ours.is_dir():
        for path in theirs.iterdir():
            if path.name not in ("link.csv", "movement.csv"):
                assert path.read_bytes() == (ours / path.name).read_bytes(), path.name
    elif ending != "json":  # which has a way to join of its own
        assert ours.read_bytes() == theirs.read_bytes()
    with pytest.raises(FileExistsError):
        network.to_file(ours)
    network.to_file(ours, overwrite=True)
    assert sorted(path.name for path in tmp_path.iterdir()) == [ours.name, theirs.name]


def test_styles_for_qgis(town, tmp_path):
    town.to_file(tmp_path / "town.gpkg")
    layers = dict(pyogrio.list_layers(tmp_path / "town.gpkg"))
    assert layers["layer_styles"] is None and layers["roads"] == "LineString Z"
    styles = pyogrio.read_dataframe(tmp_path / "town.gpkg", layer="layer_styles")
    assert styles["f_table_name"].tolist() == ["nodes", "roads", "restrictions"]
    assert all(ElementTree.fromstring(style).tag == "qgis" for style in styles["styleQML"])


def test_outputs_are_whole_or_not_at_all(town, tmp_path, monkeypatch):
    kept = tmp_path / "kept.gpkg"
    town.to_file(kept)
    before = kept.read_bytes()

    def fail(*arguments, **options):
        raise OSError("disk full")

    monkeypatch.setattr(pyogrio, "write_arrow", fail)
    for name in ("new.gpkg", "kept.gpkg", "new.fgb"):
        with pytest.raises(OSError, match="full"):
            town.to_file(tmp_path / name, overwrite=True)
    assert [path.name for path in tmp_path.iterdir()] == ["kept.gpkg"]
    assert kept.read_bytes() == before
    folder = tmp_path / "folder.fgb"
    folder.mkdir()
    (folder / "letter.txt").touch()
    for name in ("gpkg", "fgb", "gmns"):
        with pytest.raises(OSError):
            town.to_file(folder, name, overwrite=True)
    with pytest.raises(ValueError, match="no format"):
        town.to_file(tmp_path / "town.shp")


def test_odd_names(town, tmp_path):
    for name in ("t\udcff.gpkg", "n" * 250 + ".gpkg", "t\udcff.fgb", "t\udcff.parquet"):
        write = town.to_parquet if name.endswith("parquet") else town.to_file
        write(tmp_path / name)
        assert (tmp_path / name).exists(), name
    fifo, folder = tmp_path / "fifo", tmp_path / "empty"
    os.mkfifo(fifo), folder.mkdir()
    file = tmp_path / "t\udcff.gpkg"
    refused = [
        (OSError, "neither a file", lambda: town.to_file(fifo, "gpkg", overwrite=True)),
        (OSError, "is a folder", lambda: town.to_file(folder, "gpkg")),
        (OSError, "is not a folder", lambda: town.to_file(file, "fgb", overwrite=True)),
        (FileNotFoundError, "udcff/no/x.json", lambda: town.to_file(tmp_path / "\udcff/no/x.json")),
        (ValueError, "null byte", lambda: town.to_file(f"{tmp_path}/nul\0x.json")),
        (ValueError, "both", lambda: town.to_parquet(tmp_path / "x", tmp_path / "empty/../x")),
        (TypeError, "path", lambda: town.to_file(1)),
        (TypeError, "format", lambda: town.to_file("x", 1)),
    ]
    before = sorted(tmp_path.iterdir())
    for error, words, action in refused:
        with pytest.raises(error, match=words):
            action()
    assert sorted(tmp_path.iterdir()) == before
    with pytest.raises(OSError) as caught:
        town.to_file("/dev/full/x.json")
    assert caught.value.filename == "/dev/full/x.json" and caught.value.errno == errno.ENOTDIR


@pytest.mark.parametrize("error", [OSError, KeyboardInterrupt])
def test_what_can_not_be_replaced_stays(error, town, tmp_path, monkeypatch):
    town.to_file(tmp_path / "kept.fgb")

    def fail(*arguments):
        raise error("enough")

    monkeypatch.setattr(pathlib.Path, "replace", fail)
    with pytest.raises(error, match="enough"):
        town.to_file(tmp_path / "kept.fgb", overwrite=True)
    assert len(list((tmp_path / "kept.fgb").iterdir())) == 3


def test_what_gdal_refuses_names_the_output(town, tmp_path, monkeypatch):
    def fail(*arguments, **options):
        raise pyogrio.errors.DataLayerError("no space")

    monkeypatch.setattr(pyogrio, "write_arrow", fail)
    with pytest.raises(OSError, match="no space.*x.gpkg"):
        town.to_file(tmp_path / "x.gpkg")


def test_pictures(network):
    axes = network.plot(oneways=True)
    lines = sum(len(collection.get_paths()) for collection in axes.collections[:-1])
    arrows = axes.collections[-1]
    assert lines == len(network) and arrows.N == np.sum(network.roads["direction"] != 3)
    assert network.plot(ax=axes) is axes
    matplotlib.pyplot.close("all")
    shown = network._repr_html_()
    assert f"{len(network):,}" in shown and len(shown) < 200_000
    picture = shown[shown.index("<svg") : shown.index("</svg>") + 6]
    paths = "".join(path.get("d", "") for path in ElementTree.fromstring(picture).iter())
    assert paths.count("M") == min(len(network), 2000)
    assert "traps" in network.report._repr_html_()


def test_the_map_page_opens_and_shows_itself(town, tmp_path, monkeypatch):
    opened = []
    monkeypatch.setattr("webbrowser.open", opened.append)
    page = town.explore()
    assert opened == [page.path.as_uri()] and page.path.name == "harbour-town.osm.html"
    town.explore(tmp_path / "town.html", show=False)
    assert len(opened) == 1 and (tmp_path / "town.html").read_bytes() == page.path.read_bytes()
    shown = html.unescape(page._repr_html_())
    assert f'srcdoc="{page.path.read_text(encoding="utf-8")}"' in shown
    shutil.rmtree(page.path.parent)
    monkeypatch.setattr("osm2roadnet._core.comfortable_roads", len(town) - 1)
    with pytest.warns(UserWarning, match=f"more than {len(town) - 1} roads") as warned:
        town.explore(tmp_path / "town.html", show=False, overwrite=True)
    assert warned[0].filename == __file__


@pytest.mark.parametrize(
    "module, extra, convert",
    [
        ("geopandas", "geo", lambda net: net.to_geopandas()),
        ("networkx", "graphs", lambda net: net.to_networkx()),
        ("scipy", "graphs", lambda net: net.to_csr()),
        ("igraph", "graphs", lambda net: net.to_igraph()),
        ("pyarrow", "arrow", lambda net: net.to_arrow()),
        ("pyarrow", "arrow", lambda net: net.to_parquet("/nowhere/x")),
        ("pyogrio", "files", lambda net: net.to_file("/nowhere/x.gpkg")),
        ("matplotlib", "plot", lambda net: net.plot()),
    ],
)
def test_what_is_not_installed_is_named(module, extra, convert, town, monkeypatch):
    for name in [name for name in sys.modules if name.startswith("osm2roadnet.")]:
        monkeypatch.delitem(sys.modules, name)
    for name in [name for name in sys.modules if name.split(".")[0] == module]:
        monkeypatch.setitem(sys.modules, name, None)
    monkeypatch.setitem(sys.modules, module, None)
    with pytest.raises(ImportError, match=rf'needs {module}: pip install "osm2roadnet\[{extra}\]"'):
        convert(town)


def test_what_is_broken_is_not_called_missing(town, tmp_path, monkeypatch):
    (tmp_path / "igraph.py").write_text("import numpy.nothing")
    monkeypatch.syspath_prepend(tmp_path)
    monkeypatch.delitem(sys.modules, "igraph", raising=False)
    with pytest.raises(ImportError, match=r"^No module named 'numpy\.nothing'$"):
        town.to_igraph()


@pytest.mark.parametrize("content", ["", "<node id='1' lat='1' lon='2'/>"])
def test_empty_networks(content, tmp_path):
    net = rn.read(f"<osm version='0.6'>{content}</osm>".encode())
    assert len(net) == 0 and net and net == rn.read(b"<osm version='0.6'/>")
    assert [len(frame) for frame in net.to_geopandas()] == [0, 0]
    assert len(net.to_networkx()) == net.to_csr()[0].nnz == net.to_igraph().ecount() == 0
    net.to_parquet(tmp_path / "roads.parquet", tmp_path / "nodes.parquet")
    assert len(geopandas.read_parquet(tmp_path / "roads.parquet")) == 0
    for ending in ("gpkg", "fgb", "gmns", "geojson", "graphml"):
        net.to_file(tmp_path / f"empty.{ending}")
    net.plot(oneways=True), net._repr_html_(), net.report._repr_html_()
