# shellcheck shell=bash
# What a script says to the person who runs it. Everything but results goes to standard error.

say() { printf '== %s\n' "$*" >&2; }

fail() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}
