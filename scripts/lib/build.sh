# shellcheck shell=bash
# build_preset NAME: configures and builds one preset of CMakePresets.json; stops with what went wrong.
# Uses messages.sh; needs `root`.
build_preset() {
  local preset=$1
  local directory="$root/build/$preset"
  if [ -e "$directory" ] && [ ! -w "$directory" ]; then
    fail "build/$preset belongs to another user: remove it, or work in a checkout of your own"
  fi
  say "Building the preset $preset"
  (
    cd "$root"
    cmake --preset "$preset" >&2
    cmake --build --preset "$preset" --parallel "$(nproc)" >&2
  ) </dev/null || fail "the preset $preset could not be built (see above)"
}
