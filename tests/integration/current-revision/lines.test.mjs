// Every line that the program writes is one that the official client accepts, and the Inspector's command line
// reads them too.
//   node lines.test.mjs PROGRAM DIRECTORY PORT
// PORT is the recorder's, with the mail server behind it.
import assert from 'node:assert/strict';
import { execFile, spawn } from 'node:child_process';
import fs from 'node:fs';
import readline from 'node:readline';
import test, { after } from 'node:test';
import { fileURLToPath } from 'node:url';
import { promisify } from 'node:util';
import { Client } from '@modelcontextprotocol/client';
import * as schemas from '@modelcontextprotocol/core';
import { environment, writeSettings } from '../support/program.mjs';
import { toolNames } from '../support/samples.mjs';
import { startSlowLink } from './slow-link.mjs';

const [program, directory, port] = process.argv.slice(2);
const link = await startSlowLink(Number(port));
after(() => link.close());
writeSettings({ email: 'user@example.org', imapHost: 'localhost', imapPort: link.port });

const prefix = 'io.modelcontextprotocol';
const meta = (more) => ({
  [`${prefix}/protocolVersion`]: '2026-07-28', [`${prefix}/clientCapabilities`]: {}, ...more,
});
const request = (id, method, params, more) =>
  JSON.stringify({ jsonrpc: '2.0', id, method, params: { ...params, _meta: meta(more) } });
const callOf = (id, name, args = {}, more = {}) => request(id, 'tools/call', { name, arguments: args }, more);

// answersTo(LINES) returns what the program writes until each request of the current revision has its answer.
async function answersTo(lines) {
  const child = spawn(program, ['serve'], { env: environment, stdio: ['pipe', 'pipe', 'inherit'] });
  const answers = [];
  let expected = lines.filter((line) => 'id' in JSON.parse(line)).length;
  const ended = new Promise((resolve) => child.on('exit', resolve));
  await new Promise((resolve) => {
    readline.createInterface({ input: child.stdout }).on('line', (line) => {
      answers.push(JSON.parse(line));
      if (!('method' in answers.at(-1)) && --expected === 0) resolve();
    }).on('close', resolve);
    child.stdin.write(lines.join('\n') + '\n');
  });
  child.stdin.end();
  assert.equal(await ended, 0);
  assert.equal(expected, 0, 'a request has no answer');
  return answers;
}

// What the dialogues of tests/dialogues send, without the lines of older revisions.
const dialogue = fs.readFileSync(
  fileURLToPath(new URL('../../dialogues/current-revision.dialogue', import.meta.url)), 'utf8');
const linesOfDialogues = dialogue.split('\n').filter((line) => line.startsWith('> {"'))
  .map((line) => line.slice(2)).filter((line) => line.includes(`${prefix}/protocolVersion`));

// A client that is connected to recorded answers, one for each request.
async function clientOf(answers) {
  const transport = {
    async start() {},
    async send(message) {
      const answer = answers[message.method];
      if (answer && 'id' in message) queueMicrotask(() => transport.onmessage({ ...answer, id: message.id }));
    },
    async close() { transport.onclose?.(); },
  };
  const client = new Client({ name: 'tarnwell-integration', version: '1.0.0' },
    { versionNegotiation: { mode: { pin: '2026-07-28' } } });
  await client.connect(transport);
  return client;
}

const schemaOf = (line) => {
  if (line.method) return schemas.ProgressNotificationSchema;
  if (line.error) return schemas.JSONRPCErrorResponseSchema;
  return schemas.JSONRPCResultResponseSchema;
};

