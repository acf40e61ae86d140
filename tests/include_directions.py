"""Checks that each folder includes only what it may: the house's layers, from the bottom up."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# What a folder's files may include, beside their own folder: folders, or single files.
ALLOWED = {
    "support": set(),
    "model": {"support"},
    "osm": {"support"},
    "tags": {"support", "osm", "model/roadnetwork/DirectionOfTravel.hpp"},
    "importer": {"support", "model", "osm", "tags", "ways", "graph", "segments"},
    "ways": {"support", "osm", "tags", "importer"},
    "graph": {"support", "model", "osm", "tags", "importer"},
    "segments": {"support", "model", "osm", "tags", "importer"},
    "gateway": {"support", "model", "importer"},
    "turns": {"support", "model", "osm", "tags", "importer"},
    "report": {"support", "model", "osm", "tags", "importer", "turns"},
    "export": {"support", "model", "osm", "tags", "importer", "turns", "report"},
    "threads": {"osm"},
    "parts": {"support", "osm", "tags", "importer", "ways", "graph", "segments", "export"},
    "cli": {"support", "model", "osm", "importer", "report", "export", "threads"},
    "python": {"support", "model", "osm", "importer", "report", "export", "threads", "parts"},
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
                if target != folder and target not in allowed and include not in allowed:
                    wrong.append(f"{name} includes {include}")
    print("\n".join(wrong) or f"{seen} includes, all in the right direction")
    sys.exit(1 if wrong or not seen else 0)


if __name__ == "__main__":
    main()
