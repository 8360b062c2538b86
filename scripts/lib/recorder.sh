# shellcheck shell=bash
# The recorder stands between the program and the mail server and records every line that the program sends
# (tests/integration/wire-recorder.mjs). Uses messages.sh, cleanup.sh.

# start_recorder DIRECTORY INTEGRATION UPSTREAM_PORT: sets recorder_port. The record is DIRECTORY/wire.
start_recorder() {
  local directory=$1 integration=$2 upstream=$3 tries
  : >"$directory/wire"
  start_process node "$integration/wire-recorder.mjs" "$directory" "$upstream" >"$directory/recorder.port"
  for ((tries = 0; tries < 200; tries++)); do
    [ -s "$directory/recorder.port" ] && break
    process_is_running "$started_process" || fail "the recorder did not start"
    sleep 0.05
  done
  recorder_port=$(cat "$directory/recorder.port")
  [ -n "$recorder_port" ] || fail "the recorder did not start within ten seconds"
}
