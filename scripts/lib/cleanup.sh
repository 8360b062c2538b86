# shellcheck shell=bash
# Notes everything that a script starts or makes, and removes it when the script ends, however it ends. Ends
# processes by their id, the newest first. Then it unmounts file systems, and then removes files and folders.

cleanup_processes=()
cleanup_mounts=()
cleanup_paths=()

# start_process COMMAND...: runs the command in the background and sets started_process. If the script itself
# is killed, the kernel ends the command (setpriv --pdeathsig). Do not call this in a command substitution:
# its subshell would be the parent. (<&0: otherwise the shell gives /dev/null.)
start_process() {
  setpriv --pdeathsig KILL -- "$@" <&0 &
  started_process=$!
  cleanup_processes+=("$started_process")
}

# run_process COMMAND...: runs the command, waits for it and returns its status. A signal to the script takes
# effect at once, not only when the command has ended.
run_process() {
  local status=0
  start_process "$@"
  wait "$started_process" || status=$?
  unset 'cleanup_processes[-1]'
  return "$status"
}

# new_directory VARIABLE: makes a new temporary directory and stores its name in VARIABLE. The name is short,
# because a socket path has room for 107 bytes. Other users may enter it, for servers that run as another
# user.
new_directory() {
  local made
  made=$(mktemp -d /tmp/tw.XXXXXX)
  chmod 711 "$made"
  cleanup_paths+=("$made")
  printf -v "$1" %s "$made"
}

# process_is_running ID: only for this shell's own processes. The id of an ended process may be used again.
process_is_running() {
  local running
  running=$(jobs -rp)
  [[ $'\n'$running$'\n' == *$'\n'$1$'\n'* ]]
}

# end_process ID: sends SIGTERM, and SIGKILL after three seconds. Does nothing when it is not running.
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
  # A second signal must not interrupt the cleanup. (timeout sends one signal to the script and one to its
  # whole group.)
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
