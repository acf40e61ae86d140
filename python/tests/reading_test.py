"""Reading: sources, errors, progress, interrupts, threads, memory."""

import bz2
import gc
import gzip
import io
import os
import pathlib
import resource
import subprocess
import sys
import tempfile
import threading
import time

import pytest

import osm2roadnet as rn
from conftest import DATA, EXAMPLE


def opened(path, offset=0):
    file = open(path, "rb")
    file.seek(offset)
    return file


def test_every_source_gives_the_same(town, tmp_path):
    content = pathlib.Path(EXAMPLE).read_bytes()
    packed, moved = tmp_path / "town.bz2", tmp_path / "t\udcff\u00fc.osm"
    packed.write_bytes(bz2.compress(content))
    moved.write_bytes(b"no map" + content)
    ahead = opened(moved)
    ahead.read(6)  # Python has read more than that
    unnamed = tempfile.TemporaryFile()
    unnamed.write(content), unnamed.seek(0)
    reader, writer = os.pipe()
    feeder = threading.Thread(target=lambda: open(writer, "wb").write(content), daemon=True)
    feeder.start()
    sources = {
        EXAMPLE: EXAMPLE,
        "harbour-town.osm": pathlib.Path(EXAMPLE),
        "<bytes>": content,
        "<memoryview>": memoryview(content),
        "<BytesIO>": io.BytesIO(content),
        str(packed): packed,
        "town.bz2": bz2.open(packed),
        str(moved): ahead,
        "unbuffered": open(EXAMPLE, "rb", buffering=0),
        "unnamed": unnamed,
        "pipe": open(reader, "rb"),
    }
    for name, source in sources.items():
        net = rn.read(source)
        assert net == town, name
    feeder.join()


@pytest.mark.parametrize(
    "source, place, reason",
    [
        ("no/such/file.osm", "", "No such file"),
        (".", "", "directory"),
        (b"", "", "empty"),
        (b"<osm version='0.6'><node id='1' lat='x' lon='2'/></osm>", "line 1, column", '"x"'),
        (io.BytesIO(b"PK\x03\x04"), "", "not"),
    ],
)  # fmt: skip
def test_refused_files_say_where_and_why(source, place, reason):
    with pytest.raises(rn.ReadError) as caught:
        rn.read(source)
    error = caught.value
    assert isinstance(error, OSError)
    assert place in error.place and reason in error.reason
    assert error.filename == (source if isinstance(source, str) else "<bytes>")
    parts = (error.filename, error.place, error.reason)
    assert str(error) == ": ".join(part for part in parts if part)


def test_files_that_are_open(tmp_path, town):
    content = pathlib.Path(EXAMPLE).read_bytes()
    path = tmp_path / "town.osm"
    path.write_bytes(content[:-30])
    packed = tmp_path / "town.gz"
    packed.write_bytes(gzip.compress(content[:-30]))
    for name, file in ((path, open(os.fsencode(path), "rb")), (packed, gzip.open(packed))):
        with pytest.raises(rn.ReadError) as caught:
            rn.read(file)
        assert caught.value.filename == str(name)
        assert file.tell() == len(content) - 30
    path.write_bytes(b"skipped" + content)
    file, calls = opened(path, 7), []
    assert rn.read(file, progress=lambda *call: calls.append(call)) == town
    assert file.tell() == len(content) + 7
    assert {total for stage, _, total in calls if stage == calls[0][0]} == {len(content)}
    with tempfile.NamedTemporaryFile() as named:
        named.write(content), named.seek(0)
        assert rn.read(named) == town and named.tell() == len(content)


def test_whatever_the_program_refuses_raises(request):
    folder = DATA / "malformed"
    if not folder.exists():
        pytest.skip("there are no malformed files")
    program = request.config.getoption("--program")
    files = sorted(path for path in folder.glob("*/*") if path.is_file())[::4]
    for path in files:
        line = subprocess.run([program, "-q", path], capture_output=True, text=True).stderr
        try:
            rn.read(path)
            raised = ""
        except rn.ReadError as error:
            raised = f"osm2roadnet: {error}\n"
        assert raised == line
    assert len(files) > 50


@pytest.mark.parametrize(
    "error, arguments",
    [
        (ValueError, {"join": "some"}),
        (ValueError, {"oneway": "maybe"}),
        (ValueError, {"tags": ["highway"]}),
        (ValueError, {"tags": ["lit", " lit"]}),
        (ValueError, {"threads": -1}),
        (ValueError, {"threads": 10**30}),
        (ValueError, {"source": "a\0b"}),
        (TypeError, {"join": 1}),
        (TypeError, {"oneway": None}),
        (TypeError, {"tags": [1]}),
        (TypeError, {"tags": 1}),
        (TypeError, {"threads": "all"}),
        (TypeError, {"progress": 1}),
        (TypeError, {"source": 1}),
        (TypeError, {"source": io.StringIO("<osm/>")}),
        (TypeError, {"source": None}),
    ],
)
def test_wrong_arguments(error, arguments):
    with pytest.raises(error) as caught:
        rn.read(**{"source": EXAMPLE, **arguments})
    assert "\n" not in str(caught.value)
    name = next(iter(arguments))
    assert name in str(caught.value) or name == "source"


