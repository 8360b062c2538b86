# shellcheck shell=bash
# The parts of dovecot.sh and dovecot-without-move.sh that depend on the version: here 2.4. It accepts only a
# configuration that begins with the version that it is written for.

# dovecot_account MAIL USER GROUP: the places of the certificate, the account and its mail.
dovecot_account() {
  local mail=$1 user=$2 group=$3
  cat <<CONFIGURATION
dovecot_config_version = 2.4.0
dovecot_storage_version = 2.4.0
ssl_server_cert_file = $mail/server.pem
ssl_server_key_file = $mail/server.key
mail_driver = maildir
mail_path = ~/Maildir
passdb passwd-file {
  passwd_file_path = $mail/users
}
userdb static {
  fields {
    uid = $user
    gid = $group
    home = $mail/home
  }
}
CONFIGURATION
}

# dovecot_rights FILE: applies the rights in FILE and no others.
dovecot_rights() {
  cat <<CONFIGURATION
mail_plugins = acl
acl_driver = vfile
acl_global_path = $1
acl_globals_only = yes
CONFIGURATION
}
