# shellcheck shell=bash
# For systems without apt-get: checks that the programs and libraries of packages.table are there, in the
# versions that it asks for. Uses messages.sh; table_column comes from packages.sh.

# Not everybody's PATH has the folders of server programs.
search_path="$PATH:/usr/local/sbin:/usr/sbin:/sbin"

# require_needs PURPOSE...: succeeds when everything is there. Else names what is missing, and what was found
# instead.
require_needs() {
  local need missing=()
  while read -r need; do
    need_is_met "$need" || missing+=("$(describe_need "$need")")
  done < <(table_column 2 "$@")
  [ "${#missing[@]}" -gt 0 ] || return 0
  printf 'error: this system has no apt-get, and these are missing:\n' >&2
  printf '  %s\n' "${missing[@]}" >&2
  printf 'Install them as this system does it, then start again.\n' >&2
  exit 1
}

# need_is_met NEED
need_is_met() {
  local found asked=
  found=$(version_found "${1%%>=*}") || return 1
  case $1 in *">="*) asked=${1##*>=} ;; esac
  [ -z "$asked" ] || [ "$(printf '%s\n' "$asked" "$found" | sort --version-sort | head -n 1)" = "$asked" ]
}

# version_found KIND:NAME: prints the version, or nothing when it is unknown. Fails when there is no such
# thing.
version_found() {
  local name=${1#*:} header macro
  case $1 in
    program:*)
      name=$(PATH=$search_path command -v "$name") || return 1
      { timeout 10 "$name" --version </dev/null 2>/dev/null || true; } |
        { grep -oE '[0-9]+(\.[0-9]+)+' || true; } | head -n 1
      ;;
    library:*) pkg-config --modversion "$name" 2>/dev/null ;;
    header:*)
      header=${name%%:*} macro=
      case $name in *:*) macro=${name#*:} ;; esac
      printf '#include <%s>\n%s\n' "$header" "$macro" | c++ -E -x c++ - 2>/dev/null | tail -n 1 | tr -d '"' | tr _ .
      ;;
  esac
}

# describe_need NEED: describes the need for a person.
describe_need() {
  local what=${1%%>=*} asked='' found
  case $1 in *">="*) asked=", ${1##*>=} or newer" ;; esac
  found=$(version_found "$what") || found=
  what=${what/:/ }
  printf 'the %s%s%s\n' "${what%%:*}" "$asked" "${found:+ (this one is $found)}"
}
