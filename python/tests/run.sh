#!/usr/bin/env bash
# run.sh PROGRAM: installs the package with all it can use into build/python, a virtual environment,
# and runs its tests, which hold it against the program. Arguments after that go to pytest.
set -euo pipefail
cd "$(dirname "$0")/../.."
program=$1
shift
environment=build/python

# All that the installed package is made of.
sources() {
  find pyproject.toml CMakeLists.txt cmake python/CMakeLists.txt python/core python/osm2roadnet \
    support model osm tags importer ways graph segments turns report export threads \
    -type f -not -name '*.pyc' -print0 | sort -z | xargs -0 sha256sum
}

install() {
  [ -x "$environment/bin/python" ] || python3 -m venv "$environment"
  "$environment/bin/python" -m pip install --disable-pip-version-check -q ".[test]"
}

exec 9>"build/.python.lock"
flock 9
if ! sources | cmp -s - "$environment/installed"; then
  log=$(mktemp)
  if ! install >"$log" 2>&1; then
    cat "$log"
    rm -f "$log"
    echo "can't install the Python package and what its tests need; is PyPI within reach?"
    exit 1
  fi
  rm -f "$log"
  sources >"$environment/installed"
fi
exec "$environment/bin/python" -m pytest --program "$program" \
  --pyargs osm2roadnet python/tests docs/python.md "$@"
