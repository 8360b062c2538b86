# shellcheck shell=bash
# Loads everything that a script of this project may need. Sets `root`, the top folder of the project.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
# shellcheck source=scripts/lib/messages.sh
. "$root/scripts/lib/messages.sh"
# shellcheck source=scripts/lib/cleanup.sh
. "$root/scripts/lib/cleanup.sh"
# shellcheck source=scripts/lib/progress.sh
. "$root/scripts/lib/progress.sh"
# shellcheck source=scripts/lib/needs.sh
. "$root/scripts/lib/needs.sh"
# shellcheck source=scripts/lib/packages.sh
. "$root/scripts/lib/packages.sh"
# shellcheck source=scripts/lib/node.sh
. "$root/scripts/lib/node.sh"
# shellcheck source=scripts/lib/ports.sh
. "$root/scripts/lib/ports.sh"
# shellcheck source=scripts/lib/certificates.sh
. "$root/scripts/lib/certificates.sh"
# shellcheck source=scripts/lib/mailbox.sh
. "$root/scripts/lib/mailbox.sh"
# shellcheck source=scripts/lib/dovecot.sh
. "$root/scripts/lib/dovecot.sh"
# shellcheck source=scripts/lib/dovecot-without-move.sh
. "$root/scripts/lib/dovecot-without-move.sh"
# shellcheck source=scripts/lib/courier.sh
. "$root/scripts/lib/courier.sh"
# shellcheck source=scripts/lib/cyrus.sh
. "$root/scripts/lib/cyrus.sh"
# shellcheck source=scripts/lib/keyring.sh
. "$root/scripts/lib/keyring.sh"
# shellcheck source=scripts/lib/display.sh
. "$root/scripts/lib/display.sh"
# shellcheck source=scripts/lib/journal.sh
. "$root/scripts/lib/journal.sh"
# shellcheck source=scripts/lib/settings.sh
. "$root/scripts/lib/settings.sh"
# shellcheck source=scripts/lib/recorder.sh
. "$root/scripts/lib/recorder.sh"
# shellcheck source=scripts/lib/build.sh
. "$root/scripts/lib/build.sh"
# shellcheck source=scripts/lib/fuzzing.sh
. "$root/scripts/lib/fuzzing.sh"
# shellcheck source=scripts/lib/checks.sh
. "$root/scripts/lib/checks.sh"
# shellcheck source=scripts/lib/root.sh
. "$root/scripts/lib/root.sh"
