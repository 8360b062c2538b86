# shellcheck shell=bash
# Two ways to make Dovecot reject MOVE (RFC 6851). Each writes extra configuration for start_dovecot. Without
# the word MOVE in imap_capability alone, Dovecot would hide MOVE but still do it.

capabilities_without_move="IMAP4rev1 SASL-IR LOGIN-REFERRALS ID ENABLE IDLE LITERAL+ UIDPLUS NAMESPACE \
SPECIAL-USE UNSELECT CHILDREN"

# refuse_move_by_acl DIRECTORY FILE: Dovecot answers UID MOVE with "NO [NOPERM] Permission denied", but still
# allows UID COPY and the \Deleted flag. For INBOX the rule must name the user, because "owner" has no effect
# there.
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

# remove_move_command DIRECTORY FILE: Dovecot answers UID MOVE with "BAD ... Unknown command", like a server
# without MOVE. Needs dovecot-dev and a C compiler.
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
