# shellcheck shell=bash
# Long commands whose output a person need not read. The output goes to build/logs/NAME.log. On a terminal one
# line shows the progress; elsewhere one line says what is being done. Uses messages.sh, cleanup.sh; needs
# `root`.

# run_quietly NAME WHAT COMMAND...: returns the status of the command. After a failure shows the end of the
# log and names its place.
run_quietly() {
  local name=$1 what=$2 log status=0 started=$SECONDS
  shift 2
  log="$root/build/logs/$name.log"
  { mkdir -p "${log%/*}" && rm -f "$log" && : >"$log"; } 2>/dev/null ||
    fail "build/logs belongs to another user: remove it, or work in a checkout of your own"
  start_process "$@" >"$log" 2>&1 </dev/null
  if [ -t 2 ]; then
    while process_is_running "$started_process"; do
      printf '\r\e[K== %s%s (%s s)' "$what" "$(progress_in "$log")" "$((SECONDS - started))" >&2
      sleep 0.2
    done
    printf '\r\e[K== %s (%s s)\n' "$what" "$((SECONDS - started))" >&2
  else
    say "$what"
  fi
  wait "$started_process" || status=$?
  unset 'cleanup_processes[-1]'
  if [ "$status" != 0 ]; then
    tail -n 40 "$log" >&2
    say "The whole of it is in ${log#"$PWD/"}"
  fi
  return "$status"
}

# progress_in LOG: the progress of ninja or apt-get, from its output.
progress_in() {
  awk '
    /^\[[0-9]+\/[0-9]+\]/ { split(substr($1, 2), at, /[\/\]]/); step = "step"; done = at[1]; all = at[2] }
    / newly installed, / { all = $1 + $3; done = 0 }
    /^Get:/ { count("fetching") }
    /^Unpacking / { count("unpacking") }
    /^Setting up / { count("setting up") }
    function count(what) { if (step != what) done = 0; step = what; done++ }
    END { if (step && all) printf ": %s %d of %d", step, done, all }' "$1"
}
