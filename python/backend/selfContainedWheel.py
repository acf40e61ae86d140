"""The build backend: scikit-build-core's, whose wheels get the libraries that they need."""

import pathlib
import subprocess
import sys
import tempfile

from scikit_build_core import build as _build
from scikit_build_core.build import *  # noqa: F401,F403 - all other hooks are its own


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    with tempfile.TemporaryDirectory() as folder:
        name = _build.build_wheel(folder, config_settings, metadata_directory)
        # Also finds out on which systems it runs, and tags it so.
        subprocess.run(
            [
                sys.executable,
                "-m",
                "auditwheel",
                "repair",
                "--wheel-dir",
                f"{folder}/repaired",
                f"{folder}/{name}",
            ],
            check=True,
        )
        (repaired,) = pathlib.Path(folder, "repaired").iterdir()
        pathlib.Path(wheel_directory, repaired.name).write_bytes(repaired.read_bytes())
        return repaired.name
