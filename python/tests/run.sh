#!/usr/bin/env bash
# run.sh PYTHON PROGRAM [ARGUMENT...]: installs the package with all it can use into build/python, a
# virtual environment of that Python, and runs its tests, which hold it against the program.
# Further arguments go to pytest.
set -euo pipefail
cd "$(dirname "$0")/../.."
python=$1
program=$2
shift 2
environment=build/python
export PATH="$PWD/$environment/bin:$PATH"  # some tools of the build are programs

# All that the installed package is made of.
sources() {
  find pyproject.toml CMakeLists.txt cmake python support model osm tags importer ways graph \
    parts segments turns report export threads third_party -type f \
    -not -path 'python/tests/*' -not -name '*.pyc' -print0 | LC_ALL=C sort -z | xargs -0 sha256sum
}

# With what the build needs at hand, rather than in a place that is new each time, only what changed
# is compiled.
install() {
  [ -x "$environment/bin/python" ] || "$python" -m venv "$environment"
  local pip=("$environment/bin/python" -m pip --disable-pip-version-check -q)
  local needed
  mapfile -t needed < <("$python" -c '
import tomllib
print(*tomllib.load(open("pyproject.toml", "rb"))["build-system"]["requires"], sep="\n")')
  "${pip[@]}" install "${needed[@]}"
  "${pip[@]}" install --no-build-isolation ".[test]"
}

mkdir -p build
exec 9>build/python.lock
flock 9
current=$(sources)
if [ "$current" != "$(cat "$environment/installed" 2>/dev/null)" ]; then
  log=$(mktemp)
  if ! install >"$log" 2>&1; then
    cat "$log"
    rm -f "$log"
    echo "can't install the Python package with what its tests need; is PyPI within reach?"
    exit 1
  fi
  rm -f "$log"
  echo "$current" >"$environment/installed"
fi
exec "$environment/bin/python" -m pytest --program "$program" \
  --pyargs osm2roadnet python/tests docs/python.md "$@"
