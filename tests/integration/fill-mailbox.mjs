// Copies a Maildir (scripts/lib/mailbox.sh) into the empty mailbox of any mail server, over IMAP: the sample
// folders, which stay empty, and into INBOX the mails in the order of their file names, with their times and
// the flag \Seen.
//   node fill-mailbox.mjs MAILDIR DIRECTORY SERVER_PORT TRAITS
// DIRECTORY contains ca.pem. TRAITS is what differs between servers (support/server-traits.mjs).
import fs from 'node:fs';
import { IMAPSession } from './support/imap-session.mjs';
import { foldersOn, readTraits } from './support/server-traits.mjs';

const [maildir, directory, serverPort, traits] = process.argv.slice(2);
const months = ['Jan', 'Feb', 'Mar', 'Apr', 'May', 'Jun', 'Jul', 'Aug', 'Sep', 'Oct', 'Nov', 'Dec'];

// The date-time of RFC 3501 section 9, in UTC.
function dateTime(instant) {
  const [year, month, day] = instant.toISOString().split('T')[0].split('-');
  return `${day}-${months[month - 1]}-${year} ${instant.toISOString().slice(11, 19)} +0000`;
}

const session = await IMAPSession.open(serverPort, `${directory}/ca.pem`, 'user@example.org', 'app-pass-word');
for (const { path, specialUse } of foldersOn(readTraits(traits))) {
  if (path === 'INBOX') continue;
  const use = specialUse ? ` (USE (${specialUse}))` : '';
  await session.command(`CREATE "${path.replaceAll(/["\\]/g, '\\$&')}"${use}`);
}
for (const file of fs.readdirSync(`${maildir}/cur`).sort()) {
  const path = `${maildir}/cur/${file}`;
  const flags = file.endsWith('S') ? '\\Seen' : '';
  const mail = fs.readFileSync(path, 'latin1').replaceAll(/\r?\n/g, '\r\n');
  await session.command(`APPEND INBOX (${flags}) "${dateTime(fs.statSync(path).mtime)}"`, mail);
}
await session.close();
