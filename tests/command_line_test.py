"""command_line_test.py PROGRAM: the program as a person meets it: arguments, messages, outputs."""
import contextlib
import fcntl
import itertools
import json
import os
import pathlib
import re
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
EXTRACT = EXAMPLE.parents[2] / "shared" / "data" / "extracts" / "columbus.osm.pbf"
MAKE_FILE = EXAMPLE.parent.parent / "bench" / "make_file.py"
ENDINGS = ["json", "geojson", "geojsonl", "gpkg", "fgb", "gmns", "graphml"]
STREAMS = ["json", "geojson", "geojsonl", "graphml"]  # what can go to standard output
FOLDERS = {"gmns": ["config.csv", "link.csv", "movement.csv", "node.csv", "restriction.csv",
                    "use_definition.csv"],
           "fgb": ["nodes.fgb", "restrictions.fgb", "roads.fgb"]}


def limited(kind, size):
    """Options of a process that gets no more than `size`."""
    return {"preexec_fn": lambda: resource.setrlimit(kind, (size, size))}


class CommandLine(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_on(self, *arguments, stdout=subprocess.PIPE, **options):
        return subprocess.run([PROGRAM, *arguments], stdout=stdout, stderr=subprocess.PIPE,
                              cwd=self.folder, timeout=60, **options)

    def run_example(self, *arguments, **options):
        return self.run_on(EXAMPLE, *arguments, **options)

    def file(self, name, content='<osm version="0.6"></osm>'):
        path = self.folder / name
        path.write_text(content)
        return path

    def pipe(self):
        path = self.folder / "pipe"
        os.mkfifo(path)
        return path

    def chain(self, size):
        """A file with one road that is joined of many."""
        path = self.folder / "chain.osm"
        subprocess.run([sys.executable, MAKE_FILE, "chain", path, str(size)], check=True)
        return path

    def assert_succeeds(self, done):
        self.assertEqual((done.returncode, done.stderr), (0, b""))

    def assert_fails(self, done, code, *texts):
        """One line on standard error, which may be followed by a hint, and no standard output."""
        self.assertEqual(done.returncode, code, done.stderr)
        self.assertFalse(done.stdout)
        lines = done.stderr.decode(errors="replace").splitlines()
        self.assertEqual(len(lines), 1 if code == 1 else 2, lines)
        self.assertTrue(lines[0].startswith("osm2roadnet: "), lines)
        for text in texts:
            self.assertIn(text, lines[0])

    def assert_holds(self, *names, folder=""):
        self.assertEqual(sorted(os.listdir(self.folder / folder)), sorted(names))

    @contextlib.contextmanager
    def held(self, *arguments, **options):
        """The program when its network is complete and has not taken its name: it waits for
        somebody to read the rest of its report, which happens after the block."""
        pipe = self.pipe()
        report = os.open(pipe, os.O_RDWR | os.O_NONBLOCK)
        fcntl.fcntl(report, fcntl.F_SETPIPE_SZ, 4096)
        process = subprocess.Popen([PROGRAM, EXAMPLE, *arguments, "-r", pipe], cwd=self.folder,
                                   stderr=subprocess.PIPE, **options)
        self.assertTrue(select.select([report], [], [], 60)[0])
        try:
            yield process
        finally:
            while process.poll() is None:
                with contextlib.suppress(BlockingIOError):
                    os.read(report, 4096)
                time.sleep(0.001)
            process.message = process.communicate()[1].decode()
            os.close(report)
            pipe.unlink()

    def test_wrong_arguments_are_refused_before_anything_is_opened(self):
        for arguments in ([], ["a.osm", "b.osm"], [EXAMPLE, "--nonsense"], [EXAMPLE, "-o"],
                          [EXAMPLE, "-o", "a.xyz"], [EXAMPLE, "-o", "a", "-f", "shape"], [""],
                          [EXAMPLE, "-o", ""], [EXAMPLE, "-o", "json"], [EXAMPLE, "-f", "json"],
                          [EXAMPLE, "-o", "-", "-f", "gpkg"], [EXAMPLE, "-o", "a\n\033[31m"]):
            with self.subTest(arguments=arguments):
                self.assert_fails(self.run_on(*arguments), 2)
        self.assert_holds()

    def test_no_file_is_two_things(self):
        deep = self.folder / "deep"
        deep.mkdir()
        source = self.file("deep/in.osm")
        os.link(source, self.folder / "hard.osm")
        (self.folder / "link").symlink_to(self.folder)
        for arguments in (["-o", "out.json", "-r", self.folder / "out.json"],
                          ["-o", "./out.json", "-r", f"../{self.folder.name}/out.json"],
                          ["-o", "out.json", "-r", "link/deep/../out.json"],
                          ["-o", "-", "-r", "-"], ["-o", "-", "-r", "/dev/stdout"],
                          ["-f", "json", "-o", "hard.osm"], ["-r", "link/deep/in.osm"],
                          ["-f", "gmns", "-o", "deep/"], ["-f", "fgb", "-o", self.folder],
                          ["-f", "gmns", "-o", "new", "-r", "new/deep/report.json"],
                          ["-f", "json", "-o", "new/network", "-r", "new"]):
            with self.subTest(arguments=arguments):
                self.assert_fails(self.run_on("deep/in.osm", *arguments, "--overwrite"), 2)
        self.assert_holds("deep", "hard.osm", "link")
        self.assert_holds("in.osm", folder="deep")

    def test_what_a_person_sees(self):
        for argument, pattern in (("--help", b"--overwrite"), ("--version", rb"^osm2roadnet \d"),
                                  (EXAMPLE, rb"80 of 93\D* 12 [^N]*Nodes +82\D* 113\D* 17\n")):
            done = self.run_on(argument)
            self.assert_succeeds(done)
            self.assertRegex(done.stdout, pattern)
        self.assertEqual(self.run_example("--quiet").stdout, b"")

    def test_an_existing_output_is_kept_unless_told_otherwise(self):
        output = self.file("out.json", "precious")
        self.assert_fails(self.run_example("-o", "out.json"), 1, "out.json", "--overwrite")
        self.file("broken.osm", "<osm")
        done = self.run_on("broken.osm", "-o", output, "--overwrite")
        self.assert_fails(done, 1, "broken.osm", "line 1")
        self.assertEqual(output.read_text(), "precious")
        (self.folder / "link").symlink_to(output)
        for ending in ("json", "gpkg"):
            output.chmod(0o6750)
            self.assert_succeeds(self.run_example("-f", ending, "-o", "link", "--overwrite"))
            self.assertGreater(output.stat().st_size, 100)
            self.assertEqual(output.stat().st_mode & 0o7777, 0o750)
        self.assert_holds("broken.osm", "link", "out.json")

    def test_an_exchanged_name_changes_no_mode_of_others(self):
        precious = self.file("precious")
        precious.chmod(0o600)
        pipe = self.pipe()
        process = subprocess.Popen([PROGRAM, EXAMPLE, "-o", self.folder / "out.json", "-r", pipe])
        while not (unfinished := list(self.folder.glob(".osm2roadnet-*"))):
            time.sleep(0.001)  # then it waits for somebody to read its report
        unfinished[0].unlink()
        unfinished[0].symlink_to(precious)
        pipe.read_bytes()
        process.wait(60)
        self.assertEqual(precious.stat().st_mode & 0o777, 0o600)

    def test_unreadable_inputs(self):
        for source, reason in (("none.osm", "No such file"), (self.folder, "is a directory"),
                               (self.pipe(), "not a regular file"),
                               (self.file("a b\nc.osm", "x"), "not an OSM file"),
                               (b"\xff.osm", "UTF-8")):
            with self.subTest(source=source):
                self.assert_fails(self.run_on(source), 1, reason)

    def test_threads_make_no_difference(self):
        """Neither to a network nor to what is said of a file that is damaged or cut short."""
        if not EXTRACT.exists():
            self.skipTest(f"there is no {EXTRACT}")
        whole = EXTRACT.read_bytes()
        middle = len(whole) // 2
        outcomes = set()
        for content in (whole, whole[:-1], whole[:middle] + b"?" + whole[middle + 1:-1]):
            (self.folder / "in.pbf").write_bytes(content)
            done = [self.run_on("in.pbf", "-o", "-", "--threads", str(n)) for n in (1, 2, 9)]
            outcomes |= {(d.returncode, d.stdout, d.stderr) for d in done}
        self.assertEqual(sorted(code for code, _, _ in outcomes), [0, 1, 1])

    def test_outputs_that_cannot_be_written(self):
        (self.folder / "dangling").symlink_to("nothing")
        for name, ending, reason in (("none/out", "json", "none/out: can't write"),
                                     (".", "json", "is a directory"),
                                     (".", "gpkg", "is a directory"),
                                     ("dangling", "json", "link to nothing"),
                                     ("/dev/full", "json", "/dev/full: can't write: No space"),
                                     ("/dev/null", "gpkg", "not a regular file"),
                                     ("/dev/null", "gmns", "not a directory")):
            with self.subTest(name=name, ending=ending):
                done = self.run_example("-f", ending, "-o", name, "--overwrite")
                self.assert_fails(done, 1, reason)
        self.assert_fails(self.run_example("-o", "a.json", "-r", "/dev/full"), 1, "No space")
        for ending in ENDINGS:
            done = self.run_example("-o", f"out.{ending}", **limited(resource.RLIMIT_FSIZE, 4096))
            self.assert_fails(done, 1, f"out.{ending}", "can't write")
        self.assert_holds("dangling")

    def test_an_existing_folder_is_kept_unless_told_otherwise(self):
        self.file("empty.osm")
        link = self.folder / "link"
        for ending, names in FOLDERS.items():
            folder = self.folder / f"town.{ending}"
            self.assert_succeeds(self.run_example("-o", f"town.{ending}/"))
            self.assert_holds(*names, folder=folder)
            self.assert_fails(self.run_on("empty.osm", "-o", folder), 1, "--overwrite")
            old = (folder / names[-1]).read_bytes()
            folder.chmod(0o1750)
            link.symlink_to(folder)
            self.assert_succeeds(self.run_on("empty.osm", "-o", link, "-f", ending, "--overwrite"))
            self.assertNotEqual((folder / names[-1]).read_bytes(), old)
            self.assertEqual(folder.stat().st_mode & 0o7777, 0o750)
            link.unlink()
            for other in ("precious", names[0]):
                (folder / other).unlink(missing_ok=True)
                (folder / other).mkdir()
                done = self.run_example("-o", folder, "--overwrite")
                self.assert_fails(done, 1, f'"{other}"', "lost")
                self.assert_holds(*{*names, other}, folder=folder)
                (folder / other).rmdir()
        self.assert_holds("empty.osm", "town.fgb", "town.gmns")

    def test_what_comes_into_being_meanwhile_is_kept(self):
        output = self.folder / "out.gmns"
        for reason in ("File exists", "lost"):
            with self.held("-o", output, "--overwrite") as process:
                output.mkdir(exist_ok=True)
                (output / "precious").touch()
            self.assertIn(reason, process.message)
            self.assertEqual(process.returncode, 1)
            self.assertTrue((output / "precious").exists())
            self.assert_holds("out.gmns")
            (output / "precious").unlink()  # a folder that may be replaced, the next time

    def test_names_decide_nothing_where_the_format_is_given(self):
        """Nor are they anything but names for GDAL, or make it open what is there."""
        self.pipe().rename(self.folder / "NZTM2000")
        for folder in (".", "GPKG:", "a?b#%20&mode=ro"):
            (self.folder / folder).mkdir(exist_ok=True)
            for ending in ENDINGS:
                output = f"{folder}/{ending * 30}.csv"
                self.assert_succeeds(self.run_example("-f", ending, "-o", output, umask=0o027))
                mode = (self.folder / output).stat().st_mode & 0o777
                self.assertEqual(mode, 0o750 if ending in FOLDERS else 0o640)

    def test_a_standard_output_that_cannot_be_written(self):
        done = self.run_example("-r", "report.json", preexec_fn=lambda: os.close(1))
        self.assert_fails(done, 1, "standard output")
        json.loads((self.folder / "report.json").read_text())
        with open("/dev/full", "w") as full:
            for argument in (EXAMPLE, "--help", "--version"):
                self.assertEqual(self.run_on(argument, stdout=full).returncode, 1)
        reading, closed = os.pipe()
        os.close(reading)
        with open(self.folder / "stream", "wb") as stream:
            for arguments in (*(["-o", "-", "-f", name] for name in STREAMS),
                              ["-o", "-", "-r", "report.json", "--overwrite"],
                              ["-o", "out.gpkg", "-r", "-"]):
                done = self.run_example(*arguments, stdout=stream,
                                        **limited(resource.RLIMIT_FSIZE, 4096))
                self.assert_fails(done, 1, "can't write: ")
                done = self.run_example(*arguments, stdout=closed)
                self.assertEqual((done.returncode, done.stderr), (-signal.SIGPIPE, b""))
        os.close(closed)
        self.assert_holds("report.json", "stream")

    def test_a_signal_leaves_nothing(self):
        harmless = {signal.SIGCHLD, signal.SIGCONT, signal.SIGSTOP, signal.SIGTSTP, signal.SIGTTIN,
                    signal.SIGTTOU, signal.SIGURG, signal.SIGWINCH, signal.SIGXFSZ, signal.SIGKILL}
        for number, ending in zip(sorted(signal.valid_signals() - harmless),
                                  itertools.cycle(ENDINGS)):
            with self.subTest(signal=number, ending=ending):
                with self.held("-o", f"out.{ending}") as process:
                    process.send_signal(number)
                    self.assertEqual(process.wait(60), -number)
                    self.assert_holds("pipe")
        ignored = {"preexec_fn": lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN)}
        with self.held("-o", "out.json", **ignored) as process:
            process.send_signal(signal.SIGHUP)
        self.assertEqual(process.returncode, 0)

    def test_out_of_memory_is_one_line(self):
        """With any address space from what the start takes to what the whole takes."""
        def run_in(size, *arguments):
            return self.run_on(*arguments, **limited(resource.RLIMIT_AS, size))

        sizes = range(0, 2**29, 2**22)
        start = next((size for size in sizes if run_in(size, "--version").returncode == 0), None)
        if start is None:
            self.skipTest("the sanitizers take more address space than can be limited")
        source = self.chain(30_000)
        for ending in ENDINGS:
            reasons = set()
            for size in sizes[sizes.index(start):]:
                done = run_in(size, source, "-o", f"out.{ending}")
                if done.returncode == 0:
                    break
                with self.subTest(ending=ending, size=size):
                    self.assert_fails(done, 1)
                    reasons |= {*re.findall(b"out of memory|GDAL can't be loaded", done.stderr)}
                    self.assertNotIn(f"out.{ending}", os.listdir(self.folder))
            self.assertEqual(len(reasons), 2 if ending in ("gpkg", "fgb") else 1, reasons)
        self.assert_holds("chain.osm", *(f"out.{ending}" for ending in ENDINGS))

    def test_a_small_stack_suffices(self):
        done = self.run_on(self.chain(20_000), "-o", "-", **limited(resource.RLIMIT_STACK, 2**18))
        self.assert_succeeds(done)
        self.assertEqual(json.loads(done.stdout)["roads"][0]["weight"], 20_000)


if __name__ == "__main__":
    unittest.main()
