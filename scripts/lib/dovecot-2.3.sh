# shellcheck shell=bash
# The parts of dovecot.sh and dovecot-without-move.sh that depend on the version: here 2.3.

# dovecot_account MAIL USER GROUP: the places of the certificate, the account and its mail.
dovecot_account() {
  local mail=$1 user=$2 group=$3
  cat <<CONFIGURATION
ssl_cert = <$mail/server.pem
ssl_key = <$mail/server.key
mail_location = maildir:~/Maildir
passdb {
  driver = passwd-file
  args = username_format=%u $mail/users
}
userdb {
  driver = static
  args = uid=$user gid=$group home=$mail/home
}
CONFIGURATION
}

# dovecot_rights FILE: applies the rights in FILE and no others.
dovecot_rights() {
  cat <<CONFIGURATION
mail_plugins = acl
plugin {
  acl = vfile:$1
  acl_globals_only = yes
}
CONFIGURATION
}
