// After a day with the program journalctl shows what docs/logs.md shows, and nothing private.
//   node journal.test.mjs PROGRAM DIRECTORY PORT DOCUMENT
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import test from 'node:test';
import { startClient, writeSettings } from './support/program.mjs';
import { samples, secrets } from './support/samples.mjs';

const [program, directory, port, document] = process.argv.slice(2);
const account = { email: 'user@example.org', imapHost: 'localhost', imapPort: Number(port) };

const letTheJournalCatchUp = () => execFileSync('journalctl', ['--sync']);

// The lines that the program logged, oldest first.
function journalLines() {
  letTheJournalCatchUp();
  return execFileSync('journalctl', ['-t', 'tarnwell', '-o', 'cat', '--no-pager'], { encoding: 'utf8' })
    .split('\n').filter((line) => line !== '');
}

// The lines in the document: the text after "tarnwell[...]: " in its first block of such lines.
const story = fs.readFileSync(document, 'utf8').split('\n')
  .map((line) => /^ {4}\w+ \d+ [\d:]+ \S+ tarnwell\[\d+\]: (.*)$/.exec(line)?.[1])
  .filter((line) => line !== undefined);

const withoutDurations = (line) => line.replace(/ \(\d+ ms\)$/, '');

test('journalTellsTheStoryOfTheDocument', async (t) => {
  writeSettings(account);
  const session = await startClient(program, directory);
  t.after(() => session.client.close());
  // The socket of the journal may hold no more than ten entries (net.unix.max_dgram_qlen), and the program drops what
  // the journal is too slow to take. So each call waits until those of the call before it have been taken.
  const call = async (name, args) => {
    letTheJournalCatchUp();
    await session.call(name, args);
  };
  await call('get_status');
  await call('list_folders');
  await call('search_inbox', { query: 'lunch on thursday' });
  await call('search_inbox', { subject: 'divorce' });
  await call('search_inbox');
  await call('get_message_summary', { uid: 3 });
  await call('get_message_body', { uid: 1 });
  await call('get_message_body', { uid: 7 });
  await call('propose_inbox_cleanup', { limit: 5 });
  await call('move_message', { uid: 6, targetFolder: 'Archive' });
  writeSettings({ ...account, safety: { readOnly: false } });
  await call('move_message', { uid: 6, targetFolder: 'Archive', dryRun: true });
  await call('move_message', { uid: 6, targetFolder: 'Attic' });
  await call('move_message', { uid: 6, targetFolder: 'Archive' });
  await call('mark_as_read', { uid: 3 });
  await call('trash_message', { uid: 2 });
  letTheJournalCatchUp();
  await session.finish();

  assert.ok(story.length > 20, `${document} tells no story`);
  assert.deepEqual(journalLines().map(withoutDurations), story.map(withoutDurations));
});

test('nothingPrivateIsInTheJournal', () => {
  const text = execFileSync('journalctl', ['-o', 'json', '--no-pager'], { encoding: 'utf8' });
  const personal = ['app-pass-word', account.email, 'divorce', 'lunch', ...secrets,
    ...samples.map((sample) => sample.subject)];
  assert.ok(text.includes('search_inbox'));
  for (const word of personal) assert.ok(!text.includes(word), `the journal holds "${word}"`);
});
