# shellcheck shell=bash
# Two ways to a Dovecot that does not move messages (RFC 6851): each writes extra configuration for
# start_dovecot. Leaving the word out of imap_capability alone hides MOVE but still performs it.

capabilities_without_move="IMAP4rev1 SASL-IR LOGIN-REFERRALS ID ENABLE IDLE LITERAL+ UIDPLUS NAMESPACE \
SPECIAL-USE UNSELECT CHILDREN"

# refuse_move_by_acl DIRECTORY FILE: UID MOVE is answered "NO [NOPERM] Permission denied", while UID COPY
# and the \Deleted flag remain allowed. For INBOX the rule must name the user; "owner" is not looked at.
refuse_move_by_acl() {
  local directory=$1 file=$2
  use_dovecot_version
  mkdir -p "$directory/mail"
  printf 'INBOX -user=user@example.org e\n' >"$directory/mail/acls"
  {
    printf 'imap_capability = %s\n' "$capabilities_without_move"
    dovecot_rights "$directory/mail/acls"
  } >"$file"
}

# remove_move_command DIRECTORY FILE: UID MOVE is answered "BAD ... Unknown command", as by a server that
# has never heard of it. Needs dovecot-dev and a C compiler.
remove_move_command() {
  local directory=$1 file=$2
  [ -f /usr/include/dovecot/config.h ] || fail "the Dovecot headers are missing: install dovecot-dev"
  mkdir -p "$directory/mail/plugins"
  cat >"$directory/no-move.c" <<'SOURCE'
#include <dovecot/config.h>
#include <dovecot/lib.h>
#include <dovecot/imap-common.h>
#include <dovecot/imap-commands.h>

struct module;
void nomove_plugin_init(struct module *module);
void nomove_plugin_deinit(void);

const char *nomove_plugin_version = DOVECOT_ABI_VERSION;

void nomove_plugin_init(struct module *module) {
  (void)module;
  command_unregister("MOVE");
  command_unregister("UID MOVE");
}

void nomove_plugin_deinit(void) {}
SOURCE
  cc -std=gnu99 -shared -fPIC -I/usr/include/dovecot "$directory/no-move.c" \
    -o "$directory/mail/plugins/lib99_nomove_plugin.so"
  cat >"$file" <<CONFIGURATION
imap_capability = $capabilities_without_move
mail_plugin_dir = $directory/mail/plugins
protocol imap {
  mail_plugins = nomove
}
CONFIGURATION
}
