# shellcheck shell=bash
# Runs a target of fuzz/. Needs `root`.

# fuzz_targets: the names of all targets, one on each line.
fuzz_targets() { (cd "$root/fuzz" && printf '%s\n' *Fuzz.cpp) | sed 's/Fuzz\.cpp$//'; }

# exec_fuzz_target TARGET SECONDS DIRECTORY: replaces the shell, which must be in `root`, by the built target,
# which runs for that time on its corpus. New inputs go to DIRECTORY, and so does an input that breaks
# something (crash-*).
exec_fuzz_target() {
  local target=$1 seconds=$2 learned=$3
  exec "build/asan/fuzz/${target}Fuzz" "$learned" "fuzz/corpus/$target" -dict="fuzz/dictionaries/$target.dict" \
    -artifact_prefix="$learned/" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=1024 \
    -print_final_stats=1 </dev/null
}
