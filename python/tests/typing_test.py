"""Types, and the worked example of the documentation."""

import re
import subprocess
import sys

import matplotlib
import pytest

from conftest import EXTRACT, ROOT


def mypy(*arguments):
    command = [sys.executable, "-m", "mypy", "--cache-dir=build/mypy", *arguments]
    return subprocess.run(command, capture_output=True, text=True).stdout


def test_types():
    # Where it is installed, with the stub of the compiled module
    for what in (["-p", "osm2roadnet"], ["python/tests/user_script.py"]):
        assert mypy(*what).startswith("Success"), mypy(*what)
    wrong = 'import osm2roadnet as rn\nrn.read("x", join=1).roads["name"][0].upper()\n'
    assert "arg-type" in mypy("-c", wrong) and "union-attr" in mypy("-c", wrong)


def test_the_worked_example(tmp_path, monkeypatch):
    if not EXTRACT.exists():
        pytest.skip("there are no extracts")
    monkeypatch.setattr(matplotlib.figure.Figure, "savefig", lambda *a, **k: drawn.append(a[0]))
    drawn, names = [], {}
    text = (ROOT / "docs/python.md").read_text()
    (script,) = re.findall(r"```python\n(import numpy.*?)```", text, re.DOTALL)
    exec(script, names)
    assert len(drawn) == 1 and (names["minutes"] < 15).sum() > len(names["minutes"]) / 2
