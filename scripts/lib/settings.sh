# shellcheck shell=bash
# write_settings HOME JSON: the settings file of that home directory, with the modes the program uses.
write_settings() {
  local directory="$1/.local/share/app.tarnwell.Tarnwell"
  mkdir -p "$directory"
  chmod 700 "$directory"
  printf '%s\n' "$2" >"$directory/config.json"
  chmod 600 "$directory/config.json"
}
