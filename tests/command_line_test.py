"""command_line_test.py PROGRAM: the program as a person meets it: arguments, messages, outputs."""
import json
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

PROGRAM = sys.argv.pop(1)
EXAMPLE = pathlib.Path(__file__).resolve().parent.parent / "examples" / "harbour-town.osm"
MAKE_FILE = EXAMPLE.parent.parent / "bench" / "make_file.py"
ENDINGS = ["json", "geojson", "geojsonl", "gpkg", "fgb", "gmns", "graphml"]
EMPTY = '<osm version="0.6"></osm>'


def run(*arguments, **options):
    return subprocess.run([PROGRAM, *arguments], capture_output=True, timeout=60, **options)


class CommandLine(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def file(self, name, content=EMPTY):
        path = self.folder / name
        path.write_text(content)
        return path

    def assert_fails(self, done, code, *texts):
        """One line on standard error and nothing on standard output."""
        self.assertEqual(done.returncode, code, done.stderr)
        self.assertEqual(done.stdout, b"")
        lines = done.stderr.decode(errors="replace").splitlines()
        self.assertEqual(len(lines), 1 if code == 1 else 2, lines)
        self.assertTrue(lines[0].startswith("osm2roadnet: "), lines)
        for text in texts:
            self.assertIn(text, lines[0])

    def test_wrong_arguments_are_refused_before_anything_is_opened(self):
        output = self.folder / "out.json"
        for arguments in ([], ["a.osm", "b.osm"], [EXAMPLE, "--nonsense"], [EXAMPLE, "-o"],
                          [EXAMPLE, "-o", "out.xyz"], [EXAMPLE, "-o", output, "-f", "shape"], [""],
                          [EXAMPLE, "-o", output, "-f", "0"], [EXAMPLE, "-o", ""],
                          [EXAMPLE, "-o", "json"], [EXAMPLE, "-f", "json"],
                          [EXAMPLE, "-o", "-", "-f", "gpkg"], [EXAMPLE, "-o", "-", "-f", "gmns"],
                          [EXAMPLE, "-o", "a\n\033[31m"], [EXAMPLE, "-r", EXAMPLE, "--overwrite"],
                          [EXAMPLE, "-o", f"{EXAMPLE.parent}/../examples/{EXAMPLE.name}", "-fjson"],
                          [EXAMPLE, "-o", output, "-r", f"{self.folder}/./out.json"],
                          [EXAMPLE, "-o", output, "-fgmns", "-r", output / "report.json"]):
            with self.subTest(arguments=arguments):
                self.assert_fails(run(*arguments), 2)
        self.assertFalse(output.exists())

    def test_help_and_version(self):
        for option, text in (("--help", b"--overwrite"), ("--version", b"osm2roadnet ")):
            done = run(option)
            self.assertEqual((done.returncode, done.stderr), (0, b""))
            self.assertIn(text, done.stdout)

    def test_summary_counts(self):
        done = run(EXAMPLE)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        for row in ("ways selected  80 of 93", "Nodes          82", "Roads          113",
                    "joined Nodes   17"):
            self.assertIn(row, done.stdout.decode())
        self.assertEqual(run(EXAMPLE, "--quiet").stdout, b"")

    def test_json_is_the_same_on_standard_output_and_in_a_file(self):
        output = self.folder / "out.json"
        self.assertEqual(run(EXAMPLE, "-o", output).returncode, 0)
        self.assertEqual(run(EXAMPLE, "-o", "-").stdout, output.read_bytes())
        network = json.loads(output.read_text())
        self.assertEqual(list(network), ["limits", "geoReference", "nodes", "roads"])
        self.assertEqual((len(network["nodes"]), len(network["roads"])), (82, 113))
        self.assertEqual(list(network["roads"][0]),
                         ["id", "name", "weight", "direction", "startNode", "endNode", "centersX",
                          "centersY", "segments"])
        self.assertIn("Hausbootsteg \U0001f6f6", [road["name"] for road in network["roads"]])
        self.assertEqual(os.listdir(self.folder), ["out.json"])

    def test_json_escapes_and_odd_numbers(self):
        source = self.file("odd.osm", '<osm version="0.6">'
                           '<node id="-1" lat="0.1" lon="-0.0"/><node id="2" lat="1e-7" lon="180"/>'
                           '<way id="1"><nd ref="-1"/><nd ref="2"/><tag k="highway" v="road"/>'
                           '<tag k="name" v="a&quot;b\\c&#10;d&#9;"/><tag k="layer" v="1e308"/></way>'
                           "</osm>")
        network = json.loads(run(source, "-o", "-").stdout)
        road = network["roads"][0]
        self.assertEqual(road["name"], 'a"b\\c\nd\t')
        self.assertEqual(road["endNode"], 2)
        self.assertEqual(road["startNode"], 2**64 - 1)
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
        self.assertEqual(output.read_text(), "precious")
        broken = self.file("broken.osm", "<osm")
        self.assert_fails(run(broken, "-o", output, "--overwrite"), 1, str(broken), "line 1")
        self.assertEqual(output.read_text(), "precious")
        link = self.folder / "link.json"
        link.symlink_to(output)
        self.assertEqual(run(EXAMPLE, "-o", link, "--overwrite").returncode, 0)
        self.assertTrue(link.is_symlink())
        self.assertTrue(output.read_text().startswith("{"))
        output.chmod(0o600)
        self.assertEqual(run(EXAMPLE, "-o", output, "--overwrite").returncode, 0)
        self.assertEqual(output.stat().st_mode & 0o777, 0o600)
        self.assertEqual(sorted(os.listdir(self.folder)), ["broken.osm", "link.json", "out.json"])

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
        self.assert_fails(run(EXAMPLE, "-o", self.folder / "none" / "out.json"), 1, "can't write")
        self.assert_fails(run(EXAMPLE, "-f", "json", "-o", self.folder), 1, "is a directory")
        dangling = self.folder / "dangling.json"
        dangling.symlink_to(self.folder / "nothing")
        self.assert_fails(run(EXAMPLE, "-o", dangling, "--overwrite"), 1, "link to nothing")
        self.assertEqual(run(EXAMPLE, "-o", self.folder / ("n" * 250 + ".json")).returncode, 0)
        self.assert_fails(run(EXAMPLE, "-f", "json", "-o", "/dev/full"), 1, "/dev/full", "No space")
        with open("/dev/full", "w") as full:
            for argument in (EXAMPLE, "--help", "--version"):
                done = subprocess.run([PROGRAM, argument], stdout=full, stderr=subprocess.PIPE)
                self.assertEqual(done.returncode, 1)

    def test_an_existing_folder_is_kept_unless_told_otherwise(self):
        for ending, names in (("gmns", ["config.csv", "link.csv", "node.csv"]),
                              ("fgb", ["nodes.fgb", "roads.fgb"])):
            folder = self.folder / f"town.{ending}"
            run(EXAMPLE, "-o", f"{folder}/")
            self.assertEqual(sorted(os.listdir(folder)), names)
            self.assert_fails(run(self.file("empty.osm"), "-o", folder), 1, "--overwrite")
            old = (folder / names[-1]).read_bytes()
            folder.chmod(0o750)
            link = self.folder / "link"
            link.symlink_to(folder)
            arguments = ["-f", ending, "--overwrite"]
            done = run(self.file("empty.osm"), "-o", link, *arguments)
            self.assertEqual((done.returncode, done.stderr), (0, b""))
            self.assertNotEqual((folder / names[-1]).read_bytes(), old)
            self.assertEqual(folder.stat().st_mode & 0o777, 0o750)
            link.unlink()
            (folder / "precious").touch()
            self.assert_fails(run(EXAMPLE, "-o", folder, *arguments), 1, '"precious"', "lost")
            self.assertEqual(sorted(os.listdir(folder)), sorted([*names, "precious"]))
            (folder / "precious").unlink()
            (folder / names[0]).unlink()
            (folder / names[0]).mkdir()
            self.assert_fails(run(EXAMPLE, "-o", folder, *arguments), 1, f'"{names[0]}"', "lost")
            file = self.file("file")
            self.assert_fails(run(EXAMPLE, "-o", file, *arguments), 1, "is not a directory")
            file.unlink()
        self.assert_fails(run(EXAMPLE, "-o", self.folder, "-f", "gpkg"), 1, "is a directory")
        self.assert_fails(run(EXAMPLE, "-o", "//", "-f", "gmns", "--overwrite"), 1, "/: holds ")
        self.assert_fails(run(EXAMPLE, "-o", "/dev/null", "-f", "gpkg"), 1, "not a regular file")
        self.assertEqual(sorted(os.listdir(self.folder)), ["empty.osm", "town.fgb", "town.gmns"])

    def test_what_comes_into_being_meanwhile_is_kept(self):
        source = self.chain(50_000)
        for existing in (True, False):
            output = self.folder / "out.gmns"
            if existing:
                run(EXAMPLE, "-o", output)
            process = subprocess.Popen([PROGRAM, source, "-o", output, "--overwrite"],
                                       stderr=subprocess.PIPE, text=True)
            while not list(self.folder.glob(".osm2roadnet-*")):
                self.assertIsNone(process.poll())
            output.mkdir(exist_ok=True)
            (output / "precious").touch()
            self.assertIn("lost" if existing else "File exists", process.communicate()[1])
            self.assertEqual(process.returncode, 1)
            self.assertTrue((output / "precious").exists())
            self.assertEqual(sorted(os.listdir(self.folder)), ["chain.osm", "out.gmns"])
            shutil.rmtree(output)

    def test_the_name_does_not_matter_where_the_format_is_given(self):
        for ending in ENDINGS:
            done = run(EXAMPLE, "-f", ending, "-o", self.folder / f"{ending}.csv")
            self.assertEqual((done.returncode, done.stderr), (0, b""))

    def test_outputs_are_there_both_or_not_at_all(self):
        done = run(EXAMPLE, "-o", self.folder / "a.json", "-r", "/dev/full")
        self.assert_fails(done, 1, "No space")
        self.assertEqual(os.listdir(self.folder), [])

    def test_a_closed_standard_output_is_an_error(self):
        report = self.folder / "report.json"
        done = subprocess.run(["sh", "-c", '"$@" >&-', "sh", PROGRAM, EXAMPLE, "-r", report],
                              stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 1, done.stderr)
        json.loads(report.read_text())

    def test_a_failed_write_leaves_nothing(self):
        def limit_file_size():
            resource.setrlimit(resource.RLIMIT_FSIZE, (4096, 4096))

        for ending in ENDINGS:
            output = self.folder / f"out.{ending}"
            done = run(EXAMPLE, "-o", output, preexec_fn=limit_file_size)
            self.assert_fails(done, 1, str(output), "can't write")
            self.assertEqual(os.listdir(self.folder), [])

    def chain(self, ways):
        """A large file: roads that all join into one."""
        path = self.folder / "chain.osm"
        subprocess.run([sys.executable, MAKE_FILE, "chain", path, str(ways)], check=True)
        return path

    def test_an_interrupt_leaves_nothing(self):
        source = self.chain(50_000)
        for number, ending in ((signal.SIGINT, "json"), (signal.SIGTERM, "gmns"),
                               (signal.SIGHUP, "gpkg"), (signal.SIGQUIT, "fgb")):
            process = subprocess.Popen([PROGRAM, source, "-o", self.folder / f"out.{ending}"])
            # Not before there is something to leave: a file, or files in a folder.
            while not list(self.folder.glob(".osm2roadnet-*" + ("" if ending == "json" else "/*"))):
                self.assertIsNone(process.poll())
            process.send_signal(number)
            self.assertEqual(process.wait(60), -number)
            self.assertEqual(os.listdir(self.folder), ["chain.osm"])

    def test_a_closed_pipe_ends_quietly(self):
        reading, writing = os.pipe()
        os.close(reading)
        for name in ("json", "geojson", "geojsonl", "graphml"):
            done = subprocess.run([PROGRAM, EXAMPLE, "-o", "-", "-f", name], stdout=writing,
                                  stderr=subprocess.PIPE)
            self.assertEqual((done.returncode, done.stderr), (-signal.SIGPIPE, b""))
        for arguments in (["-o", "-", "-r", self.folder / "report.json"],
                          ["-o", self.folder / "out.gpkg", "-r", "-"]):
            done = subprocess.run([PROGRAM, EXAMPLE, *arguments], stdout=writing,
                                  stderr=subprocess.PIPE)
            self.assertEqual((done.returncode, done.stderr), (-signal.SIGPIPE, b""))
        self.assertEqual(os.listdir(self.folder), [])
        os.close(writing)

    def test_a_small_stack_suffices(self):
        def limit_stack():
            resource.setrlimit(resource.RLIMIT_STACK, (256 * 1024, 256 * 1024))

        done = run(self.chain(20_000), "-o", "-", preexec_fn=limit_stack)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(json.loads(done.stdout)["roads"][0]["weight"], 20_000)


if __name__ == "__main__":
    unittest.main()
