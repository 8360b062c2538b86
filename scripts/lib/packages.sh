# shellcheck shell=bash disable=SC2034 # the lists are used by the scripts
# The Debian packages that the build, the demonstration and the tests need: installed as root, named to an
# ordinary user. Uses messages.sh, cleanup.sh.

packages_to_build=(cmake g++ libboost1.81-dev libicu-dev libssl-dev
  libsystemd-dev ninja-build nlohmann-json3-dev pkg-config)
packages_to_run=(ca-certificates dbus-daemon dovecot-imapd gnome-keyring libsecret-tools openssl python3
  util-linux)
packages_to_bench=(libbenchmark-dev libgmime-3.0-dev)
packages_to_check_apple=(clang-14 libc++-16-dev)
packages_to_package=(dpkg-dev file gzip python3)
packages_to_test=(clang-14 clang-format-14 clang-tidy-14 codespell curl dovecot-dev fish libclang-rt-14-dev
  libglib2.0-dev libgmock-dev libgtest-dev lintian mandoc strace systemd valgrind zsh)

# require_packages NAME...
require_packages() {
  local missing=() name
  for name in "$@"; do
    package_is_installed "$name" || missing+=("$name")
  done
  [ "${#missing[@]}" -gt 0 ] || return 0
  if [ "$(id -u)" != 0 ]; then
    printf 'error: these packages are missing: %s\n' "${missing[*]}" >&2
    printf 'Install them, then start again:\n  sudo apt-get install --no-install-recommends %s\n' \
      "${missing[*]}" >&2
    exit 1
  fi
  command -v apt-get >/dev/null || fail "apt-get is missing; install by other means: ${missing[*]}"
  say "Installing ${missing[*]}"
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
  local status=0
  {
    apt-get update -q &&
      DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "$@"
  } </dev/null >&2 || status=$?
  if [ -n "$own_policy" ]; then
    rm -f "$policy"
    unset 'cleanup_paths[-1]'
  fi
  [ "$status" = 0 ] || fail "apt-get could not install: $*"
  case " $* " in
    *" dovecot-imapd "*) systemctl disable --quiet dovecot.service dovecot.socket 2>/dev/null || true ;;
  esac
}
