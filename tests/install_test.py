"""install_test.py BUILD COMPILER FLAGS: what is installed can be moved, found and built upon."""
import concurrent.futures
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(__file__).resolve().parent.parent
EXPECTED = "the network holds 82 Nodes and 113 Roads"


def run(*command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          **options)
    assert done.returncode == 0, f"{shlex.join(map(str, command))}\n{done.stdout}"
    return done.stdout


def check_manuals(program, share):
    """The manual page and the completions know what --help says."""
    text = run(program, "--help")
    options = re.findall(r"(?m)^  (?:(-\w), )?(--[\w-]+)", text)
    options = {name for names in options for name in names if name}
    formats = re.findall(r"(?m)^  (\w+(?:, \w+)*)  ", text.split("\nFormats")[1])
    formats = ", ".join(formats).split(", ")
    choices = {"-f": formats, "--format": formats}
    choices |= {option: values.split("|")
                for option, values in re.findall(r"(?m)^  .*?(--\w+) (\w+(?:\|\w+)+)", text)}
    assert len(options) > 9 and len(formats) > 7

    page = (share / "man/man1/osm2roadnet.1").read_text().replace("\\", "")
    assert options <= {*re.findall(r"fB(--?[a-z-]+)fR", page)}, page

    def bash(*words):
        script = f"""source '{share}/bash-completion/completions/osm2roadnet'
            COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _osm2roadnet "$1"
            printf '%s\\n' "${{COMPREPLY[@]}}" """
        return run("bash", "-c", script, "bash", program, *words).split()

    assert {*bash("-")} == options and bash("--over") == ["--overwrite"]
    for option, values in choices.items():
        assert bash(option, "") == bash(option, "=", "") == values
    assert bash("-o", "") == bash("-q", "") == bash("") == []

    specs = run("zsh", "-fc", """_arguments() { print -rl -- "$@" }; _call_program() { "${@:2}" }
        words=("$1"); setopt extendedglob; source "$2" """, "zsh", program, share / "zsh/site-functions/_osm2roadnet")
    found = dict(re.findall(r"(?m)^\([^)]*\)(--?[\w-]+)=?(.*)", specs))
    assert found.keys() == options, specs
    for option, values in choices.items():
        assert f":({' '.join(values)})" in found[option]


def main():
    build, compiler, flags = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        run("cmake", "--install", build, "--prefix", folder / "at first")
        prefix = (folder / "at first").rename(folder / "moved")
        page = next(prefix.rglob("embedding.md"))
        examples = page.parent / "examples"
        town = examples / "harbour-town.osm"

        links = [link for link in re.findall(r"\]\(([^)#]+)", page.read_text()) if ":" not in link]
        lost = [link for link in links if not (page.parent / link).is_file()]
        assert links and not lost, lost

        # With CMake.
        tool = ["-G", "Ninja", f"-DCMAKE_CXX_COMPILER={compiler}", f"-DCMAKE_CXX_FLAGS={flags}"]
        run("cmake", "-S", examples / "host", "-B", folder / "host", *tool,
            f"-DCMAKE_PREFIX_PATH={prefix}")
        assert EXPECTED in run("cmake", "--build", folder / "host", "--target", "run_example_host")

        # With pkg-config.
        os.environ["PKG_CONFIG_PATH"] = str(next(prefix.rglob("osm2roadnet.pc")).parent)
        ask = lambda what: run("pkg-config", what, "osm2roadnet").split()
        compiling = [compiler, "-std=c++20", *flags.split(), *ask("--cflags")]
        run(*compiling, examples / "host/main.cpp", *ask("--libs"), "-o", folder / "example",
            "-Wl,-rpath," + ask("--variable=libdir")[0])
        assert EXPECTED in run(folder / "example", ask("--variable=extension")[0], town)

        # Each header by itself.
        headers = list(prefix.rglob("*.hpp"))
        assert headers
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            list(pool.map(lambda header: run(*compiling, "-fsyntax-only", header), headers))

        # The program, with a format that loads a library of ours.
        program = prefix / "bin/osm2roadnet"
        if program.exists():
            run(program, town, "-o", folder / "town.gpkg")
            check_manuals(program, prefix / "share")

        # The libraries alone need nothing that only the program needs.
        absent = [f"-DCMAKE_DISABLE_FIND_PACKAGE_{name}=ON" for name in ("CLI11", "GDAL", "mimalloc")]
        run("cmake", "-S", SOURCE, "-B", folder / "alone", *tool, *absent,
            "-DOSM2ROADNET_PROGRAM=OFF", "-DBUILD_TESTING=OFF")
        needs = (folder / "alone/build.ninja").read_text()
        assert "expat" in needs and not re.search("libgdal|libGeographic", needs)


if __name__ == "__main__":
    main()
