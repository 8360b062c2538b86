# shellcheck shell=bash
# A throw-away Dovecot 2.3 or 2.4 with TLS on a loopback port, for root (its mail then belongs to nobody) or
# an ordinary user. dovecot-VERSION.sh has the differences between the versions. Uses messages.sh, needs.sh,
# cleanup.sh, ports.sh; certificates from certificates.sh; needs `root`.

mail_address=user@example.org
mail_password=app-pass-word

# What differs between mail servers (tests/integration/support/server-traits.mjs).
dovecot_traits='{"prefix": "", "separator": "/", "specialUse": true, "refuses": [], "searchesOldCharsets": true}'

# start_dovecot DIRECTORY [EXTRA_CONFIGURATION_FILE]: DIRECTORY has server.pem and server.key, and the mail in
# mail/home/Maildir. Sets dovecot_port and dovecot_process once the server has greeted.
start_dovecot() {
  local directory=$1 extra=${2:-} attempt
  use_dovecot_version
  local user group as_user=()
  user=$(id -un) group=$(id -gn)
  if [ "$(id -u)" = 0 ]; then
    user=nobody group=nogroup
    # A change of user clears the signal of start_process, so it is set again.
    as_user=(setpriv --reuid=nobody --regid=nogroup --clear-groups --pdeathsig KILL --)
  fi
  mkdir -p "$directory/mail/home/Maildir"
  cp "$directory/server.pem" "$directory/server.key" "$directory/mail/"
  printf '%s:{PLAIN}%s::::::\n' "$mail_address" "$mail_password" >"$directory/mail/users"
  # Another program may take the port between its choice and its use. Then try another port.
  for attempt in 1 2 3; do
    dovecot_port=$(free_port)
    write_dovecot_configuration "$directory/mail" "$user" "$group" >"$directory/mail/dovecot.conf"
    [ -z "$extra" ] || cat "$extra" >>"$directory/mail/dovecot.conf"
    if [ "$(id -u)" = 0 ]; then chown -R nobody:nogroup "$directory/mail"; fi
    start_process "${as_user[@]}" env TZ=UTC "$dovecot_program" -F -c "$directory/mail/dovecot.conf"
    dovecot_process=$started_process
    if await_greeting "$directory/ca.pem" "$dovecot_port" "$dovecot_process"; then return; fi
    end_process "$dovecot_process"
  done
  cat "$directory/mail/dovecot.log" >&2 || true
  fail "Dovecot did not greet on a loopback port (attempt $attempt)"
}

# use_dovecot_version: sets dovecot_program, and defines dovecot_account and dovecot_rights for the installed
# version.
use_dovecot_version() {
  local version
  dovecot_program=$(PATH=$search_path command -v dovecot) ||
    fail "Dovecot is missing: install the package dovecot-imapd"
  version=$("$dovecot_program" --version | cut -d. -f1-2)
  [ -f "$root/scripts/lib/dovecot-$version.sh" ] ||
    fail "Dovecot 2.3 or 2.4 is needed; this is $("$dovecot_program" --version)"
  # shellcheck source=scripts/lib/dovecot-2.4.sh
  . "$root/scripts/lib/dovecot-$version.sh"
}

# await_greeting CA PORT PROCESS: waits until the server answers "* OK ... ready" over TLS. Before that, Dovecot
# first says that it waits for its own parts.
await_greeting() {
  local ca=$1 port=$2 process=$3 tries greeting
  for ((tries = 0; tries < 100; tries++)); do
    process_is_running "$process" || return 1
    greeting=$(printf 'a1 LOGOUT\n' | timeout 5 openssl s_client -connect "127.0.0.1:$port" -quiet -crlf \
      -CAfile "$ca" -verify_hostname localhost -verify_return_error 2>/dev/null | head -n 1) || true
    case $greeting in "* OK "*ready*) return 0 ;; esac
    sleep 0.05
  done
  return 1
}

# Failed logins are answered without delay (auth_failure_delay, anvil-auth-penalty).
write_dovecot_configuration() {
  local mail=$1 user=$2 group=$3
  dovecot_account "$mail" "$user" "$group"
  cat <<CONFIGURATION
protocols = imap
listen = 127.0.0.1
base_dir = $mail/run
state_dir = $mail/state
log_path = $mail/dovecot.log
default_internal_user = $user
default_internal_group = $group
default_login_user = $user
ssl = required
ssl_min_protocol = TLSv1.2
auth_mechanisms = plain login
auth_failure_delay = 0
namespace inbox {
  inbox = yes
  separator = /
  mailbox Trash {
    special_use = \\Trash
  }
  mailbox Archive {
    special_use = \\Archive
  }
  mailbox "Sent Messages" {
    special_use = \\Sent
  }
  mailbox Junk {
    special_use = \\Junk
  }
  mailbox Drafts {
    special_use = \\Drafts
  }
}
service anvil {
  chroot =
  unix_listener anvil-auth-penalty {
    mode = 0
  }
}
service imap-login {
  chroot =
  inet_listener imap {
    port = 0
  }
  inet_listener imaps {
    port = $dovecot_port
    ssl = yes
  }
}
CONFIGURATION
}
