# shellcheck shell=bash
# Messages of a script for the person who runs it. Only results go to standard output.

say() { printf '== %s\n' "$*" >&2; }

fail() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}
