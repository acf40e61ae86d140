# Sourced by ./run, ./test and .ci/run from the root of the repository.

# install_packages FILE ...: installs those of the packages listed in the files that are missing.
install_packages() {
  local wanted missing=() sudo=()
  mapfile -t wanted < <(grep -hv '^#' "$@")
  for package in "${wanted[@]}"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  echo "Installing ${missing[*]}"
  [ "$(id -u)" = 0 ] || sudo=(sudo)
  "${sudo[@]}" apt-get -qq update
  DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get -qq install -y --no-install-recommends \
    "${missing[@]}" >/dev/null
}

# prepare_and_build PRESET [TARGET ...]: quiet unless something fails.
prepare_and_build() {
  local preset=$1 log
  shift
  install_packages tools/packages.txt
  [ -f "build/$preset/build.ninja" ] || echo "Building osm2roadnet; the first time takes a few minutes"
  log=$(mktemp)
  if ! { { [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"; } &&
    cmake --build "build/$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
