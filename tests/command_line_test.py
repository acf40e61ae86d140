"""command_line_test.py PROGRAM: the program as a person meets it: arguments, messages, outputs."""
import contextlib
import fcntl
import itertools
import json
import os
import pathlib
import resource
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = sys.argv.pop(1)
EXAMPLE = pathlib.Path(__file__).resolve().parent.parent / "examples" / "harbour-town.osm"
MAKE_FILE = EXAMPLE.parent.parent / "bench" / "make_file.py"
ENDINGS = ["json", "geojson", "geojsonl", "gpkg", "fgb", "gmns", "graphml"]
STREAMS = ["json", "geojson", "geojsonl", "graphml"]
FOLDERS = {"gmns": ["config.csv", "link.csv", "node.csv"], "fgb": ["nodes.fgb", "roads.fgb"]}
EMPTY = '<osm version="0.6"></osm>'


def run(*arguments, stdout=subprocess.PIPE, **options):
    return subprocess.run([PROGRAM, *arguments], stdout=stdout, stderr=subprocess.PIPE, timeout=60,
                          **options)


def limited(kind, size):
    """Options of a process that gets no more than `size`."""
    return {"preexec_fn": lambda: resource.setrlimit(kind, (size, size))}


class CommandLine(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def file(self, name, content=EMPTY):
        path = self.folder / name
        path.write_text(content)
        return path

    def made(self, kind, size):
        """A large file."""
        path = self.folder / f"{kind}.osm"
        subprocess.run([sys.executable, MAKE_FILE, kind, path, str(size)], check=True)
        return path

    def assert_succeeds(self, done):
        self.assertEqual((done.returncode, done.stderr), (0, b""))

    def assert_fails(self, done, code, *texts):
        """One line on standard error and nothing on standard output."""
        self.assertEqual(done.returncode, code, done.stderr)
        self.assertFalse(done.stdout)
        lines = done.stderr.decode(errors="replace").splitlines()
        self.assertEqual(len(lines), 1 if code == 1 else 2, lines)
        self.assertTrue(lines[0].startswith("osm2roadnet: "), lines)
        for text in texts:
            self.assertIn(text, lines[0])

    def assert_holds(self, *names):
        self.assertEqual(sorted(os.listdir(self.folder)), sorted(names))

    @contextlib.contextmanager
    def held(self, *arguments, **options):
        """The program when its network is complete and has not taken its name: it waits for somebody
        to read the rest of its report, which happens after the block."""
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        report = os.open(pipe, os.O_RDWR | os.O_NONBLOCK)
        fcntl.fcntl(report, fcntl.F_SETPIPE_SZ, 4096)
        process = subprocess.Popen([PROGRAM, EXAMPLE, *arguments, "-r", pipe],
                                   stderr=subprocess.PIPE, **options)
        self.assertTrue(select.select([report], [], [], 60)[0])
        yield process
        while process.poll() is None:
            with contextlib.suppress(BlockingIOError):
                os.read(report, 4096)
            time.sleep(0.001)
        process.message = process.communicate()[1].decode()
        os.close(report)
        pipe.unlink()

    def test_wrong_arguments_are_refused_before_anything_is_opened(self):
        output = self.folder / "out.json"
        for arguments in ([], ["a.osm", "b.osm"], [EXAMPLE, "--nonsense"], [EXAMPLE, "-o"],
                          [EXAMPLE, "-o", "out.xyz"], [EXAMPLE, "-o", output, "-f", "shape"], [""],
                          [EXAMPLE, "-o", ""], [EXAMPLE, "-o", "json"], [EXAMPLE, "-f", "json"],
                          [EXAMPLE, "-o", "-", "-f", "gpkg"], [EXAMPLE, "-o", "-", "-f", "gmns"],
                          [EXAMPLE, "-o", "a\n\033[31m"]):
            with self.subTest(arguments=arguments):
                self.assert_fails(run(*arguments), 2)
        self.assertFalse(output.exists())

    def test_no_file_is_two_things(self):
        here = self.folder / "here"
        (here / "deep").mkdir(parents=True)
        source = here / "deep" / "in.osm"
        shutil.copy(EXAMPLE, source)
        os.link(source, here / "hard.osm")
        (here / "link").symlink_to(here)
        for arguments in (["-o", "out.json", "-r", here / "out.json"],
                          ["-o", "./out.json", "-r", "../here/out.json"],
                          ["-o", "out.json", "-r", "link/deep/../out.json"],
                          ["-o", "-", "-r", "-"], ["-o", "-", "-r", "/dev/stdout"],
                          ["-f", "json", "-o", "hard.osm"], ["-r", "link/deep/in.osm"],
                          ["-f", "gmns", "-o", "deep/"], ["-f", "fgb", "-o", here],
                          ["-f", "gmns", "-o", "new", "-r", "new/deep/report.json"],
                          ["-f", "json", "-o", "new/network", "-r", "new"]):
            with self.subTest(arguments=arguments):
                done = run("deep/in.osm", *arguments, "--overwrite", cwd=here)
                self.assert_fails(done, 2)
        self.assertEqual(source.read_bytes(), EXAMPLE.read_bytes())
        self.assertEqual(sorted(os.listdir(here)), ["deep", "hard.osm", "link"])

    def test_help_and_version(self):
        for option, text in (("--help", b"--overwrite"), ("--version", b"osm2roadnet ")):
            done = run(option)
            self.assert_succeeds(done)
            self.assertIn(text, done.stdout)

    def test_summary_counts(self):
        done = run(EXAMPLE)
        self.assert_succeeds(done)
        for count in (b"80 of 93", b"82", b"113", b"17"):
            self.assertRegex(done.stdout, rb"(?m)^  \D+ " + count + rb"\b")
        self.assertEqual(run(EXAMPLE, "--quiet").stdout, b"")

    def test_json_is_the_same_on_standard_output_and_in_a_file(self):
        output = self.folder / "out.json"
        self.assert_succeeds(run(EXAMPLE, "-o", output))
        self.assertEqual(run(EXAMPLE, "-o", "-").stdout, output.read_bytes())
        network = json.loads(output.read_text())
        self.assertEqual(list(network), ["limits", "geoReference", "nodes", "roads"])
        self.assertEqual((len(network["nodes"]), len(network["roads"])), (82, 113))
        self.assertEqual(list(network["roads"][0]),
                         ["id", "name", "weight", "direction", "startNode", "endNode", "centersX",
                          "centersY", "segments"])
        self.assertIn("Hausbootsteg \U0001f6f6", [road["name"] for road in network["roads"]])
        self.assert_holds("out.json")

    def test_json_escapes_and_odd_numbers(self):
        source = self.file("odd.osm", '<osm version="0.6">'
                           '<node id="-1" lat="0.1" lon="-0.0"/><node id="2" lat="1e-7" lon="180"/>'
                           '<way id="1"><nd ref="-1"/><nd ref="2"/><tag k="highway" v="road"/>'
                           '<tag k="name" v="a&quot;b\\c&#10;d&#9;"/><tag k="layer" v="1e308"/></way>'
                           "</osm>")
        network = json.loads(run(source, "-o", "-").stdout)
        road = network["roads"][0]
        self.assertEqual(road["name"], 'a"b\\c\nd\t')
        self.assertEqual((road["startNode"], road["endNode"]), (2**64 - 1, 2))
        self.assertEqual(str(road["centersY"]), "[-0.0, 180.0]")
        self.assertEqual(road["centersX"], [0.1, 1e-07])
        self.assertEqual(road["segments"][0]["elevations"], [float("inf")] * 2)
        self.assertEqual(road["segments"][0]["headings"], [None, None])
        empty = json.loads(run(self.file("empty.osm"), "-o", "-").stdout)
        self.assertEqual(empty, {"limits": [], "nodes": [], "roads": [], "geoReference":
                                 {"latitude": None, "longitude": None, "altitude": 0}})

    def test_an_existing_output_is_kept_unless_told_otherwise(self):
        output = self.file("out.json", "precious")
        self.assert_fails(run(EXAMPLE, "-o", output), 1, str(output), "--overwrite")
        broken = self.file("broken.osm", "<osm")
        self.assert_fails(run(broken, "-o", output, "--overwrite"), 1, str(broken), "line 1")
        self.assertEqual(output.read_text(), "precious")
        link = self.folder / "link.json"
        link.symlink_to(output)
        output.chmod(0o6750)
        for ending in ("json", "gpkg"):
            self.assert_succeeds(run(EXAMPLE, "-f", ending, "-o", link, "--overwrite"))
            self.assertTrue(link.is_symlink())
            self.assertGreater(output.stat().st_size, 100)
            self.assertEqual(output.stat().st_mode & 0o7777, 0o750)
            output.chmod(0o6750)
        self.assert_holds("broken.osm", "link.json", "out.json")

    def test_an_exchanged_name_changes_no_mode_of_others(self):
        precious = self.file("precious")
        precious.chmod(0o600)
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        process = subprocess.Popen([PROGRAM, EXAMPLE, "-o", self.folder / "out.json", "-r", pipe])
        while not (unfinished := list(self.folder.glob(".osm2roadnet-*"))):
            self.assertIsNone(process.poll())  # waits for somebody who reads its report
            time.sleep(0.001)
        unfinished[0].unlink()
        unfinished[0].symlink_to(precious)
        pipe.read_bytes()
        process.wait(60)
        self.assertEqual(precious.stat().st_mode & 0o777, 0o600)

    def test_unreadable_inputs(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        for source, reason in ((self.folder / "none.osm", "No such file"),
                               (self.folder, "is a directory"),
                               (pipe, "not a regular file"),
                               (self.file("a b\nc.osm", "x"), "not an OSM file"),
                               (os.fsencode(self.folder) + b"/\xff.osm", "UTF-8")):
            with self.subTest(source=source):
                self.assert_fails(run(source), 1, reason)

    def test_outputs_that_cannot_be_written(self):
        (self.folder / "dangling").symlink_to(self.folder / "nothing")
        for name, ending, reason in (("none/out", "json", "none/out: can't write"),
                                     ("", "json", "is a directory"), ("", "gpkg", "is a directory"),
                                     ("dangling", "json", "link to nothing"),
                                     ("/dev/full", "json", "/dev/full: can't write: No space"),
                                     ("/dev/null", "gpkg", "not a regular file"),
                                     ("/dev/null", "gmns", "not a directory")):
            with self.subTest(name=name, ending=ending):
                done = run(EXAMPLE, "-f", ending, "-o", self.folder / name, "--overwrite")
                self.assert_fails(done, 1, reason)
        self.assert_succeeds(run(EXAMPLE, "-o", self.folder / ("n" * 250 + ".json")))

    def test_an_existing_folder_is_kept_unless_told_otherwise(self):
        empty = self.file("empty.osm")
        for ending, names in FOLDERS.items():
            folder, link = self.folder / f"town.{ending}", self.folder / "link"
            self.assert_succeeds(run(EXAMPLE, "-o", f"{folder}/"))
            self.assertEqual(sorted(os.listdir(folder)), names)
            self.assert_fails(run(empty, "-o", folder), 1, "--overwrite")
            old = (folder / names[-1]).read_bytes()
            folder.chmod(0o1750)
            link.symlink_to(folder)
            self.assert_succeeds(run(empty, "-o", link, "-f", ending, "--overwrite"))
            self.assertNotEqual((folder / names[-1]).read_bytes(), old)
            self.assertEqual(folder.stat().st_mode & 0o7777, 0o750)
            link.unlink()
            for other in ("precious", names[0]):
                (folder / other).unlink(missing_ok=True)
                (folder / other).mkdir()
                self.assert_fails(run(EXAMPLE, "-o", folder, "--overwrite"), 1, f'"{other}"', "lost")
                self.assertEqual(sorted(os.listdir(folder)), sorted({*names, other}))
                (folder / other).rmdir()
        self.assert_holds("empty.osm", "town.fgb", "town.gmns")

    def test_what_comes_into_being_meanwhile_is_kept(self):
        output = self.folder / "out.gmns"
        for existing in (False, True):
            if existing:
                self.assert_succeeds(run(EXAMPLE, "-o", output))
            with self.held("-o", output, "--overwrite") as process:
                output.mkdir(exist_ok=True)
                (output / "precious").touch()
            self.assertIn("lost" if existing else "File exists", process.message)
            self.assertEqual(process.returncode, 1)
            self.assertTrue((output / "precious").exists())
            self.assert_holds("out.gmns")
            shutil.rmtree(output)

    def test_names_decide_nothing_where_the_format_is_given(self):
        """Nor are they anything but names for GDAL, or make it open what is here."""
        os.mkfifo(self.folder / "NZTM2000")
        for prefix in ("", "GPKG:", "a?b#c%20&mode=ro"):
            (self.folder / prefix).mkdir(exist_ok=True)
            for ending in ENDINGS if prefix == "" else ["gpkg", "fgb"]:
                output = f"{prefix}/{ending}.csv".strip("/")
                done = run(EXAMPLE, "-f", ending, "-o", output, cwd=self.folder)
                self.assert_succeeds(done)
                self.assertTrue((self.folder / output).exists())

    def test_outputs_are_there_both_or_not_at_all(self):
        done = run(EXAMPLE, "-o", self.folder / "a.json", "-r", "/dev/full")
        self.assert_fails(done, 1, "No space")
        self.assert_holds()

    def test_a_standard_output_that_cannot_be_written(self):
        report = self.folder / "report.json"
        done = run(EXAMPLE, "-r", report, preexec_fn=lambda: os.close(1))
        self.assert_fails(done, 1, "standard output")
        json.loads(report.read_text())
        with open("/dev/full", "w") as full:
            for argument in (EXAMPLE, "--help", "--version"):
                self.assertEqual(run(argument, stdout=full).returncode, 1)
        with open(self.folder / "stream", "wb") as stream:
            for name in STREAMS:
                done = run(EXAMPLE, "-f", name, "-o", "-", stdout=stream,
                           **limited(resource.RLIMIT_FSIZE, 4096))
                self.assert_fails(done, 1, "standard output: can't write: File too large")
        reading, writing = os.pipe()
        os.close(reading)
        for arguments in (*(["-o", "-", "-f", name] for name in STREAMS),
                          ["-o", "-", "-r", report, "--overwrite"],
                          ["-o", self.folder / "out.gpkg", "-r", "-"]):
            done = run(EXAMPLE, *arguments, stdout=writing)
            self.assertEqual((done.returncode, done.stderr), (-signal.SIGPIPE, b""))
        os.close(writing)
        self.assert_holds("report.json", "stream")

    def test_a_failed_write_leaves_nothing(self):
        for ending in ENDINGS:
            output = self.folder / f"out.{ending}"
            done = run(EXAMPLE, "-o", output, **limited(resource.RLIMIT_FSIZE, 4096))
            self.assert_fails(done, 1, str(output), "can't write")
            self.assert_holds()

    def test_a_signal_leaves_nothing(self):
        harmless = {signal.SIGCHLD, signal.SIGCONT, signal.SIGSTOP, signal.SIGTSTP, signal.SIGTTIN,
                    signal.SIGTTOU, signal.SIGURG, signal.SIGWINCH, signal.SIGXFSZ, signal.SIGKILL}
        deadly = sorted(signal.valid_signals() - harmless)
        for number, ending in zip(deadly, itertools.cycle(ENDINGS)):
            with self.subTest(signal=number, ending=ending):
                with self.held("-o", self.folder / f"out.{ending}") as process:
                    process.send_signal(number)
                    self.assertEqual(process.wait(60), -number)
                    self.assert_holds("pipe")
        with self.held("-o", self.folder / "out.json", preexec_fn=lambda: signal.signal(
                signal.SIGHUP, signal.SIG_IGN)) as process:
            process.send_signal(signal.SIGHUP)
        self.assertEqual(process.returncode, 0)

    def test_out_of_memory_is_one_line(self):
        """At limits between what the start takes and what the whole takes."""
        source = self.made("chain", 14_000)
        step = 2**22
        output = self.folder / "out"

        def end(size, *arguments):
            output.is_dir() and shutil.rmtree(output)
            output.unlink(missing_ok=True)
            return run(*arguments, **limited(resource.RLIMIT_AS, size))

        def need(*arguments):
            too_little, enough = 0, 2**29
            while enough - too_little > step:
                size = (too_little + enough) // 2
                if end(size, *arguments).returncode == 0:
                    enough = size
                else:
                    too_little = size
            return enough

        if end(2**32, "--version").returncode != 0:
            self.skipTest("the sanitizers take more address space than can be limited")
        start = need("--version")
        for ending in ENDINGS:
            arguments = [source, "-f", ending, "-o", output]
            reasons = []
            whole = need(*arguments)
            for size in range(max(start, whole - 10 * step), whole - step, step):
                with self.subTest(ending=ending, size=size):
                    done = end(size, *arguments)
                    self.assert_fails(done, 1)
                    self.assertRegex(done.stderr, b"out of memory|GDAL can't be loaded")
                    reasons.append(b"out of memory" in done.stderr)
                    self.assert_holds("chain.osm")
            self.assertIn(True, reasons)

    def test_a_small_stack_suffices(self):
        done = run(self.made("chain", 20_000), "-o", "-",
                   **limited(resource.RLIMIT_STACK, 256 * 1024))
        self.assert_succeeds(done)
        self.assertEqual(json.loads(done.stdout)["roads"][0]["weight"], 20_000)


if __name__ == "__main__":
    unittest.main()
