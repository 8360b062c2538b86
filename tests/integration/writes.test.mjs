// The tools that change the mailbox, on a server with MOVE and on two that reject it. A second, independent
// session checks each change.
//   node writes.test.mjs PROGRAM [DIRECTORY PORT SERVER_PORT]...
// for the server with MOVE, one that answers NO and one that answers BAD. PORT is the recorder's, SERVER_PORT
// the server's own. Sample N has UID N.
import assert from 'node:assert/strict';
import test from 'node:test';
import { lookInto } from './support/imap-session.mjs';
import { environment, resultObject, startClient, writeSettings } from './support/program.mjs';
import { samples } from './support/samples.mjs';
import { assertNothingForbidden, recordLines, recordedCommands } from './support/wire.mjs';

const [program, ...rest] = process.argv.slice(2);
const servers = [];
while (rest.length) {
  const [directory, port, serverPort] = rest.splice(0, 3);
  servers.push({ directory, port: Number(port), serverPort: Number(serverPort) });
}
const [server, ...withoutMove] = servers;
const session = await startClient(program, server.directory, environment);

const settings = (safety, { port } = server) =>
  writeSettings({ email: 'user@example.org', imapHost: 'localhost', imapPort: port, safety });
const call = async (tool, args) => resultObject(await session.call(tool, args));
const refusal = async (tool, args) => {
  const result = await session.call(tool, args);
  assert.equal(result.isError, true);
  return result.structuredContent.error;
};

const look = (folder, { directory, serverPort } = server) => lookInto(folder, directory, serverPort);
const uids = (messages) => messages.map((message) => message.uid);
const holds = (messages, words) => messages.some((message) => message.header.includes(words));

// The commands that a call sends between the login and the logout.
async function commandsOf({ directory }, action) {
  const start = recordLines(directory).length;
  await action();
  return recordedCommands(directory, start).map(({ text }) => text.replace(/^\S+ /, ''))
    .filter((text) => !/^(LOGIN|CAPABILITY|LOGOUT)\b/.test(text));
}

const writes = [
  ['move_message', { uid: 1, targetFolder: 'Archive' }, 'Read-only mode is on; no message was moved.'],
  ['mark_as_read', { uid: 3 }, 'Read-only mode is on; the message was not marked as read.'],
  ['trash_message', { uid: 1 }, 'Read-only mode is on; the message was not moved to Trash.'],
];

test('readOnlyModeRefusesEveryWriteAndOpensNoConnection', async () => {
  settings({});
  for (const [tool, args, reason] of writes) {
    for (const dryRun of [undefined, true, false]) {
      const commands = await commandsOf(server, async () => {
        assert.deepEqual(await call(tool, { ...args, dryRun }), { operation: tool, executed: false, dryRun: false,
          blocked: true, mode: 'read-only', reason, detail: {} });
      });
      assert.deepEqual(commands, []);
    }
  }
});

test('aDryRunTellsWhatWouldHappenAndChangesNothing', async () => {
  settings({ readOnly: false, allowTrash: true });
  const before = await look('INBOX');
  const details = [
    { uid: 1, from: 'INBOX', to: 'Archive' },
    { uid: 3, subject: samples[2].subject },
    { uid: 1, from: 'INBOX', to: 'Trash' },
  ];
  for (const [i, [tool, args]] of writes.entries()) {
    const commands = await commandsOf(server, async () => {
      assert.deepEqual(await call(tool, { ...args, dryRun: true }), { operation: tool, executed: false, dryRun: true,
        blocked: false, mode: 'write-enabled', reason: 'Dry-run: no change was made to the mailbox.',
        detail: details[i] });
    });
    assert.equal(commands[0], 'EXAMINE INBOX');
    assert.ok(commands.slice(1).every((text) => /^(LIST|UID FETCH) /.test(text)), commands.join('; '));
  }
  assert.deepEqual(await look('INBOX'), before);
});

test('aMessageIsMovedToTheFolderThatIsNamed', async () => {
  const rows = [
    [1, 'archive/2023', 'Archive/2023', 'lunch-1@example.org'],
    [4, 'プロジェクト', '&MNcw7TC4MKcwrzDI-', ''],
    [6, 'quotes "AND" spaces', 'Quotes "and" spaces', 'receipt-6@shop.example.com'],
  ];
  for (const [uid, name, path, words] of rows) {
    const commands = await commandsOf(server, async () => {
      assert.deepEqual(await call('move_message', { uid, targetFolder: name }), { operation: 'move_message',
        executed: true, dryRun: false, blocked: false, mode: 'write-enabled', reason: 'Executed.',
        detail: { uid, from: 'INBOX', to: path, method: 'UID MOVE' } });
    });
    assert.deepEqual(commands, ['SELECT INBOX', 'LIST "" "*"', `UID MOVE ${uid} "${path.replaceAll('"', '\\"')}"`]);
    const arrived = await look(path);
    assert.equal(arrived.length, 1);
    assert.ok(holds(arrived, words));
    assert.ok(!uids(await look('INBOX')).includes(uid));
  }
});

