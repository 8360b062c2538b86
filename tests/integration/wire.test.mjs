// The commands that each reading tool sends, and that the mailbox is unchanged afterwards.
//   node wire.test.mjs PROGRAM DIRECTORY PORT SERVER_PORT
// PORT is the recorder's, SERVER_PORT the mail server's own, for a second session that checks the mailbox.
import assert from 'node:assert/strict';
import test from 'node:test';
import { CommandReader } from './support/command-reader.mjs';
import { IMAPSession } from './support/imap-session.mjs';
import { environment, resultObject, startClient, writeSettings } from './support/program.mjs';
import { samples } from './support/samples.mjs';
import { assertOnlyReading, isNeverSent, isReadingCommand, recordLines, recordedBursts, recordedCommands }
  from './support/wire.mjs';

const [program, directory, port, serverPort] = process.argv.slice(2);

test('theRecorderReadsTheSameHoweverTheBytesArrive', () => {
  const bytes = Buffer.from('A1 LOGIN {3}\r\nbob {4+}\r\na\r\nb\r\nA2 SELECT {0}\r\n\r\nA3 NOOP {x}\r\n');
  const expected = [
    { kind: 'line', text: 'A1 LOGIN {3}' }, { kind: 'literal', text: 'bob' }, { kind: 'line', text: ' {4+}' },
    { kind: 'literal', text: 'a\r\nb' }, { kind: 'line', text: '' }, { kind: 'line', text: 'A2 SELECT {0}' },
    { kind: 'line', text: '' }, { kind: 'line', text: 'A3 NOOP {x}' }];
  for (let cut = 0; cut <= bytes.length; cut++) {
    const reader = new CommandReader();
    const pieces = [...reader.push(bytes.subarray(0, cut)), ...reader.push(bytes.subarray(cut))];
    assert.deepEqual(pieces, expected, `cut at ${cut}`);
  }
  const reader = new CommandReader();
  assert.deepEqual([...bytes].flatMap((byte) => reader.push(Buffer.of(byte))), expected);
});

test('theWatchKnowsWhatMayNotBeSent', () => {
  const never = ['EXPUNGE', 'UID EXPUNGE 1', 'CLOSE', 'CREATE x', 'DELETE x', 'RENAME a b', 'APPEND x {5}',
    'SETACL x', 'expunge'];
  const notReading = [...never, 'SELECT INBOX', 'UID STORE 1 +FLAGS (\\Seen)', 'UID MOVE 1 "Trash"',
    'UID COPY 1 "Trash"', 'EXAMINE Trash', 'UID FETCH 1 (BODY[1])', 'UID FETCH 1 (RFC822)', 'NOOP x'];
  const reading = ['LOGIN "a\\"b" "c"', 'CAPABILITY', 'EXAMINE INBOX', 'LIST "" "*"', 'LOGOUT',
    'UID SEARCH ALL', 'UID SEARCH UNSEEN SINCE 1-Feb-2024 BEFORE 2-Mar-2024',
    'UID SEARCH CHARSET UTF-8 FROM {3}«é EXPUNGE» SUBJECT {1}«x» TEXT {1}«y»',
    'UID FETCH 3,2 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)', 'UID FETCH 3 (BODY.PEEK[1.2])'];
  for (const command of never) assert.ok(isNeverSent(`A0007 ${command}`), command);
  for (const command of notReading) assert.ok(!isReadingCommand(`A0007 ${command}`), command);
  for (const command of reading) {
    assert.ok(isReadingCommand(`A0007 ${command}`), command);
    assert.ok(!isNeverSent(`A0007 ${command}`), command);
  }
});

