"""Checks that each folder includes only what it may: the house's layers, from the bottom up."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# What a folder's files may include, beside their own folder.
ALLOWED = {
    "support": set(),
    "model": {"support"},
    "osm": {"support"},
    "importer": {"support", "model", "osm", "graph", "segments"},
    "graph": {"support", "model", "osm", "importer"},
    "segments": {"support", "model", "osm", "importer"},
    "gateway": {"support", "model", "importer"},
    "report": {"support", "model", "osm", "importer", "segments"},
    "export": {"support", "model", "osm", "importer", "report"},
    "cli": {"support", "model", "osm", "importer", "report", "export"},
}
# The two stages in osm/ work on the importer; one of them stores the model's DirectionOfTravel.
EXCEPTIONS = {
    ("osm/collectWayAttributes.hpp", "model/roadnetwork/DirectionOfTravel.hpp"),
    ("osm/collectWayAttributes.cpp", "importer/RoadNetworkImporter.hpp"),
}


def main():
    wrong = []
    seen = 0
    for folder, allowed in ALLOWED.items():
        for source in sorted((ROOT / folder).rglob("*.?pp")):
            name = source.relative_to(ROOT).as_posix()
            for include in re.findall(r'#include "([^"]+)"', source.read_text()):
                seen += 1
                if not (ROOT / include).is_file():
                    wrong.append(f"{name} includes {include}, which is not a path from the root")
                target = include.split("/")[0]
                if target != folder and target not in allowed and (name, include) not in EXCEPTIONS:
                    wrong.append(f"{name} includes {include}")
    print("\n".join(wrong) or f"{seen} includes, all in the right direction")
    sys.exit(1 if wrong or not seen else 0)


if __name__ == "__main__":
    main()
