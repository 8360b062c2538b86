# Completion of tarnwell in bash. The program takes one word.
_tarnwell() {
  COMPREPLY=()
  if [ "$COMP_CWORD" = 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W "serve test-connection status print-config help" -- "${COMP_WORDS[1]}")
  fi
}
complete -F _tarnwell tarnwell
