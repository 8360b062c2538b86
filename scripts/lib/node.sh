# shellcheck shell=bash
# NodeJS 18 or newer with npm (Debian's, or one on PATH), and packages from npm in the versions of a
# package-lock.json: the official MCP client, the tool for MCP bundles, the comparators of the measurements.
# Uses messages.sh, progress.sh, packages.sh.

# needed_node: prints the purpose "node" of packages.table, unless NodeJS is already there.
needed_node() { node_is_usable || echo node; }

node_is_usable() { command -v npm >/dev/null && node_is_new; }

node_is_new() {
  command -v node >/dev/null &&
    [ "$(node -p 'Number(process.versions.node.split(".")[0]) >= 18')" = true ]
}

check_node() {
  node_is_usable || fail "NodeJS 18 or newer with npm is needed; this is $(node --version 2>&1)"
}

# newest_node DIRECTORY: prints the path of the NodeJS 22 that its packages bring along, or of the system's if that
# is new enough.
newest_node() {
  local node
  for node in "$1"/node_modules/node-*/bin/node "$(command -v node)"; do
    if [ -x "$node" ] && "$node" -e 'process.exit(Number(process.versions.node.split(".")[0]) >= 24 ||
        /^22\.(19|[2-9]\d|\d{3,})\./.test(process.versions.node) ? 0 : 1)'; then
      echo "$node"
      return
    fi
  done
  fail "NodeJS 22.19 or newer is missing: run scripts/setup"
}

# install_node_packages DIRECTORY WHAT: installs once for each state of the lock file.
install_node_packages() {
  local directory=$1 what=$2 stamp
  stamp="$directory/node_modules/.installed-from"
  cmp -s "$directory/package-lock.json" "$stamp" && return
  run_quietly "npm-${directory##*/}" "Installing $what" npm ci --no-progress --prefix "$directory" ||
    fail "npm could not install $what (see above)"
  cp "$directory/package-lock.json" "$stamp"
}
