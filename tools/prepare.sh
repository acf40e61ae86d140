# Sourced by ./run, ./test and .ci/run from the root of the repository.

# install_packages FILE ...: installs those of the packages listed in the files that are missing, under
# their own name and as what another package provides (Node.js from elsewhere often brings npm).
install_packages() {
  local missing sudo=()
  mapfile -t missing < <(comm -23 <(grep -hv '^#' "$@" | sort -u) <(
    dpkg-query -W -f '${db:Status-Status} ${Package} ${Provides}\n' |
      sed -n 's/^installed //p' | tr ', ' '\n\n' | sort -u))
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
