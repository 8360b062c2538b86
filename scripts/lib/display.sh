# shellcheck shell=bash
# A display that nobody sees, with a window manager and the bus of screen readers. Uses messages.sh, cleanup.sh,
# and the bus of keyring.sh.

# start_display DIRECTORY: sets display_environment (words for env, after those of start_keyring) once windows can be shown. Needs start_keyring.
start_display() {
  local directory=$1 tool tries told number=
  for tool in Xvfb openbox; do
    command -v "$tool" >/dev/null || fail "$tool is missing: run scripts/setup"
  done
  [ -x /usr/libexec/at-spi-bus-launcher ] || fail "at-spi-bus-launcher is missing: run scripts/setup"
  # The server chooses a free number and tells it. Open in both directions: opening one end alone would wait.
  mkfifo "$directory/display"
  exec {told}<>"$directory/display"
  start_process Xvfb -displayfd "$told" -screen 0 1280x900x24 -nolisten tcp >"$directory/display.log" 2>&1
  read -r -t 20 -u "$told" number || fail "the display did not start: $(head -n 5 "$directory/display.log")"
  display_environment=("DISPLAY=:$number" QT_QPA_PLATFORM=xcb LANG=C.UTF-8)
  start_process env "${keyring_environment[@]}" "${display_environment[@]}" \
    openbox --sm-disable >"$directory/openbox.log" 2>&1
  start_process env "${keyring_environment[@]}" "${display_environment[@]}" \
    /usr/libexec/at-spi-bus-launcher --launch-immediately >"$directory/accessibility.log" 2>&1
  for ((tries = 0; tries < 200; tries++)); do
    if timeout 10 env "${keyring_environment[@]}" dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus \
      org.a11y.Bus.GetAddress >/dev/null 2>&1; then return; fi
    sleep 0.05
  done
  fail "the bus of screen readers did not start: $(head -n 5 "$directory/accessibility.log")"
}
