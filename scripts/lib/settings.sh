# shellcheck shell=bash
# write_settings HOME JSON: writes the settings file in that home directory, with the modes that the program
# uses.
write_settings() {
  local directory="$1/.local/share/app.tarnwell.Tarnwell"
  mkdir -p "$directory"
  chmod 700 "$directory"
  printf '%s\n' "$2" >"$directory/config.json"
  chmod 600 "$directory/config.json"
}
