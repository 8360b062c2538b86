// The official MCP client with the built program, a real mail server and a real keyring.
//   node mcp-client.test.mjs PROGRAM DIRECTORY PORT NOTES
// PORT is the recorder's. NOTES plain mails come before the samples, so sample N has UID NOTES + N.
import assert from 'node:assert/strict';
import test from 'node:test';
import { environment, resultObject, startClient, writeSettings } from './support/program.mjs';
import { folders, samples, secrets, toolNames, withheld } from './support/samples.mjs';
import { assertOnlyReading } from './support/wire.mjs';

const [program, directory, port, notes] = process.argv.slice(2);
const account = { email: 'user@example.org', imapHost: 'localhost', imapPort: Number(port) };
const uid = (number) => Number(notes) + number;
const newestFirst = (numbers) => [...numbers].sort((a, b) => b - a).map(uid);

writeSettings(account);
// noSecretAndNoPasswordIsInAnyByteOfTheOutput closes it. That test runs even after failures.
const session = await startClient(program, directory, environment);
const search = async (args) => resultObject(await session.call('search_inbox', args));
const found = async (args) => (await search(args)).messages.map((message) => message.uid);

test('theServerIntroducesItself', () => {
  assert.deepEqual(session.client.getServerVersion(), { name: 'Tarnwell', version: '0.1.0' });
  assert.deepEqual(session.client.getServerCapabilities(), { tools: { listChanged: false } });
  assert.equal(session.client.getInstructions(), undefined);
});

test('pingIsAnsweredWithExactlyAnEmptyObject', async () => {
  assert.deepEqual(await session.client.ping(), {});
});

test('nineToolsAreListedInOrderEachWithAClosedObjectSchema', async () => {
  const { tools } = await session.client.listTools();
  assert.deepEqual(tools.map((tool) => tool.name), toolNames);
  for (const { name, description, inputSchema } of tools) {
    assert.ok(description.length > 0, name);
    assert.equal(inputSchema.type, 'object', name);
    assert.equal(inputSchema.additionalProperties, false, name);
    assert.equal(typeof inputSchema.properties, 'object', name);
  }
});

test('getStatusFindsThePasswordInTheKeyring', async () => {
  const status = resultObject(await session.call('get_status'));
  assert.deepEqual(status, {
    ...status, configured: true, email: account.email, imapHost: 'localhost', imapPort: account.imapPort,
    mode: 'read-only', availableTools: toolNames,
  });
  assert.equal(Object.keys(status.safety).length, 9);
  assert.equal('lastConnectionTest' in status, false);
});

test('listFoldersShowsSpecialUsesJapaneseAndQuotedNames', async () => {
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
    [{ query: '水曜日' }, [3]],
    [{ query: '見積' }, [4]],
    [{ query: 'Méridien' }, [15]],
    [{ query: 'terrace', from: 'alice' }, [1]],
    [{ query: 'nowhere to be found' }, []],
    [{ query: 'quo"ted \\ back{5}slash' }, []],
    [{ query: 'x\r\nA9999 DELETE Trash' }, []],
    [{ since: '31/01/2024', query: 'terrace' }, [1]],
    [{ query: '', from: '', subject: 'ferry' }, [2]],
  ];
  for (const [args, numbers] of rows) {
    assert.deepEqual(await found(args), newestFirst(numbers), JSON.stringify(args));
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

test('anUnknownToolIsAToolError', async () => {
  const result = await session.call('expunge_everything');
  assert.equal(result.isError, true);
  assert.deepEqual(result.structuredContent, { error: 'Unknown tool: expunge_everything' });
});

test('settingsAreReadAfreshByEveryCall', async () => {
  const limitsOfTwo = { ...account, safety: { maxMessagesPerCall: 2 } };
  writeSettings(limitsOfTwo);
  assert.equal((await search({})).count, 2);
  writeSettings({ ...account, imapPort: 70000 });
  const refused = await session.call('search_inbox', {});
  assert.equal(refused.isError, true);
  assert.deepEqual(refused.structuredContent,
    { error: 'Invalid argument: IMAP port 70000 is out of range' });
  writeSettings(account);
  assert.equal((await search({})).count, 20);
});

test('noSecretAndNoPasswordIsInAnyByteOfTheOutput', async () => {
  const { output, errors } = await session.finish();
  assert.ok(output.length > 1000, 'the output was not recorded');
  for (const secret of [...secrets, 'app-pass-word']) {
    assert.equal(output.indexOf(secret), -1, `${secret} is in the output`);
    assert.equal(errors.indexOf(secret), -1, `${secret} is on standard error`);
  }
  for (const line of output.toString('utf8').trimEnd().split('\n')) {
    assert.equal(JSON.parse(line).jsonrpc, '2.0');
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
