# shellcheck shell=bash
# Whatever a script starts or makes is noted here and taken away when the script ends, however it ends.
# Processes are ended by their id, newest first; then what was mounted is taken off, before files and folders are removed.

cleanup_processes=()
cleanup_mounts=()
cleanup_paths=()

# start_process COMMAND...: runs the command in the background, sets started_process.
# The kernel ends it should this script be killed outright (setpriv --pdeathsig). Not to be called in a
# command substitution, whose subshell would be that parent. (<&0: else the shell gives /dev/null.)
start_process() {
  setpriv --pdeathsig KILL -- "$@" <&0 &
  started_process=$!
  cleanup_processes+=("$started_process")
}

# run_process COMMAND...: runs the command and waits for its end; its status is the result. A signal to the
# script is acted upon at once, not when the command has ended by itself.
run_process() {
  local status=0
  start_process "$@"
  wait "$started_process" || status=$?
  unset 'cleanup_processes[-1]'
  return "$status"
}

# new_directory VARIABLE: a fresh temporary directory, its name in VARIABLE. The names are kept short: a
# socket path has room for 107 bytes. Others may pass through, for servers that run as another user.
new_directory() {
  local made
  made=$(mktemp -d /tmp/tw.XXXXXX)
  chmod 711 "$made"
  cleanup_paths+=("$made")
  printf -v "$1" %s "$made"
}

# process_is_running ID: of this shell's own processes alone. The id of one that has ended may be another's.
process_is_running() {
  local running
  running=$(jobs -rp)
  [[ $'\n'$running$'\n' == *$'\n'$1$'\n'* ]]
}

# end_process ID: asks politely, insists after three seconds. Nothing happens when it is not running.
end_process() {
  local process=$1 tries
  process_is_running "$process" || return 0
  kill -TERM "$process" 2>/dev/null || true
  for ((tries = 0; tries < 60; tries++)); do
    process_is_running "$process" || return 0
    sleep 0.05
  done
  kill -KILL "$process" 2>/dev/null || true
  wait "$process" 2>/dev/null || true
}

cleanup() {
  local status=$? index path
  # A second signal must not end the cleaning up half-way (timeout sends one to the script and one to its
  # whole group).
  trap - EXIT
  trap '' INT TERM HUP
  for ((index = ${#cleanup_processes[@]} - 1; index >= 0; index--)); do
    end_process "${cleanup_processes[index]}"
  done
  for ((index = ${#cleanup_mounts[@]} - 1; index >= 0; index--)); do
    umount --lazy "${cleanup_mounts[index]}"
  done
  for path in "${cleanup_paths[@]}"; do
    rm -rf -- "$path"
  done
  exit "$status"
}

trap cleanup EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM
