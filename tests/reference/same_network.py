"""same_network.py PROGRAM INPUT: the program and the reference import make the same network of INPUT.

Exits 0 when they do, else prints the differences and exits 1.
"""
import pathlib
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).parent


def main():
    program, source = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        ours = pathlib.Path(folder, "ours.json")
        theirs = pathlib.Path(folder, "theirs.json")
        subprocess.run([program, source, "-o", ours], check=True)
        subprocess.run([sys.executable, HERE / "reference_import.py", source, theirs], check=True)
        compare = subprocess.run([sys.executable, HERE / "compare_networks.py", ours, theirs])
    sys.exit(compare.returncode)


if __name__ == "__main__":
    main()
