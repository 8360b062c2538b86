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

// The lines that the program logged, oldest first.
function journalLines() {
  execFileSync('journalctl', ['--sync']);
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
  await session.call('get_status');
  await session.call('list_folders');
  await session.call('search_inbox', { query: 'lunch on thursday' });
  await session.call('search_inbox', { subject: 'divorce' });
  await session.call('search_inbox');
  await session.call('get_message_summary', { uid: 3 });
  await session.call('get_message_body', { uid: 1 });
  await session.call('get_message_body', { uid: 7 });
  await session.call('propose_inbox_cleanup', { limit: 5 });
  await session.call('move_message', { uid: 6, targetFolder: 'Archive' });
  writeSettings({ ...account, safety: { readOnly: false } });
  await session.call('move_message', { uid: 6, targetFolder: 'Archive', dryRun: true });
  await session.call('move_message', { uid: 6, targetFolder: 'Attic' });
  await session.call('move_message', { uid: 6, targetFolder: 'Archive' });
  await session.call('mark_as_read', { uid: 3 });
  await session.call('trash_message', { uid: 2 });
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
