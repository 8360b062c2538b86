# shellcheck shell=bash
# A throw-away Courier-IMAP with TLS on a loopback port. It keeps its users in the system's /etc/courier and meets
# its password service in /run/courier, so it runs only in a system made for it (root.sh), as root. Uses
# messages.sh, cleanup.sh, ports.sh; the account and await_greeting from dovecot.sh; certificates from
# certificates.sh.

# It tells no special uses, although a folder for the trash is in its configuration.
# shellcheck disable=SC2034 # for tests/integration/run
courier_traits='{"prefix": "INBOX.", "separator": ".", "specialUse": false, "refuses": [],
  "searchesOldCharsets": true}'

# start_courier DIRECTORY: DIRECTORY has ca.pem, server.pem and server.key. Sets courier_port once the server has
# greeted. The mailbox is empty.
start_courier() {
  local directory=$1 home="$1/courier" attempt
  mkdir "$home"
  maildirmake "$home/Maildir"
  cat "$directory/server.key" "$directory/server.pem" >"$home/certificate.pem"
  chown -R nobody:nogroup "$home"
  chmod 644 "$home/certificate.pem" # read by the user courier
  sed -i 's/^authmodulelist=.*/authmodulelist="authuserdb"/' /etc/courier/authdaemonrc
  userdb "$mail_address" set "uid=$(id -u nobody)" "gid=$(id -g nobody)" "home=$home" "mail=$home/Maildir" \
    "imappw=$(printf '%s\n' "$mail_password" "$mail_password" | userdbpw -md5)"
  chmod 700 /etc/courier/userdb
  makeuserdb
  start_process /usr/lib/courier/courier-authlib/authdaemond >"$home/authdaemon.log" 2>&1
  # Another program may take the port between its choice and its use. Then try another port.
  for attempt in 1 2 3; do
    courier_port=$(free_port)
    # As /usr/lib/courier/imapd-ssl does it, but on loopback and in the foreground.
    # shellcheck disable=SC2016 # expanded inside
    start_process env -i PATH="$PATH" sh -ec 'set -a
      . /etc/courier/imapd
      . /etc/courier/imapd-ssl
      IMAP_TLS=1 TLS_CACHEFILE= TLS_CERTFILE=$1/certificate.pem
      exec couriertcpd -address=127.0.0.1 -maxprocs="$MAXDAEMONS" -maxperip="$MAXPERIP" \
        $TCPDOPTS "$2" "$COURIERTLS" -server -tcpd -user=courier \
        /usr/lib/courier/courier/imaplogin /usr/bin/imapd Maildir' courier "$home" "$courier_port" \
      >"$home/courier.log" 2>&1
    if await_greeting "$directory/ca.pem" "$courier_port" "$started_process"; then return; fi
    end_process "$started_process"
  done
  cat "$home"/*.log >&2
  fail "Courier did not greet on a loopback port (attempt $attempt)"
}