def test_progress(source, capsys):
    calls = []
    net = rn.read(source, progress=lambda *call: calls.append(call))
    stages = [stage for stage, _, _ in calls]
    assert len(set(stages)) == len([s for s, last in zip(stages, ["", *stages]) if s != last]) > 1
    for stage in set(stages):
        done = [done for of, done, _ in calls if of == stage]
        assert done == sorted(done)
    assert rn.read(source, progress=True) == net
    assert capsys.readouterr() == ("", "")  # there is no terminal

    for at in (0, len(calls) // 2):

        def stop(*call, left=[at]):
            if left[0] == 0:
                raise KeyError("enough")
            left[0] -= 1

        with pytest.raises(KeyError, match="enough"):
            rn.read(source, progress=stop)
    assert rn.read(source) == net


@pytest.fixture(scope="module")
def large(tmp_path_factory):
    """A file that takes some seconds to read."""
    path = tmp_path_factory.mktemp("large") / "grid.osm"
    size = 700
    with open(path, "w") as file:
        file.write("<osm version='0.6'>\n")
        for y in range(size):
            for x in range(size):
                where = f"lat='{y / 1000}' lon='{x / 1000}'"
                file.write(f"<node id='{y * size + x + 1}' {where}/>\n")
        for i in range(size):
            for step, first in ((1, i * size + 1), (size, i + 1)):
                refs = "".join(f"<nd ref='{first + k * step}'/>" for k in range(size))
                tag = "<tag k='highway' v='residential'/>"
                file.write(f"<way id='{i * 2 + (step > 1) + 1}'>{refs}{tag}</way>\n")
        file.write("</osm>\n")
    return str(path)


def test_control_c_ends_a_read_at_any_stage(large):
    """Also that nothing is left behind: the process reads on, and ends."""
    script = f"""
import os, signal, sys, threading, time
import osm2roadnet as rn

start = time.perf_counter()
rn.read({large!r})
whole = time.perf_counter() - start
late = []
for share in (0.02, 0.2, 0.4, 0.6, 0.8, 0.95):
    sent = []
    def press():
        sent.append(time.perf_counter())
        os.kill(os.getpid(), signal.SIGINT)
    timer = threading.Timer(share * whole, press)
    try:
        timer.start()
        rn.read({large!r})
        timer.join()
    except KeyboardInterrupt:
        late.append(time.perf_counter() - sent[0])
assert len(late) >= 4, late
# The middle one, since others may use the machine; but no stage may be deaf.
assert sorted(late)[len(late) // 2] < 0.1 and max(late) < whole / 4, late
assert len(rn.read({EXAMPLE!r})) > 100
"""
    subprocess.run([sys.executable, "-c", script], check=True)


@pytest.mark.parametrize("progress", ["None", "lambda *call: None"])
def test_the_process_ends_while_a_daemon_reads(large, progress):
    script = f"""
import threading, time
import osm2roadnet as rn

def read():
    while True:
        rn.read({EXAMPLE!r}, progress={progress})

for _ in range(2):
    threading.Thread(target=read, daemon=True).start()
threading.Thread(target=rn.read, args=[{large!r}], daemon=True).start()
time.sleep(0.3)
"""
    for _ in range(3):
        ended = subprocess.run([sys.executable, "-c", script], capture_output=True, timeout=60)
        assert (ended.returncode, ended.stderr) == (0, b"")


def test_reads_in_threads_run_side_by_side(source, large):
    single = rn.read(source)
    results = []
    ticks = []

    def read():
        results.append(rn.read(source))

    threads = [threading.Thread(target=read) for _ in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(results) == 8 and all(result == single for result in results)

    reading = threading.Thread(target=lambda: rn.read(large))
    reading.start()
    while reading.is_alive():
        ticks.append(time.perf_counter())
        time.sleep(0.01)
    # The others go on: without it they would wait for most of the time.
    gaps = [b - a for a, b in zip(ticks, ticks[1:])]
    assert max(gaps) < (ticks[-1] - ticks[0]) / 3


def test_a_hundred_reads_leave_nothing_behind(tmp_path):
    damaged = pathlib.Path(EXAMPLE).read_bytes()[:-30]

    def use(i):
        net = rn.read(EXAMPLE)
        assert net.report["imported"] == 80 and net.restrictions.rows >= 0
        net.to_file(tmp_path / "town.geojson", overwrite=True)
        with pytest.raises(rn.ReadError):
            rn.read(damaged)

        def stop(*call):
            raise StopIteration

        with pytest.raises(StopIteration):
            rn.read(EXAMPLE, progress=stop)
        return net.roads["length"]

    def counts():
        gc.collect()
        descriptors = len(os.listdir("/proc/self/fd"))
        return len(gc.get_objects()), descriptors, threading.active_count()

    def resident():
        with open("/proc/self/statm") as file:
            return int(file.read().split()[1]) * resource.getpagesize()

    lengths = use(0)
    references = sys.getrefcount(lengths)
    for i in range(10):
        use(i)
    before, memory = counts(), resident()
    for i in range(100):
        use(i)
    assert [now - then < 20 for now, then in zip(counts(), before)] == [True] * 3
    assert counts()[1:] == before[1:]
    assert resident() - memory < 20e6
    assert sys.getrefcount(lengths) == references
