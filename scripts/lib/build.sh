# shellcheck shell=bash
# Uses messages.sh, progress.sh, packages.sh; needs `root`.

# build_preset NAME [TARGET]: configures and builds one preset of CMakePresets.json, or one target of it, with
# warnings as errors. After a failure shows the errors and stops.
build_preset() { configure_and_build "$1" "${2:-all}" -D TARNWELL_WERROR=ON; }

# configure_and_build PRESET TARGET CMAKE_ARGUMENTS...
configure_and_build() {
  local preset=$1 target=$2
  shift 2
  local directory="$root/build/$preset"
  if [ -e "$directory" ] && [ ! -w "$directory" ]; then
    fail "build/$preset belongs to another user: remove it, or work in a checkout of your own"
  fi
  # libFuzzer needs Clang, and Clang compiles with sanitizers in half the time.
  case $preset in
    asan | tsan) set -- -D CMAKE_CXX_COMPILER="$(tool clang++)" "$@" ;;
  esac
  # A ninja that is told to end also ends its compilers. cmake --build would leave both running.
  run_quietly "build-$preset" "Building the preset $preset" sh -euc '
    cd "$1"
    preset=$2 target=$3 jobs=$4
    shift 4
    cmake --preset "$preset" "$@"
    exec ninja -C "build/$preset" -j "$jobs" "$target"' build "$root" "$preset" "$target" "$(nproc)" "$@" ||
    fail "the preset $preset could not be built (see above)"
}

# use_changelog_date: sets SOURCE_DATE_EPOCH, unless it is set, to the time of the Debian changelog
# (https://reproducible-builds.org/docs/source-date-epoch/).
use_changelog_date() {
  local date
  date=$(sed -n 's/^ -- .*  //p' "$root/packaging/debian/changelog.in" | head -n 1)
  export SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:-$(date --date="$date" +%s)}"
}
