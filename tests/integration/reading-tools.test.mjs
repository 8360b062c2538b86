// What the tools that list folders and search give on a real mail server, whichever it is, and the test of the
// connection. messages.test.mjs has the other reading tools.
//   node reading-tools.test.mjs PROGRAM DIRECTORY PORT SERVER_PORT NOTES TRAITS
// PORT is the recorder's, SERVER_PORT the mail server's own. NOTES plain mails (at least 100) come before the
// samples, so sample N has UID NOTES + N. TRAITS is what differs between servers (support/server-traits.mjs).
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import test from 'node:test';
import { capabilitiesOf } from './support/imap-session.mjs';
import { environment, resultObject, startClient, writeSettings } from './support/program.mjs';
import { samples, secrets, withheld } from './support/samples.mjs';
import { foldersOn, readTraits } from './support/server-traits.mjs';
import { assertOnlyReading, recordLines, recordedCommands } from './support/wire.mjs';

const [program, directory, port, serverPort, notes, traitsText] = process.argv.slice(2);
const traits = readTraits(traitsText);
const folders = foldersOn(traits);
const account = { email: 'user@example.org', imapHost: 'localhost', imapPort: Number(port) };
const uid = (number) => Number(notes) + number;
const newestFirst = (numbers) => [...numbers].sort((a, b) => b - a).map(uid);
// The most mails that one call gives.
const most = 100;

writeSettings(account);
// noSecretAndNoPasswordIsInAnyByteOfTheOutput closes it. That test runs even after failures.
const session = await startClient(program, directory, environment);
const search = async (args) => resultObject(await session.call('search_inbox', args));
const found = async (args) => (await search(args)).messages.map((message) => message.uid);

// Calls with limits that allow the most.
function allowTheMost(t) {
  writeSettings({ ...account, safety: { maxFetch: most, maxMessagesPerCall: most } });
  t.after(() => writeSettings(account));
}

test('testConnectionReportsTheServerAndGetStatusRemembersIt', async () => {
  const words = await capabilitiesOf(directory, serverPort);
  const { status, stdout, stderr } = spawnSync(program, ['test-connection'],
    { env: environment, encoding: 'utf8', input: '' });
  assert.deepEqual({ status, stdout, stderr }, {
    status: 0, stderr: '',
    stdout: `✅ Connected to localhost:${port} as user@example.org\n`
      + `   INBOX selected OK · MOVE supported: ${words.includes('MOVE') ? 'yes' : 'no'}\n`
      + `   Capabilities: ${words.join(' ')}\n`,
  });
  const report = resultObject(await session.call('get_status'));
  assert.deepEqual([report.configured, report.mode, report.imapPort], [true, 'read-only', account.imapPort]);
  assert.equal(report.lastConnectionTest.success, true);
});

test('listFoldersShowsEveryFolderAsTheServerHasIt', async () => {
  const byPath = (a, b) => (a.path < b.path ? -1 : 1);
  const listed = resultObject(await session.call('list_folders'));
  assert.equal(listed.count, folders.length);
  assert.deepEqual(listed.folders.sort(byPath), [...folders].sort(byPath));
});

test('listFoldersLeavesTheSpecialUsesOutWhenAsked', async () => {
  const listed = resultObject(await session.call('list_folders', { includeSpecialUse: false }));
  assert.equal(listed.count, folders.length);
  for (const folder of listed.folders) assert.equal('specialUse' in folder, false, folder.path);
});

test('aSearchGivesTheNewestTwentyByDefault', async () => {
  const result = await search({});
  assert.equal(result.limit, 20);
  assert.equal(result.count, 20);
  const newest = uid(samples.length);
  assert.deepEqual(result.messages.map((m) => m.uid), Array.from({ length: 20 }, (_, i) => newest - i));
});

test('limitsAreKeptWithinOneAndTheConfiguredTwenty', async () => {
  const rows = [[500, 20], [100, 20], [20, 20], [3, 3], [1, 1], [0, 1], [-5, 1]];
  for (const [asked, given] of rows) {
    const result = await search({ limit: asked });
    assert.deepEqual([result.limit, result.count], [given, given], `limit ${asked}`);
  }
});

test('everySampleIsShownAsItIs', async () => {
  const { messages } = await search({});
  const shown = new Map(messages.map((message) => [message.uid, message]));
  for (const sample of samples) {
    const message = shown.get(uid(sample.number));
    const what = `sample ${sample.number}`;
    assert.equal(message.subject, sample.subject, what);
    assert.equal(message.from, sample.from, what);
    assert.equal(message.hasAttachments, sample.attachments ?? false, what);
    assert.equal(message.unread, !(sample.seen ?? false), what);
    assert.equal(message.flags.includes('\\Seen'), sample.seen ?? false, what);
    assert.deepEqual(message.detectedRiskSignals, sample.signals ?? [], what);
    if (sample.date) assert.equal(message.date, sample.date, what);
    if (sample.messageId) assert.equal(message.messageId, sample.messageId, what);
    if (sample.signals) assert.equal(message.snippet, withheld, what);
    for (const words of sample.snippet ?? []) {
      assert.ok(message.snippet.includes(words), `${what}: "${words}" is not in "${message.snippet}"`);
    }
    if (sample.snippet?.length === 0) assert.equal(message.snippet, '', what);
  }
});

test('htmlLosesItsMarkupScriptsAndStyles', async () => {
  const [{ snippet }] = (await search({ subject: 'ferry' })).messages;
  for (const leftOver of ['<p', '</', '<li', 'font-family', 'opened', '&nbsp;', '&#233;']) {
    assert.ok(!snippet.includes(leftOver), `"${leftOver}" is left in "${snippet}"`);
  }
});

