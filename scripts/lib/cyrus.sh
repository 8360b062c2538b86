# shellcheck shell=bash
# A throw-away Cyrus IMAP with TLS on a loopback port, with the settings of Debian's /etc/imapd.conf and folders of
# its own. Needs root and the user cyrus, so it runs only in a system made for it (root.sh). Uses messages.sh,
# cleanup.sh, ports.sh; the account and await_greeting from dovecot.sh; certificates from certificates.sh.

# Its names of folders have no quotes. Its search reads bodies only in US-ASCII and UTF-8.
# shellcheck disable=SC2034 # for tests/integration/run
cyrus_traits='{"prefix": "INBOX.", "separator": ".", "specialUse": true, "refuses": ["Quotes \"and\" spaces"],
  "searchesOldCharsets": false}'

# start_cyrus DIRECTORY: DIRECTORY has ca.pem, server.pem and server.key. Sets cyrus_port once the server has
# greeted. The mailbox is empty; the first login makes it.
start_cyrus() {
  local directory=$1 home="$1/cyrus" attempt
  mkdir -p "$home"/{state,mail}
  cp "$directory/server.pem" "$directory/server.key" "$home/"
  printf %s "$mail_password" |
    saslpasswd2 -p -c -f "$home/passwords" -u "${mail_address#*@}" "${mail_address%@*}"
  write_cyrus_settings "$home" >"$home/imapd.conf"
  chown -R cyrus:mail "$home"
  # Another program may take the port between its choice and its use. Then try another port.
  for attempt in 1 2 3; do
    cyrus_port=$(free_port)
    write_cyrus_services "$home" "$cyrus_port" >"$home/cyrus.conf"
    start_process /usr/lib/cyrus/bin/master -C "$home/imapd.conf" -M "$home/cyrus.conf" \
      -p "$home/master.pid" >"$home/master.log" 2>&1
    if await_greeting "$directory/ca.pem" "$cyrus_port" "$started_process"; then return; fi
    end_process "$started_process"
  done
  cat "$home/master.log" >&2
  fail "Cyrus did not greet on a loopback port (attempt $attempt)"
}

# A user's name has a domain, which is not the server's own (defaultdomain).
write_cyrus_settings() {
  local home=$1
  grep -vE '^(configdirectory|proc_path|mboxname_lockpath|partition-default|sasl_mech_list):' /etc/imapd.conf
  cat <<SETTINGS
configdirectory: $home/state
proc_path: $home/state/proc
mboxname_lockpath: $home/state/lock
partition-default: $home/mail
virtdomains: userid
defaultdomain: localhost
autocreate_post: yes
sasl_sasldb_path: $home/passwords
sasl_mech_list: PLAIN
tls_server_cert: $home/server.pem
tls_server_key: $home/server.key
SETTINGS
}

write_cyrus_services() {
  local home=$1 port=$2
  cat <<SERVICES
START {
  recover cmd="/usr/sbin/cyrus ctl_cyrusdb -C $home/imapd.conf -r"
}
SERVICES {
  imaps cmd="/usr/lib/cyrus/bin/imapd -C $home/imapd.conf -s" listen="127.0.0.1:$port" prefork=0
}
EVENTS {
}
SERVICES
}
