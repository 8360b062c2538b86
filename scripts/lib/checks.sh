# shellcheck shell=bash
# The checks that do not run the program. Uses messages.sh; needs `root`.

# sources: every C++ file of the project, separated by zero bytes.
sources() {
  (cd "$root" && git ls-files -z --cached --others --exclude-standard -- '*.h' '*.cpp')
}

check_format() {
  say "Checking the format"
  local formatter
  formatter=$(tool clang-format)
  (cd "$root" && sources | xargs -0 -n 50 -P "$(nproc)" "$formatter" --dry-run -Werror) ||
    fail "run $formatter -i on the files named above"
}

# check_shell: checks every script, and through them the files that they share.
check_shell() {
  say "Checking the shell scripts"
  (cd "$root" && git grep -lzE '^#!/usr/bin/env bash' |
    xargs -0 -n 5 -P "$(nproc)" shellcheck --external-sources --severity=warning) ||
    fail "see the lines above"
}

check_spelling() {
  say "Checking the spelling of the documents"
  (cd "$root" && codespell ./*.md docs) || fail "see the words above"
}

# check_tidy FILE...: checks files below src/ with the flags of the release build, which must be configured.
check_tidy() {
  [ $# -gt 0 ] || return 0
  say "Looking for mistakes with clang-tidy"
  (cd "$root" && printf '%s\0' "$@" | xargs -0 -n 1 -P "$(nproc)" "$(tool clang-tidy)" --quiet -p build/release) ||
    fail "clang-tidy found what stands above"
}
