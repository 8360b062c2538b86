# shellcheck shell=bash
# A private session bus with an unlocked gnome-keyring, for one temporary home directory. Every variable is
# set for a single command, so the user's own bus, keyring and files are not touched.

password_service=app.tarnwell.Tarnwell

# start_keyring DIRECTORY [BUS_SOCKET]: makes DIRECTORY/home and DIRECTORY/runtime. Sets keyring_environment
# (words for env) once the Secret Service answers.
start_keyring() {
  local directory=$1 bus=${2:-$1/bus} tool tries
  for tool in dbus-daemon gnome-keyring-daemon secret-tool; do
    command -v "$tool" >/dev/null || fail "$tool is missing: install dbus-daemon, gnome-keyring, libsecret-tools"
  done
  mkdir -p "$directory/home" "$directory/runtime"
  chmod 700 "$directory/runtime"
  # No service directory: otherwise the bus would start a second, locked keyring by itself.
  cat >"$directory/bus.conf" <<CONFIGURATION
<busconfig>
  <type>session</type>
  <listen>unix:path=$bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
CONFIGURATION
  keyring_environment=(-u DISPLAY -u WAYLAND_DISPLAY -u XDG_DATA_HOME -u XDG_CONFIG_HOME
    "HOME=$directory/home" "XDG_RUNTIME_DIR=$directory/runtime" "DBUS_SESSION_BUS_ADDRESS=unix:path=$bus")
  start_process env "${keyring_environment[@]}" \
    dbus-daemon --nofork --nopidfile --nosyslog --config-file="$directory/bus.conf" \
    2>"$directory/bus.log"
  for ((tries = 0; tries < 100; tries++)); do
    [ -S "$bus" ] && break
    sleep 0.02
  done
  [ -S "$bus" ] || fail "the private session bus did not start: $(head -n 5 "$directory/bus.log")"
  # The unlock password on standard input creates the login collection. It must not be empty.
  printf 'unlock\n' >"$directory/unlock"
  start_process env "${keyring_environment[@]}" \
    gnome-keyring-daemon --foreground --unlock --components=secrets \
    --control-directory="$directory/runtime/keyring" \
    <"$directory/unlock" >"$directory/keyring.log" 2>&1
  for ((tries = 0; tries < 100; tries++)); do
    if store_password "probe@example.org" probe 2>/dev/null; then break; fi
    sleep 0.05
  done
  ((tries < 100)) || fail "the private keyring did not start: $(head -n 5 "$directory/keyring.log")"
  clear_password "probe@example.org"
}

# store_password ADDRESS PASSWORD: stores the password in the way that README.md describes.
store_password() {
  printf %s "$2" | timeout 10 env "${keyring_environment[@]}" \
    secret-tool store --label=Tarnwell service "$password_service" account "$1"
}

clear_password() {
  timeout 10 env "${keyring_environment[@]}" secret-tool clear service "$password_service" account "$1"
}
