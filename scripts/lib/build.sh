# shellcheck shell=bash
# build_preset NAME [TARGET]: configures and builds one preset of CMakePresets.json, warnings being errors, or
# one target of it; stops with what went wrong.
# Uses messages.sh; needs `root`.
build_preset() {
  local preset=$1 target=${2:-all}
  local directory="$root/build/$preset"
  if [ -e "$directory" ] && [ ! -w "$directory" ]; then
    fail "build/$preset belongs to another user: remove it, or work in a checkout of your own"
  fi
  say "Building the preset $preset"
  (
    cd "$root"
    cmake --preset "$preset" -D TARNWELL_WERROR=ON >&2
    cmake --build --preset "$preset" --target "$target" --parallel "$(nproc)" >&2
  ) </dev/null || fail "the preset $preset could not be built (see above)"
}

# use_changelog_date: sets SOURCE_DATE_EPOCH, unless it is set, to the time of the Debian change log
# (https://reproducible-builds.org/docs/source-date-epoch/).
use_changelog_date() {
  local date
  date=$(sed -n 's/^ -- .*  //p' "$root/packaging/debian/changelog.in" | head -n 1)
  export SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:-$(date --date="$date" +%s)}"
}
