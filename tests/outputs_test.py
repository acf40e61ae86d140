"""outputs_test.py PROGRAM: outputs are there whole or not at all, and what was there is kept."""
import itertools
import json
import os
import resource
import signal
import subprocess
import time
import unittest

from fixture.command_line import CommandLine, ENDINGS, EXAMPLE, FOLDERS, PROGRAM, STREAMS, limited


class Outputs(CommandLine):
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
        process = subprocess.Popen([PROGRAM, EXAMPLE, "-o", self.folder / "out.json", "-q",
                                    "-r", pipe])
        while not (unfinished := list(self.folder.glob(".osm2roadnet-*"))):
            time.sleep(0.001)  # then it waits for somebody to read its report
        unfinished[0].unlink()
        unfinished[0].symlink_to(precious)
        pipe.read_bytes()
        process.wait(60)
        self.assertEqual(precious.stat().st_mode & 0o777, 0o600)

    def test_outputs_that_cannot_be_written(self):
        (self.folder / "dangling").symlink_to("nothing")
        for name, ending, reason in (("none/out", "json", "none/out: can't write"),
                                     (".", "json", "is a directory"),
                                     (".", "gpkg", "is a directory"),
                                     (".", "gmns", "the current folder"),
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
            if ending == "fgb":  # which may be there if it is empty
                folder.mkdir(mode=0o700)
            self.assert_succeeds(self.run_example("-o", f"town.{ending}/"))
            self.assertEqual(folder.stat().st_mode & 0o777, 0o700 if ending == "fgb" else 0o755)
            self.assert_holds(*names, folder=folder)
            self.assert_fails(self.run_on("empty.osm", "-o", folder), 1, "--overwrite")
            old = (folder / names[1]).read_bytes()
            folder.chmod(0o1750)
            link.symlink_to(folder)
            self.assert_succeeds(self.run_on("empty.osm", "-o", link, "-f", ending, "--overwrite"))
            self.assertNotEqual((folder / names[1]).read_bytes(), old)
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
        for reason, *arguments in (("File exists", "--overwrite"), ("lost", "--overwrite"),
                                   ("not empty",)):
            with self.held("-o", output, *arguments) as process:
                output.mkdir(exist_ok=True)
                (output / "precious").touch()
            self.assertIn(reason, process.message)
            self.assertEqual(process.returncode, 1)
            self.assertTrue((output / "precious").exists())
            self.assert_holds("out.gmns")
            (output / "precious").unlink()  # an empty folder is there, the next time

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


if __name__ == "__main__":
    unittest.main()
