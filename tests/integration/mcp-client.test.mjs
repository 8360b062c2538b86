// The official MCP client with the built program, a real mail server and a real keyring.
//   node mcp-client.test.mjs PROGRAM DIRECTORY PORT
// PORT is the recorder's. What the reading tools give is in reading-tools.test.mjs and messages.test.mjs.
import assert from 'node:assert/strict';
import test from 'node:test';
import { environment, resultObject, startClient, writeSettings } from './support/program.mjs';
import { samples, secrets, toolNames } from './support/samples.mjs';
import { assertOnlyReading } from './support/wire.mjs';

const [program, directory, port] = process.argv.slice(2);
const account = { email: 'user@example.org', imapHost: 'localhost', imapPort: Number(port) };

writeSettings(account);
// noSecretAndNoPasswordIsInAnyByteOfTheOutput closes it. That test runs even after failures.
const session = await startClient(program, directory, environment);
const search = async (args) => resultObject(await session.call('search_inbox', args));

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
  assert.equal((await search({})).count, samples.length);
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

test('onlyReadingCommandsWereSent', () => assertOnlyReading(directory));