test('everyLineIsOneOfTheSchemas', async () => {
  link.pace(400);
  const answers = await answersTo([...linesOfDialogues,
    callOf('search', 'search_inbox', {}, { progressToken: 'p' }), callOf('folders', 'list_folders'),
    callOf('clean-up', 'propose_inbox_cleanup', {}, { progressToken: 0 }),
    callOf('no uid', 'get_message_body'), callOf('blocked', 'trash_message', { uid: 1 }),
    callOf('summary', 'get_message_summary', { uid: 1 }), callOf('body', 'get_message_body', { uid: 1 }),
    request('cursor', 'tools/list', { cursor: 'x' }), request('ping', 'ping'),
    request('no list', 'tools/call', { name: 'get_status', arguments: [] }),
    request('level', 'server/discover', {}, { [`${prefix}/logLevel`]: 5 })]);
  link.pace(Infinity);
  const progress = answers.filter((line) => line.method).map((line) => line.params.progressToken);
  assert.deepEqual(new Set(progress), new Set(['p', 0]), 'both calls tell of their progress');
  const kinds = new Set();
  for (const line of answers) {
    schemaOf(line).parse(line);
    kinds.add(line.method ?? line.error?.code ?? Object.keys(line.result).sort().join());
    if (line.result?.supportedVersions) schemas.DiscoverResultSchema.parse(line.result);
    if (line.result?.tools) schemas.ListToolsResultSchema.parse(line.result);
    if (line.result?.content) schemas.CallToolResultSchema.parse(line.result);
    if (line.result) {
      assert.equal(line.result.resultType, 'complete');
      schemas.ImplementationSchema.parse(line.result._meta[`${prefix}/serverInfo`]);
    }
  }
  assert.deepEqual([...kinds].map(String).sort(), ['-32022', '-32600', '-32601', '-32602',
    '_meta,cacheScope,capabilities,resultType,supportedVersions,ttlMs',
    '_meta,cacheScope,resultType,tools,ttlMs',
    '_meta,content,isError,resultType,structuredContent', 'notifications/progress']);
});

// The schemas that the client applies to the wire are stricter than those that it exports. So each answer also
// goes through the client itself, whole and without each member that the revision requires.
test('theClientAcceptsEachAnswerAndMissesEachRequiredMember', async () => {
  const [discover, list, called] = await answersTo([request(1, 'server/discover'), request(2, 'tools/list'),
    callOf(3, 'get_status')]);
  const answers = { 'server/discover': discover, 'tools/list': list, 'tools/call': called };
  const use = {
    'server/discover': async (client) => client.getServerVersion(),
    'tools/list': (client) => client.listTools(),
    'tools/call': (client) => client.callTool({ name: 'get_status', arguments: {} }),
  };
  for (const [method, ask] of Object.entries(use)) await ask(await clientOf(answers), method);
  const required = [['server/discover', 'supportedVersions'], ['server/discover', 'capabilities'],
    ['tools/list', 'resultType'], ['tools/list', 'ttlMs'], ['tools/list', 'cacheScope'], ['tools/list', 'tools'],
    ['tools/call', 'resultType'], ['tools/call', 'content']];
  for (const [method, member] of required) {
    const result = { ...answers[method].result };
    delete result[member];
    await assert.rejects(async () => {
      await use[method](await clientOf({ ...answers, [method]: { jsonrpc: '2.0', result } }));
    }, `${method} without ${member}`);
  }
});

const inspector = fileURLToPath(
  new URL('node_modules/@modelcontextprotocol/inspector/clients/launcher/build/index.js', import.meta.url));

async function inspect(era, ...words) {
  // The Inspector passes on next to none of its environment.
  const variables = ['SSL_CERT_FILE', 'DBUS_SESSION_BUS_ADDRESS'].flatMap(
    (name) => ['-e', `${name}=${environment[name]}`]);
  const { stdout } = await promisify(execFile)(process.execPath, [inspector, '--cli', '--protocol-era', era,
    '--format', 'json', ...variables, ...words, '--', program, 'serve'],
  { env: { ...environment, MCP_CATALOG_PATH: `${directory}/inspector.json` } });
  return JSON.parse(stdout).result;
}

for (const era of ['legacy', 'auto', 'modern']) {
  test(`theInspectorListsAndCallsTools: ${era}`, async () => {
    const { tools } = await inspect(era, '--strict', '--method', 'tools/list');
    assert.deepEqual(tools.map((tool) => tool.name), toolNames);
    assert.equal(tools[2].title, era === 'legacy' ? undefined : 'Search inbox');
    const result = await inspect(era, '--method', 'tools/call', '--tool-name', 'search_inbox',
      '--tool-arg', 'limit=3');
    assert.equal(result.structuredContent.count, 3);
  });
}
