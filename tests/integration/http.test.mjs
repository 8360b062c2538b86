// The HTTP endpoint with independent clients: curl, and the official MCP client.
//   node http.test.mjs PROGRAM DIRECTORY PORT
// PROGRAM is http_server_program. PORT is the recorder's, with the mail server behind it.
import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import fs from 'node:fs';
import test, { after } from 'node:test';
import { promisify } from 'node:util';
import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StreamableHTTPClientTransport } from '@modelcontextprotocol/sdk/client/streamableHttp.js';
import { startHTTP } from './support/http-program.mjs';
import { resultObject, writeSettings } from './support/program.mjs';
import { secrets, toolNames, withheld } from './support/samples.mjs';
import { assertOnlyReading } from './support/wire.mjs';

const [program, directory, port] = process.argv.slice(2);
writeSettings({ email: 'user@example.org', imapHost: 'localhost', imapPort: Number(port) });

const { url, close } = await startHTTP(program);
after(close);

// curl(WORDS...) returns {status, headers, body} of the final answer. It uses no proxy and no settings file.
let answers = 0;
async function curl(...words) {
  const headers = `${directory}/headers-${++answers}`;
  const { stdout } = await promisify(execFile)('curl', ['--disable', '--silent', '--show-error',
    '--noproxy', '*', '--max-time', '20', '--dump-header', headers, ...words]);
  const [statusLine, ...lines] = fs.readFileSync(headers, 'latin1').trimEnd().split('\r\n\r\n').at(-1)
    .split('\r\n');
  return { status: Number(statusLine.split(' ')[1]), headers: lines, body: stdout };
}

const post = (message, ...words) =>
  curl(url, '--header', 'Content-Type: application/json', '--data-binary', message, ...words);

const permissions = ['Connection: close', 'Access-Control-Allow-Origin: *',
  'Access-Control-Allow-Methods: POST, OPTIONS', 'Access-Control-Allow-Headers: Content-Type'];

test('theEndpointNamesItsPort', () => assert.match(url, /^http:\/\/127\.0\.0\.1:[1-9]\d*\/mcp$/));

const ping = '{"jsonrpc":"2.0","id":1,"method":"ping"}';
const pong = '{"id":1,"jsonrpc":"2.0","result":{}}';

test('curlIsAnsweredWithTheResponse', async () => {
  assert.deepEqual(await post(ping), {
    status: 200, body: pong,
    headers: [`Content-Length: ${pong.length}`, 'Content-Type: application/json', ...permissions],
  });
  const clientInfo = { name: 'curl', version: '0' };
  const initialize = await post(JSON.stringify({ jsonrpc: '2.0', id: 2, method: 'initialize',
    params: { protocolVersion: '2025-06-18', capabilities: {}, clientInfo } }));
  assert.equal(JSON.parse(initialize.body).result.protocolVersion, '2025-06-18');
  const list = await post('{"jsonrpc":"2.0","id":3,"method":"tools/list"}');
  assert.deepEqual(JSON.parse(list.body).result.tools.map((tool) => tool.name), toolNames);
});

test('curlIsAnsweredByTheMethodAndTheHeaders', async () => {
  const notification = '{"jsonrpc":"2.0","method":"notifications/initialized"}';
  const notAllowed = 'This endpoint accepts JSON-RPC via POST.';
  const rows = [
    [() => post(notification), 202, ''],
    [() => curl(url, '--request', 'OPTIONS', '--header', 'Origin: http://localhost:5173'), 204, ''],
    [() => curl(url), 405, notAllowed],
    [() => curl(url.replace('/mcp', '/elsewhere')), 405, notAllowed],
    [() => curl(url, '--request', 'DELETE'), 405, notAllowed],
    [() => post(ping, '--header', 'Origin: http://localhost:5173'), 200, pong],
    [() => post(ping, '--header', 'Host: localhost'), 200, pong],
    [() => post(ping, '--header', 'Host:'), 200, pong],
    [() => post(ping, '--http1.0'), 200, pong],
    [() => post(ping, '--header', 'Origin: https://evil.example'), 403, ''],
    [() => post(ping, '--header', 'Origin: null'), 403, ''],
    [() => post(ping, '--header', 'Host: evil.example:8765'), 403, ''],
    [() => curl(url, '--request', 'OPTIONS', '--header', 'Origin: https://evil.example'), 403, ''],
  ];
  for (const [ask, status, body] of rows) {
    const answer = await ask();
    assert.deepEqual([answer.status, answer.body], [status, body], String(ask));
    assert.deepEqual(answer.headers.slice(-4), permissions, String(ask));
  }
});

// Before a body of this size curl sends "Expect: 100-continue".
test('curlMaySendLargeBodies', async () => {
  const file = `${directory}/large.json`;
  const write = (size) => {
    const begin = '{"id":1,"method":"ping","params":"';
    fs.writeFileSync(file, `${begin}${'x'.repeat(size - begin.length - 2)}"}`);
  };
  for (const [size, status] of [[2_000_000, 200], [4_194_304, 200], [4_194_305, 413]]) {
    write(size);
    assert.equal((await post(`@${file}`)).status, status, `${size} bytes`);
  }
});

