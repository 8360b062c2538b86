# shellcheck shell=bash
# The packages for the build, the demonstration and the tests, listed in scripts/lib/packages.table. For root
# it installs them, for an ordinary user it names them. Without apt-get it looks for the programs. Uses
# messages.sh, progress.sh, needs.sh, cleanup.sh; needs `root`.

packages_table="$root/scripts/lib/packages.table"

# has_apt: false on systems that manage packages in another way.
has_apt() { command -v apt-get >/dev/null && command -v dpkg-query >/dev/null; }

# system_value KEY: of this system's os-release(5).
system_value() { sed -n "s/^$1=//p" /etc/os-release 2>/dev/null | tr -d '"'; }

# packages_column: the number of this release's column in the table. For an unknown release, the last column,
# which is that of the newest release.
packages_column() {
  awk -v codename="$(system_value VERSION_CODENAME)" \
    '$2 == "purpose" { found = NF - 1; for (i = 4; i <= NF; i++) if ($i == codename) found = i - 1; print found }' \
    "$packages_table"
}

# warn_of_unknown_release: for a release without a column, says which release's names are used.
warn_of_unknown_release() {
  local columns
  read -r -a columns < <(sed -n 's/^# purpose *need *//p' "$packages_table")
  case " ${columns[*]} " in *" $(system_value VERSION_CODENAME) "*) return ;; esac
  say "Not tried on $(system_value PRETTY_NAME): the packages are taken by their names in Debian's ${columns[-1]}"
}

# table_column COLUMN PURPOSE...: that column of the rows for the purposes, each entry once.
table_column() {
  local column=$1
  shift
  awk -v column="$column" -v purposes=" $* " \
    '!/^#/ && NF && index(purposes, " " $1 " ") && $column != "-" && !seen[$column]++ { print $column }' \
    "$packages_table"
}

# packages_for PURPOSE...: the names of the packages in this release, one on each line.
packages_for() { table_column "$(packages_column)" "$@"; }

# tool NAME [PURPOSE]: the command of a program of Clang here: with the release's version at its end, or
# without.
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

# require PURPOSE...: everything that the table lists for the purposes must be there.
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

# Debian starts a server as soon as it is installed. Here only its programs are needed, not a mail server that
# listens on this machine. So the policy hook (invoke-rc.d) refuses starts during the installation.
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