test('aMessageIsMarkedAsRead', async () => {
  const flagsOf3 = async () => (await look('INBOX')).find((message) => message.uid === 3).flags;
  assert.ok(!(await flagsOf3()).includes('\\Seen'));
  const commands = await commandsOf(server, async () => {
    assert.deepEqual(await call('mark_as_read', { uid: 3, dryRun: 0 }), { operation: 'mark_as_read', executed: true,
      dryRun: false, blocked: false, mode: 'write-enabled', reason: 'Executed.',
      detail: { uid: 3, subject: samples[2].subject } });
  });
  assert.equal(commands.at(-1), 'UID STORE 3 +FLAGS (\\Seen)');
  assert.ok((await flagsOf3()).includes('\\Seen'));
});

test('trashIsOffUnlessSwitchedOnAndThenAMove', async () => {
  settings({ readOnly: false });
  const commands = await commandsOf(server, async () => {
    assert.equal((await call('trash_message', { uid: 2 })).reason, 'Trash is disabled in Safety settings.');
  });
  assert.deepEqual(commands, []);
  settings({ readOnly: false, allowTrash: true });
  assert.deepEqual((await call('trash_message', { uid: 2 })).detail,
    { uid: 2, from: 'INBOX', to: 'Trash', method: 'UID MOVE' });
  assert.ok(!uids(await look('INBOX')).includes(2));
  assert.equal((await look('Trash')).length, 1);
});

test('nothingElseLeftTheInboxAndNothingWasLost', async () => {
  assert.deepEqual(uids(await look('INBOX')),
    samples.map((sample) => sample.number).filter((number) => ![1, 2, 4, 6].includes(number)));
});

test('whatCannotBeDoneIsAnErrorInOneSentence', async () => {
  settings({ readOnly: false, allowTrash: true });
  const rows = [
    ['move_message', { uid: 3, targetFolder: 'No such folder' }, 'Folder not found: No such folder'],
    ['move_message', { uid: 3, targetFolder: 'inbox' },
      'Refusing to move a message to INBOX (it is already there).'],
    ['move_message', { uid: 3 }, "Missing 'targetFolder'."],
    ['move_message', { targetFolder: 'Archive' }, "Missing or invalid 'uid'."],
    ['mark_as_read', { uid: 4711 }, 'No message with UID 4711 in INBOX.'],
    ['trash_message', { uid: 'x' }, "Missing or invalid 'uid'."],
  ];
  for (const [tool, args, text] of rows) assert.equal(await refusal(tool, args), text);
});

for (const [i, answer] of ['NO', 'BAD'].entries()) {
  const other = withoutMove[i];

  test(`aServerThatAnswersMoveWith${answer}ChangesNothingWithoutTheFallback`, async () => {
    settings({ readOnly: false }, other);
    const before = await look('INBOX', other);
    const commands = await commandsOf(other, async () => {
      const text = await refusal('move_message', { uid: 5, targetFolder: 'Archive' });
      assert.match(text, /^The mail server rejected the move \(.+\)\. This is a server-side limitation — /);
    });
    assert.deepEqual(commands, ['SELECT INBOX', 'LIST "" "*"', 'UID MOVE 5 "Archive"']);
    assert.deepEqual(await look('INBOX', other), before);
    assert.deepEqual(await look('Archive', other), []);
  });

  test(`aServerThatAnswersMoveWith${answer}GetsACopyAndAFlagWithTheFallback`, async () => {
    settings({ readOnly: false, allowTrash: true, allowCopyMoveFallback: true }, other);
    for (const [tool, args, to] of [['move_message', { uid: 5, targetFolder: 'Archive' }, 'Archive'],
      ['trash_message', { uid: 8 }, 'Trash']]) {
      const commands = await commandsOf(other, async () => {
        const outcome = await call(tool, args);
        assert.equal(outcome.reason, 'Executed via the COPY + mark-deleted fallback.');
        assert.equal(outcome.detail.method, 'COPY + flag \\Deleted (no EXPUNGE)');
        assert.match(outcome.detail.note, /^The server does not support MOVE, so the message was copied/);
        assert.equal(outcome.executed, true);
      });
      assert.deepEqual(commands, ['SELECT INBOX', 'LIST "" "*"', `UID MOVE ${args.uid} "${to}"`,
        `UID COPY ${args.uid} "${to}"`, `UID STORE ${args.uid} +FLAGS (\\Deleted)`]);
      assert.equal((await look(to, other)).length, 1);
      const left = (await look('INBOX', other)).find((message) => message.uid === args.uid);
      assert.ok(left.flags.includes('\\Deleted'), 'the original stays, flagged');
    }
    assert.equal((await look('INBOX', other)).length, samples.length);
  });
}

test('theConversationEndsCleanlyAndNothingForbiddenWasEverSent', async () => {
  await session.finish();
  for (const { directory } of servers) assertNothingForbidden(directory);
});