// The client asks for an event stream with GET. The endpoint has none, and the client continues without it.
test('theOfficialClientListsAndCallsTools', async () => {
  const client = new Client({ name: 'tarnwell-integration', version: '1.0.0' });
  const problems = [];
  client.onerror = (error) => problems.push(error.message);
  await client.connect(new StreamableHTTPClientTransport(new URL(url)));
  assert.deepEqual(client.getServerVersion(), { name: 'Tarnwell', version: '0.1.0' });
  assert.deepEqual(await client.ping(), {});
  assert.deepEqual((await client.listTools()).tools.map((tool) => tool.name), toolNames);

  const status = resultObject(await client.callTool({ name: 'get_status', arguments: {} }));
  assert.equal(status.configured, true);
  assert.equal(status.imapPort, Number(port));

  const found = resultObject(await client.callTool({ name: 'search_inbox', arguments: {} }));
  assert.ok(found.messages.some((message) => message.snippet === withheld));
  for (const secret of secrets) assert.ok(!JSON.stringify(found).includes(secret), secret);

  const many = await Promise.all(Array.from({ length: 20 }, () => client.ping()));
  assert.equal(many.length, 20);
  await client.close();
  assert.deepEqual(problems, [], 'the client met something it could not read');
});

// The same endpoint with a token.
const token = 'dGhlLXRva2Vu-_b2YtdGhpcy10ZXN0';
const guarded = await startHTTP(program, token);
after(guarded.close);

test('curlNeedsTheToken', async () => {
  const given = (text) => ['--header', `Authorization: ${text}`];
  const [missing, wrong] = ['WWW-Authenticate: Bearer realm="tarnwell"',
    'WWW-Authenticate: Bearer error="invalid_token"'];
  const rows = [
    [given(`Bearer ${token}`), 200],
    [['--oauth2-bearer', token], 200],
    [given(`bearer ${token}`), 200],
    [[], 401, missing],
    [['--user', `any:${token}`], 401, missing],
    [given('Bearer another'), 401, wrong],
    [given(`Bearer ${token}x`), 401, wrong],
    [[...given(`Bearer ${token}`), ...given('Bearer another')], 400,
      'WWW-Authenticate: Bearer error="invalid_request"'],
    [[...given(`Bearer ${token}`), '--header', 'Origin: https://evil.example'], 403],
    [['--header', 'Origin: https://evil.example'], 403],
  ];
  for (const [words, status, challenge] of rows) {
    const answer = await curl(guarded.url, '--data-binary', ping, ...words);
    const challenges = answer.headers.filter((line) => /^www-authenticate:/i.test(line));
    assert.deepEqual([answer.status, challenges], [status, challenge ? [challenge] : []], String(words));
    assert.equal(answer.headers.at(-1), 'Access-Control-Allow-Headers: Content-Type, Authorization');
  }
  const preflight = await curl(guarded.url, '--request', 'OPTIONS', '--header', 'Origin: http://localhost:5173',
    '--header', 'Access-Control-Request-Method: POST', '--header', 'Access-Control-Request-Headers: authorization');
  assert.equal(preflight.status, 204);
});

// curl asks whether it may send a body of this size, and sends none of it.
test('curlSendsNoBodyWithoutTheToken', async () => {
  const file = `${directory}/unsent.json`;
  fs.writeFileSync(file, 'x'.repeat(4_000_000));
  const words = ['--output', '/dev/null', '--write-out', '%{http_code} %{size_upload}'];
  const { body } = await curl(guarded.url, '--data-binary', `@${file}`, '--expect100-timeout', '10', ...words);
  assert.equal(body, '401 0');
});

test('theOfficialClientNeedsTheToken', async () => {
  const connect = async (headers) => {
    const client = new Client({ name: 'tarnwell-integration', version: '1.0.0' });
    await client.connect(new StreamableHTTPClientTransport(new URL(guarded.url), { requestInit: { headers } }));
    return client;
  };
  const client = await connect({ Authorization: `Bearer ${token}` });
  assert.deepEqual((await client.listTools()).tools.map((tool) => tool.name), toolNames);
  assert.equal(resultObject(await client.callTool({ name: 'get_status', arguments: {} })).configured, true);
  await client.close();
  await assert.rejects(connect({}), { code: 401 });
  await assert.rejects(connect({ Authorization: 'Bearer another' }), { code: 401 });
});

test('theEndOfTheInputStopsTheServer', async () => {
  assert.equal(await close(), 0);
  await assert.rejects(curl(url), /Failed to connect|Could not connect|refused/i);
});

test('onlyReadingCommandsWereSent', () => assertOnlyReading(directory));