const summaries = '(UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)';
// Tool, arguments, and the commands between EXAMINE INBOX and LOGOUT. A dash means that there is no session.
const dialogues = [
  ['get_status', {}, '-'],
  ['list_folders', {}, ['LIST "" "*"']],
  ['search_inbox', { query: 'nowhere to be found' }, ['UID SEARCH TEXT {19}«nowhere to be found»']],
  ['search_inbox', { limit: 1 },
    ['UID SEARCH ALL', `UID FETCH 16 ${summaries}`, 'UID FETCH 16 (BODY.PEEK[1])']],
  // The subject shows a secret, so the body is not fetched.
  ['search_inbox', { subject: 'verification code' },
    ['UID SEARCH SUBJECT {17}«verification code»', `UID FETCH 7 ${summaries}`]],
  ['search_inbox', { unreadOnly: true, since: '2024-03-05', before: '2024-03-06', from: 'é', limit: 5 },
    ['UID SEARCH CHARSET UTF-8 UNSEEN SINCE 5-Mar-2024 BEFORE 6-Mar-2024 FROM {2}«é»']],
];

test('eachReadingToolSendsExactlyItsCommands', async (t) => {
  writeSettings({ email: 'user@example.org', imapHost: 'localhost', imapPort: Number(port) });
  const session = await startClient(program, directory, environment);
  t.after(() => session.client.close());
  for (const [tool, args, between] of dialogues) {
    const before = recordLines(directory).length;
    resultObject(await session.call(tool, args));
    const commands = recordedCommands(directory, before).map((command) => command.text);
    const expected = between === '-' ? [] : ['LOGIN "user@example.org" "app-pass-word"', 'CAPABILITY',
      'EXAMINE INBOX', ...between, 'LOGOUT'];
    const tagged = expected.map((command, i) => `A${String(i + 1).padStart(4, '0')} ${command}`);
    assert.deepEqual(commands, tagged, `${tool} ${JSON.stringify(args)}`);
  }
  await session.finish();
});

test('commandsThatNeedNoAnswerGoOutTogether', async (t) => {
  const session = await startClient(program, directory, environment);
  t.after(() => session.client.close());
  const bursts = async (tool, args) => {
    const before = recordLines(directory).length;
    resultObject(await session.call(tool, args));
    return recordedBursts(directory, before);
  };
  const begin = ['LOGIN', 'CAPABILITY, EXAMINE'];
  assert.deepEqual(await bursts('list_folders'), [...begin, 'LIST', 'LOGOUT']);
  assert.deepEqual(await bursts('get_message_body', { uid: 1 }), [...begin, 'UID FETCH', 'UID FETCH', 'LOGOUT']);
  const search = await bursts('search_inbox', { subject: 'lunch' });
  assert.deepEqual(search, [...begin, 'UID SEARCH', 'UID FETCH', 'UID FETCH', 'LOGOUT']);
  for (const tool of ['search_inbox', 'propose_inbox_cleanup']) {
    const all = await bursts(tool);
    const bodies = all.splice(4, 1)[0].split(', ');
    assert.deepEqual(all, [...begin, 'UID SEARCH', 'UID FETCH', 'LOGOUT']);
    assert.ok(bodies.length > 5 && bodies.every((word) => word === 'UID FETCH'), bodies.join(', '));
  }
  await session.finish();
});

async function mailboxState() {
  const session = await IMAPSession.open(serverPort, `${directory}/ca.pem`, 'user@example.org',
    'app-pass-word');
  const state = [];
  await session.command('EXAMINE INBOX');
  const flags = await session.command('UID FETCH 1:* (FLAGS)');
  state.push(flags.filter((line) => line.includes(' FETCH ')).map((line) => line.replace('\\Recent', '')));
  state.push((await session.command('LIST "" "*"')).sort());
  await session.close();
  return state;
}

test('readingLeavesNoTraceInTheMailbox', async (t) => {
  const before = await mailboxState();
  assert.equal(before[0].length, samples.length);
  const session = await startClient(program, directory, environment);
  t.after(() => session.client.close());
  assert.equal(resultObject(await session.call('search_inbox')).count, samples.length);
  resultObject(await session.call('list_folders'));
  await session.finish();
  assert.deepEqual(await mailboxState(), before);
});

test('onlyReadingCommandsWereSent', () => assertOnlyReading(directory));
