# shellcheck shell=bash
# How a target of fuzz/ is run. Needs `root`.

# fuzz_targets: the names of all targets, one on each line.
fuzz_targets() { (cd "$root/fuzz" && printf '%s\n' *Fuzz.cpp) | sed 's/Fuzz\.cpp$//'; }

# exec_fuzz_target TARGET SECONDS DIRECTORY: the shell, which is in `root`, becomes the target, which has been
# built and runs for so long on its corpus. What it learns goes to DIRECTORY, an input that breaks something too
# (crash-*).
exec_fuzz_target() {
  local target=$1 seconds=$2 learned=$3
  exec "build/fuzz/fuzz/${target}Fuzz" "$learned" "fuzz/corpus/$target" -dict="fuzz/dictionaries/$target.dict" \
    -artifact_prefix="$learned/" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=1024 \
    -print_final_stats=1 </dev/null
}