test('searchesFindWhatTheyNameAndNothingElse', async () => {
  const rows = [
    [{ unreadOnly: true }, samples.filter((sample) => !sample.seen).map((sample) => sample.number)],
    [{ since: '2024-03-15' }, [13, 14, 15, 16]],
    [{ since: '2024-03-15T00:00:00Z' }, [13, 14, 15, 16]],
    [{ since: '2024-03-08', before: '2024-03-10' }, [5, 6]],
    [{ since: '2024-03-08', before: '2024-03-10', unreadOnly: true }, [5]],
    [{ from: 'alice@example.org' }, [1, 12]],
    [{ from: '田中' }, [3]],
    [{ from: 'François' }, [15]],
    [{ subject: '会議' }, [3]],
    [{ subject: 'Genève' }, [15]],
    [{ subject: 'FERRY' }, [2]],
    [{ query: '見積' }, [4]],
    [{ query: 'terrace', from: 'alice' }, [1]],
    [{ query: 'nowhere to be found' }, []],
    [{ query: 'quo"ted \\ back{5}slash' }, []],
    [{ query: 'x\r\nA9999 DELETE Trash' }, []],
    [{ since: '31/01/2024', query: 'terrace' }, [1]],
    [{ query: '', from: '', subject: 'ferry' }, [2]],
  ];
  // These words stand in bodies in ISO-2022-JP, Shift_JIS and ISO-8859-1.
  if (traits.searchesOldCharsets) {
    rows.push([{ query: '水曜日' }, [3]], [{ query: '納期表' }, [4]], [{ query: 'Méridien' }, [15]]);
  }
  for (const [args, numbers] of rows) {
    assert.deepEqual(await found(args), newestFirst(numbers), JSON.stringify(args));
  }
});

// The answers to a hundred questions for a body, however the program sends them, must not be confused.
test('aSearchOfAHundredMailsGivesEachItsOwnBody', async (t) => {
  allowTheMost(t);
  const before = recordLines(directory).length;
  const { messages } = await search({ limit: most });
  const commands = recordedCommands(directory, before).map((command) => command.text);
  assert.deepEqual(messages.map((message) => message.uid),
    Array.from({ length: most }, (_, i) => uid(samples.length) - i));
  for (const message of messages.slice(samples.length)) {
    assert.equal(message.subject, `Note ${message.uid}`);
    assert.equal(message.snippet, `This is note number ${message.uid}.`);
    assert.equal(commands.filter((text) => text.endsWith(` UID FETCH ${message.uid} (BODY.PEEK[1])`)).length, 1);
  }
});

test('aProposalForAHundredMailsShowsEachWithItsOwnBody', async (t) => {
  allowTheMost(t);
  const { items } = resultObject(await session.call('propose_inbox_cleanup', { limit: most }));
  assert.equal(items.length, most);
  for (const item of items.slice(samples.length)) assert.equal(item.snippet, `This is note number ${item.uid}.`);
});

test('manyMailsAreFoundByEachCriterion', async (t) => {
  allowTheMost(t);
  const allNotes = Array.from({ length: most }, (_, i) => uid(-i));
  for (const args of [{ from: 'notes@example.org' }, { subject: 'note' }, { query: 'this is note number' },
    { before: '2024-02-02' }, { since: '2024-02-01', before: '2024-02-02' }]) {
    assert.deepEqual(await found({ ...args, limit: most }), allNotes, JSON.stringify(args));
  }
});

test('aSecurityMailIsFoundByItsCodeAndStillWithheld', async () => {
  for (const sample of samples.filter((one) => one.secret)) {
    if (sample.number === 10) continue;  // its text is base64, which the server must decode: see below
    const { messages } = await search({ query: sample.secret });
    assert.deepEqual(messages.map((m) => [m.uid, m.snippet]), [[uid(sample.number), withheld]]);
  }
  assert.deepEqual((await search({ query: '認証コードは' })).messages.map((m) => m.snippet), [withheld]);
});

test('noSecretAndNoPasswordIsInAnyByteOfTheOutput', async () => {
  const { output, errors } = await session.finish();
  assert.ok(output.length > 1000, 'the output was not recorded');
  for (const secret of [...secrets, 'app-pass-word']) {
    assert.equal(output.indexOf(secret), -1, `${secret} is in the output`);
    assert.equal(errors.indexOf(secret), -1, `${secret} is on standard error`);
  }
});

test('withTheSettingOffSecurityMailIsShownWithItsSignals', async (t) => {
  writeSettings({ ...account, safety: { blockAuthCodeBodies: false } });
  const second = await startClient(program, directory, environment);
  t.after(() => second.client.close());
  const { messages } = resultObject(await second.call('search_inbox', {}));
  await second.finish();
  for (const sample of samples.filter((one) => one.secret && one.number !== 9)) {
    const message = messages.find((one) => one.uid === uid(sample.number));
    assert.ok(message.snippet.includes(sample.secret), `sample ${sample.number}: ${message.snippet}`);
    for (const signal of sample.signals) {
      assert.ok(message.detectedRiskSignals.some((one) => JSON.stringify(one) === JSON.stringify(signal)
        || (one.category === signal.category && one.term === signal.term)), `sample ${sample.number}`);
    }
  }
});

test('onlyReadingCommandsWereSent', () => assertOnlyReading(directory));
