// Starts the program under test as an MCP client does, and keeps every byte that it writes.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import { fileURLToPath } from 'node:url';
import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StdioClientTransport } from '@modelcontextprotocol/sdk/client/stdio.js';

const recordedServe = fileURLToPath(new URL('recorded-serve', import.meta.url));

// The environment of the temporary home directory of this test.
export const environment = Object.fromEntries(
  ['PATH', 'HOME', 'DBUS_SESSION_BUS_ADDRESS', 'SSL_CERT_FILE', 'LANG', 'ASAN_OPTIONS', 'UBSAN_OPTIONS']
    .filter((name) => name in process.env).map((name) => [name, process.env[name]]));

let runs = 0;

// startClient(PROGRAM, DIRECTORY, ENVIRONMENT) returns {client, call, finish}. Without an environment the
// client passes on its default variables: HOME, LOGNAME, PATH, SHELL, TERM and USER. finish() closes the
// client and returns {output, errors}, the bytes that the program wrote. It fails if the client could not
// read a line, or if the program did not end by itself with status 0.
export async function startClient(program, directory, env) {
  const files = `${directory}/serve-${++runs}`;
  const transport = new StdioClientTransport({ command: recordedServe, args: [program, files], env });
  const client = new Client({ name: 'tarnwell-integration', version: '1.0.0' });
  const problems = [];
  client.onerror = (error) => problems.push(error.message);
  await client.connect(transport);
  return {
    client,
    call: (name, args = {}) => client.callTool({ name, arguments: args }),
    async finish() {
      await client.close();
      assert.deepEqual(problems, [], 'the client met something it could not read');
      assert.ok(fs.existsSync(`${files}.status`), 'serve did not end when its input ended');
      assert.equal(fs.readFileSync(`${files}.status`, 'utf8'), '0\n', 'the exit status of serve');
      return { output: fs.readFileSync(`${files}.output`), errors: fs.readFileSync(`${files}.errors`) };
    },
  };
}

// The object of a successful tool result. Also checks that the text says the same, with sorted keys.
export function resultObject(result) {
  assert.equal(result.content.length, 1);
  assert.equal(result.content[0].type, 'text');
  const spoken = JSON.parse(result.content[0].text);
  assert.deepEqual(spoken, result.structuredContent);
  assert.deepEqual(Object.keys(spoken), Object.keys(spoken).sort());
  assert.ok(result.content[0].text.includes('\n'), 'the text is not in its pretty form');
  assert.equal(result.isError, false, result.content[0].text);
  return result.structuredContent;
}

export function writeSettings(settings) {
  const directory = `${process.env.HOME}/.local/share/app.tarnwell.Tarnwell`;
  fs.mkdirSync(directory, { recursive: true, mode: 0o700 });
  fs.writeFileSync(`${directory}/config.json`, JSON.stringify(settings), { mode: 0o600 });
}

export const readSettings = () => JSON.parse(
  fs.readFileSync(`${process.env.HOME}/.local/share/app.tarnwell.Tarnwell/config.json`, 'utf8'));
