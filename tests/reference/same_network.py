"""same_network.py PROGRAM INPUT: program and reference import make the same of it, to the bit."""

import sys

from comparison import first_differences, run
from osm_data import read_osm
from reference_import import network_of

if __name__ == "__main__":
    program, source = sys.argv[1:]
    sys.exit(first_differences(run(program, source), network_of(read_osm(source))) or 0)
