// The official client 2.x in each of its modes, over standard input and output or over HTTP.
//   node clients.test.mjs http|stdio PROGRAM DIRECTORY PORT
// PORT is the recorder's, with the mail server behind it. The client 1.x is in ../mcp-client.test.mjs and
// ../http.test.mjs.
import assert from 'node:assert/strict';
import test, { after } from 'node:test';
import { Client, StreamableHTTPClientTransport } from '@modelcontextprotocol/client';
import { JSONRPCErrorResponseSchema } from '@modelcontextprotocol/core';
import { StdioClientTransport } from '@modelcontextprotocol/client/stdio';
import { startHTTP } from '../support/http-program.mjs';
import { environment, resultObject, writeSettings } from '../support/program.mjs';
import { samples, toolNames } from '../support/samples.mjs';
import { assertOnlyReading } from '../support/wire.mjs';
import { startSlowLink } from './slow-link.mjs';

const [way, program, directory, port] = process.argv.slice(2);
const link = await startSlowLink(Number(port));
const server = way === 'http' ? await startHTTP(program) : undefined;
after(() => {
  link.close();
  return server?.close();
});
writeSettings({ email: 'user@example.org', imapHost: 'localhost', imapPort: link.port });

const modes = { legacy: 'legacy', auto: 'auto', pinned: { pin: '2026-07-28' } };
const newTransport = () => way === 'http'
  ? new StreamableHTTPClientTransport(new URL(server.url))
  : new StdioClientTransport({ command: program, args: ['serve'], env: environment });

// withClient(MODE, USE, EXPECTED) runs USE with a connected client. Afterwards the client has met nothing that it
// could not read, and no other problem than those expected.
async function withClient(mode, use, expected = []) {
  const client = new Client({ name: 'tarnwell-integration', version: '1.0.0' },
    { versionNegotiation: { mode: modes[mode] } });
  const problems = [];
  client.onerror = (error) => problems.push(error.message);
  await client.connect(newTransport());
  try {
    await use(client);
  } finally {
    await client.close();
  }
  assert.deepEqual(problems, expected);
}

const call = (client, name, options) => client.callTool({ name, arguments: {} }, options);

for (const mode of Object.keys(modes)) {
  const isCurrent = mode !== 'legacy';
  test(`theClientListsAndCallsTools: ${mode}`, () => withClient(mode, async (client) => {
    assert.equal(client.getProtocolEra(), isCurrent ? 'modern' : 'legacy');
    assert.equal(client.getNegotiatedProtocolVersion(), isCurrent ? '2026-07-28' : '2025-11-25');
    assert.deepEqual(client.getServerVersion(), { name: 'Tarnwell', version: '0.1.0' });

    const { tools } = await client.listTools();
    assert.deepEqual(tools.map((tool) => tool.name), toolNames);
    for (const tool of tools) {
      assert.equal(typeof tool.title, isCurrent ? 'string' : 'undefined', tool.name);
      assert.equal(tool.annotations && Object.keys(tool.annotations).length, isCurrent ? 4 : undefined);
    }

    const status = resultObject(await call(client, 'get_status'));
    assert.equal(status.configured, true);
    assert.equal(resultObject(await call(client, 'search_inbox')).count, samples.length);
  }));

  test(`anUnknownToolIsAnErrorOfItsEra: ${mode}`, () => withClient(mode, async (client) => {
    if (isCurrent) {
      await assert.rejects(call(client, 'nope'), { code: -32602 });
    } else {
      assert.equal((await call(client, 'nope')).isError, true);
    }
  }));

  test(`manyCallsAtOnceAreAnswered: ${mode}`, () => withClient(mode, async (client) => {
    const calls = Array.from({ length: 12 }, (_, i) => call(client, i % 4 ? 'get_status' : 'list_folders'));
    for (const result of await Promise.all(calls)) resultObject(result);
  }));
}

