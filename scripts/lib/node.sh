# shellcheck shell=bash
# NodeJS 18 or newer with npm (Debian's, or one that is on PATH already), and packages for it: the official MCP
# client in the versions that tests/integration/package-lock.json pins, the comparators of the measurements in
# those of bench/peers/package-lock.json. Uses messages.sh, packages.sh.

node_is_usable() {
  command -v npm >/dev/null && command -v node >/dev/null &&
    [ "$(node -p 'Number(process.versions.node.split(".")[0]) >= 18')" = true ]
}

require_node() {
  node_is_usable && return
  require_packages nodejs npm
  node_is_usable || fail "NodeJS 18 or newer with npm is needed; this is $(node --version 2>&1)"
}

# install_node_packages DIRECTORY: those of its lock file, once for each state of it.
install_node_packages() {
  local directory=$1 stamp
  stamp="$directory/node_modules/.installed-from"
  cmp -s "$directory/package-lock.json" "$stamp" && return
  say "Installing the packages of ${directory#"$root"/}"
  (cd "$directory" && npm ci --no-progress </dev/null >&2) ||
    fail "npm could not install them (see above)"
  cp "$directory/package-lock.json" "$stamp"
}
