// What an MCP client does with its configuration file: it starts the server named there, with no more of the
// environment than the official client passes on by itself, and asks it for the mail.
//   node client.mjs CONFIGURATION
import assert from 'node:assert/strict';
import fs from 'node:fs';
import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StdioClientTransport } from '@modelcontextprotocol/sdk/client/stdio.js';

const { command, args } = JSON.parse(fs.readFileSync(process.argv[2], 'utf8')).mcpServers.tarnwell;
const client = new Client({ name: 'first-hour', version: '1.0.0' });
client.onerror = (error) => { throw error; };
await client.connect(new StdioClientTransport({ command, args }));

async function call(name, parameters = {}) {
  const result = await client.callTool({ name, arguments: parameters });
  assert.equal(result.isError, false, result.content[0].text);
  return result.structuredContent;
}

const { tools } = await client.listTools();
assert.equal(tools.length, 9);
const status = await call('get_status');
assert.deepEqual([status.configured, status.mode], [true, 'read-only']);
const { messages } = await call('search_inbox', { limit: 3 });
assert.equal(messages.length, 3);
const code = await call('search_inbox', { subject: 'verification code' });
assert.match(code.messages[0].snippet, /withheld/);
await client.close();
console.log(`${command}: ${tools.length} tools; the newest mail: ${messages.map(({ subject }) => subject).join(', ')}`);