for (const mode of ['auto', 'pinned']) {
  // Searches behind a link that is held. Calls GIVE_UP once the program waits. Returns how many milliseconds
  // later the program closed its connection to the mail server.
  async function heldSearch(client, options, giveUp) {
    link.hold();
    const [opened, closed] = [link.opened(), link.closed()];
    const rejected = assert.rejects(call(client, 'search_inbox', options));
    await opened;
    const begin = performance.now();
    await giveUp();
    await rejected;
    const milliseconds = await closed - begin;
    link.release();
    return milliseconds;
  }

  test(`anAbortedCallIsGivenUp: ${mode}`, (context) => withClient(mode, async (client) => {
    const controller = new AbortController();
    const milliseconds = await heldSearch(client, { signal: controller.signal },
      () => controller.abort('no longer wanted'));
    context.diagnostic(`the connection to the mail server was closed after ${milliseconds.toFixed(1)} ms`);
    assert.ok(milliseconds < 1000, `${milliseconds} ms`);
    assert.equal(resultObject(await call(client, 'search_inbox')).count, samples.length);
  }));

  test(`aCallThatTakesTooLongIsGivenUp: ${mode}`, () => withClient(mode, async (client) => {
    await heldSearch(client, { timeout: 300 }, () => {});
    resultObject(await call(client, 'get_status'));
  }));

  test(`aSlowSearchTellsOfItsProgress: ${mode}`, () => withClient(mode, async (client) => {
    link.pace(400);
    const steps = [];
    const found = resultObject(await call(client, 'search_inbox', { onprogress: (step) => steps.push(step) }));
    link.pace(Infinity);
    assert.equal(found.count, samples.length);
    if (way === 'http') return assert.deepEqual(steps, []);
    assert.ok(steps.length > 0, 'no progress');
    let last = 0;
    for (const { progress, total } of steps) {
      assert.equal(total, samples.length);
      assert.ok(progress > last && progress < total, JSON.stringify(steps));
      last = progress;
    }
  }));

  // A client ends a program by force 2 seconds after it has closed the input.
  test(`aClientThatLeavesEndsItsCall: ${mode}`, () => withClient(mode, async (client) => {
    const milliseconds = await heldSearch(client, {}, () => client.close());
    assert.ok(milliseconds < 1000, `${milliseconds} ms`);
  }, way === 'http' ? ['This operation was aborted'] : []));
}

// The endpoint with a token.
if (way === 'http') {
  const token = 'dGhlLXRva2Vu-_b2YtdGhpcy10ZXN0';
  const guarded = await startHTTP(program, token);
  after(guarded.close);
  const connect = async (mode, headers) => {
    const client = new Client({ name: 'tarnwell-integration', version: '1.0.0' },
      { versionNegotiation: { mode: modes[mode] } });
    await client.connect(new StreamableHTTPClientTransport(new URL(guarded.url), { requestInit: { headers } }));
    return client;
  };
  // Some of its errors have the status in their message, others only in their data.
  const tellsOf401 = (error) => error.data?.status === 401 || /\b401\b|unauthorized/i.test(error.message);
  for (const mode of Object.keys(modes)) {
    test(`theClientNeedsTheToken: ${mode}`, async () => {
      const client = await connect(mode, { Authorization: `Bearer ${token}` });
      assert.deepEqual((await client.listTools()).tools.map((tool) => tool.name), toolNames);
      assert.equal(resultObject(await call(client, 'search_inbox')).count, samples.length);
      await client.close();
      for (const headers of [{}, { Authorization: 'Bearer another' }]) {
        await assert.rejects(connect(mode, headers), tellsOf401, JSON.stringify(headers));
      }
    });
  }
}

// The errors that only HTTP knows, which the client itself never meets.
if (way === 'http') {
  const meta = { 'io.modelcontextprotocol/protocolVersion': '2026-07-28', 'io.modelcontextprotocol/clientCapabilities': {} };
  const list = JSON.stringify({ jsonrpc: '2.0', id: 1, method: 'tools/list', params: { _meta: meta } });
  for (const [name, method, body, code] of [
    ['unreadable', 'tools/list', '{', -32700], ['anotherMethod', 'tools/call', list, -32020]]) {
    test(`errorOfTheTransportFitsTheSchema: ${name}`, async () => {
      const response = await fetch(server.url, { method: 'POST', body, headers: {
        'Content-Type': 'application/json', Accept: 'application/json, text/event-stream',
        'MCP-Protocol-Version': '2026-07-28', 'Mcp-Method': method } });
      assert.equal(response.status, 400);
      const error = await response.json();
      assert.equal(error.error.code, code);
      JSONRPCErrorResponseSchema.parse(error);
    });
  }
}

test('onlyReadingCommandsWereSent', () => assertOnlyReading(directory));
