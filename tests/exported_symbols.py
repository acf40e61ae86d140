"""exported_symbols.py LIBRARY: the extension exports its one function and nothing else."""
import subprocess
import sys


def main():
    listing = subprocess.run(["nm", "-D", "--defined-only", sys.argv[1]], check=True,
                             capture_output=True, text=True).stdout
    symbols = [line.split()[-1] for line in listing.splitlines()]
    print(symbols)
    sys.exit(0 if symbols == ["importOSMRoadNetworkImpl"] else 1)


if __name__ == "__main__":
    main()
