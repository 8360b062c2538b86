# shellcheck shell=bash
# What the build, the demonstration and the tests need, by scripts/lib/packages.table: as root it is installed, to an
# ordinary user it is named. Without apt-get it is looked for. Uses messages.sh, progress.sh, needs.sh, cleanup.sh;
# needs `root`.

packages_table="$root/scripts/lib/packages.table"

# has_apt: what a system without it has is another's business.
has_apt() { command -v apt-get >/dev/null && command -v dpkg-query >/dev/null; }

# system_value KEY: of this system's os-release(5).
system_value() { sed -n "s/^$1=//p" /etc/os-release 2>/dev/null | tr -d '"'; }

# packages_column: the number of this release's column in the table; of the last one, the newest release's, when
# there is none.
packages_column() {
  awk -v codename="$(system_value VERSION_CODENAME)" \
    '$2 == "purpose" { found = NF - 1; for (i = 4; i <= NF; i++) if ($i == codename) found = i - 1; print found }' \
    "$packages_table"
}

# warn_of_unknown_release: says whose names are taken on a release that has no column.
warn_of_unknown_release() {
  local columns
  read -r -a columns < <(sed -n 's/^# purpose *need *//p' "$packages_table")
  case " ${columns[*]} " in *" $(system_value VERSION_CODENAME) "*) return ;; esac
  say "Not tried on $(system_value PRETTY_NAME): the packages are taken by their names in Debian's ${columns[-1]}"
}

# table_column COLUMN PURPOSE...: that column of the purposes' rows, each entry once.
table_column() {
  local column=$1
  shift
  awk -v column="$column" -v purposes=" $* " \
    '!/^#/ && NF && index(purposes, " " $1 " ") && $column != "-" && !seen[$column]++ { print $column }' \
    "$packages_table"
}

# packages_for PURPOSE...: the packages' names in this release, one on each line.
packages_for() { table_column "$(packages_column)" "$@"; }

# tool NAME [PURPOSE]: how a program of Clang's is called here: with the release's version at its end, or without.
tool() {
  local name=$1 purpose=${2:-test} package=
  if has_apt; then
    package=$(awk -v column="$(packages_column)" -v name="$name" -v purpose="$purpose" \
      '$1 == purpose && $2 ~ "^program:" { split($2, need, /[:>]/); if (need[2] == name) print $column }' \
      "$packages_table")
  fi
  case $package in
    *-[0-9]*) printf '%s-%s\n' "$name" "${package##*-}" ;;
    *) printf '%s\n' "$name" ;;
  esac
}

# require PURPOSE...: all that the table names for the purposes.
require() {
  local missing=() name
  if ! has_apt; then
    require_needs "$@"
    return
  fi
  for name in $(packages_for "$@"); do
    package_is_installed "$name" || missing+=("$name")
  done
  [ "${#missing[@]}" -gt 0 ] || return 0
  warn_of_unknown_release
  if [ "$(id -u)" != 0 ]; then
    printf 'error: these packages are missing: %s\n' "${missing[*]}" >&2
    printf 'Install them, then start again:\n  sudo apt-get install --no-install-recommends %s\n' \
      "${missing[*]}" >&2
    exit 1
  fi
  install_packages "${missing[@]}"
}

package_is_installed() {
  [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Debian starts a server the moment it is installed. Here its programs are wanted, not a mail server that
# listens on this machine: the policy hook (invoke-rc.d) says no while the packages go in.
install_packages() {
  local policy=/usr/sbin/policy-rc.d own_policy=
  if [ ! -e "$policy" ]; then
    own_policy=yes
    cleanup_paths+=("$policy")
    printf '#!/bin/sh\nexit 101\n' >"$policy"
    chmod 755 "$policy"
  fi
  local status=0 what=$1
  [ $# = 1 ] || what="$# packages"
  run_quietly install "Installing $what" env LC_ALL=C DEBIAN_FRONTEND=noninteractive sh -euc '
    apt-get update -q
    exec apt-get install -q -y --no-install-recommends "$@"' install "$@" || status=$?
  if [ -n "$own_policy" ]; then
    rm -f "$policy"
    unset 'cleanup_paths[-1]'
  fi
  [ "$status" = 0 ] || fail "apt-get could not install: $*"
  case " $* " in
    *" dovecot-imapd "*) systemctl disable --quiet dovecot.service dovecot.socket 2>/dev/null || true ;;
  esac
}
