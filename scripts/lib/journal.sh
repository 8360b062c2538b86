# shellcheck shell=bash
# A system journal of its own. Uses messages.sh, cleanup.sh.

# start_journal DIRECTORY: starts a systemd-journald. Only in a mount namespace of its own: it puts empty file
# systems over /run and /var/log, and makes the user's runtime directory there.
start_journal() {
  local directory=$1 place tries
  for place in /run /var/log; do mount -t tmpfs tmpfs "$place"; done
  mkdir -p "/run/user/$(id -u)" /run/systemd/journal /run/log/journal
  chmod 700 "/run/user/$(id -u)"
  [ -x /lib/systemd/systemd-journald ] || fail "systemd-journald is missing: install the package systemd"
  start_process /lib/systemd/systemd-journald 2>"$directory/journald.log"
  for ((tries = 0; tries < 500; tries++)); do
    [ -S /run/systemd/journal/socket ] && return
    sleep 0.02
  done
  fail "systemd-journald did not start: $(cat "$directory/journald.log")"
}

# in_own_mounts COMMAND...: runs the command in a mount namespace of its own. Root needs nothing else. Other users
# also get a user namespace, in which they are root.
in_own_mounts() {
  local namespace=(unshare --mount) refusal
  if [ "$(id -u)" != 0 ]; then namespace+=(--map-root-user); fi
  refusal=$("${namespace[@]}" true 2>&1) || fail "this machine allows no mount namespace: $refusal"
  run_process "${namespace[@]}" "$@"
}
