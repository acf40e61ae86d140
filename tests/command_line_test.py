"""command_line_test.py PROGRAM: the program as a person meets it: arguments, inputs, messages."""
import bz2
import gzip
import json
import os
import re
import resource
import subprocess
import time
import unittest

from fixture.command_line import CommandLine, ENDINGS, EXAMPLE, EXTRACT, PROGRAM, limited


def read_to_end(terminal):
    """What was written to it; it comes in pieces, and ends with an error when nobody has it open."""
    pieces = []
    try:
        while piece := os.read(terminal, 9999):
            pieces.append(piece)
    except OSError:
        pass
    return b"".join(pieces).decode()


class Arguments(CommandLine):
    def test_wrong_arguments_are_refused_before_anything_is_opened(self):
        formats = "json, geojson, geojsonl, ndjson, gpkg, fgb, gmns, graphml"
        for text, *arguments in (
                ("INPUT",), ("INPUT", ""), ("osmium merge", "a.osm", "b.osm", "c.osm"),
                ("--nonsense", EXAMPLE, "--nonsense"), ("--nonsense", "a", "b", "--nonsense"),
                ("--output", EXAMPLE, "-o"), ("--output", EXAMPLE, "-o", ""),
                (formats, EXAMPLE, "-o", "a.xyz"), (formats, EXAMPLE, "-o", "json"),
                (formats, EXAMPLE, "-o", "a", "-f", "shape"), ("--output", EXAMPLE, "-f", "json"),
                ("gpkg", EXAMPLE, "-o", "-", "-f", "gpkg"), ("", EXAMPLE, "-o", "a\n\033[31m")):
            with self.subTest(arguments=arguments):
                self.assert_fails(self.run_on(*arguments), 2, text)
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
            self.assertEqual((done.returncode, done.stderr), (0, b""))
            self.assertRegex(done.stdout, pattern)
        network = "82 Nodes, 113 Roads (joined, tagged one-ways), 16 places to check"
        hint = " (--report FILE lists them)"
        empty = self.file("empty.osm")
        for source, *arguments, said in (
                (EXAMPLE, "-o", "a.JSON", f"a.JSON: {network}{hint}\n"),
                (EXAMPLE, "-o", "-", f"standard output: {network}{hint}\n"),
                (EXAMPLE, "-o", "a.GraphML", "--join", "none", f"a.GraphML: 99 Nodes, 130 Roads "
                 f"(not joined, implied one-ways), 15 places to check{hint}\n"),
                (EXAMPLE, "-o", "a", "-f", "JSON", "-r", "-", f"a: {network}\n"),
                (EXAMPLE, "--quiet", ""), (EXAMPLE, "--quiet", "-o", "b.json", ""),
                (empty, f"{empty}: gives no roads\n"), (empty, "-q", ""),
                (empty, "-r", "-", f"{empty}: gives no roads\n"),
                (empty, "-o", "c.json", f"{empty}: gives no roads\nc.json: 0 Nodes, 0 Roads "
                 f"(joined, tagged one-ways), 0 places to check{hint}\n")):
            with self.subTest(arguments=arguments):
                done = self.run_on(source, *arguments)
                self.assertEqual((done.returncode, done.stderr.decode()), (0, said))
        self.assertEqual(self.run_example("--quiet").stdout, b"")

    def test_time_is_all_that_passed(self):
        start = time.monotonic()
        process = subprocess.Popen([PROGRAM, "-", "-r", "report.json"], cwd=self.folder,
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        time.sleep(0.2)
        text = process.communicate(EXAMPLE.read_bytes())[0].decode()
        took = time.monotonic() - start
        total, *stages = map(float, re.findall(r"\d+\.\d{3}", text[text.index("\n  time "):]))
        self.assertTrue(0.1 < stages[0] <= total <= took and len(stages) == 4, text)
        self.assertAlmostEqual(sum(stages), total, delta=0.005)

    def test_standard_input(self):
        content = EXAMPLE.read_bytes()
        whole = self.run_example("-o", "-").stdout
        self.assertTrue(whole)
        for packed in (content, gzip.compress(content), bz2.compress(content)):
            file = self.folder / "-"
            file.write_bytes(packed)
            with open(file) as stream:
                self.assertEqual(self.run_on("-", "-o", "-", stdin=stream).stdout, whole)
            self.assertEqual(self.run_on("-", "-o", "-", input=packed).stdout, whole)
            self.assertEqual(self.run_on("./-", "-o", "-", input=b"").stdout, whole)
        if EXTRACT.exists():
            self.assertEqual(self.run_on("-", "-o", "-", input=EXTRACT.read_bytes()).stdout,
                             self.run_on(EXTRACT, "-o", "-").stdout)
        with open(self.file("in.osm")) as stream:
            for arguments in (["-o", "in.osm", "-f", "json"], ["-r", "in.osm"]):
                done = self.run_on("-", *arguments, "--overwrite", stdin=stream)
                self.assert_fails(done, 2, "INPUT")

    def test_unreadable_standard_inputs(self):
        terminal, folder = os.openpty()[1], os.open(self.folder, os.O_RDONLY)
        for reason, options in (("is a terminal", {"stdin": terminal}),
                                ("is a directory", {"stdin": folder}),
                                ("empty", {"stdin": subprocess.DEVNULL}),
                                ("empty", {"preexec_fn": lambda: os.close(0)}),
                                ("line 1, column 1: ", {"input": b"<osm"})):
            self.assert_fails(self.run_on("-", **options), 1, "standard input: ", reason)

    def test_progress_is_shown_on_a_terminal(self):
        content = EXAMPLE.read_bytes()
        terminal, screen = os.openpty()
        process = subprocess.Popen([PROGRAM, "-", "-o", "out.json"], cwd=self.folder,
                                   stdin=subprocess.PIPE, stderr=screen)
        time.sleep(0.6)
        process.communicate(content)
        os.close(screen)
        lines = read_to_end(terminal).split("\r\x1b[K")
        self.assertEqual(lines[1], "reading 0 MiB")
        for stage in ("placing nodes 0 %", "joining roads 0 %", "writing 0 %", "finding traps 0 %"):
            self.assertIn(stage, lines)
        self.assertRegex(lines[-1], "^out.json: 82 Nodes")

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
