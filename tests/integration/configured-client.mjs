// The official MCP client, configured by the file that the companion app wrote for an assistant.
//   node configured-client.mjs FILE
// Starts the server named "tarnwell" in the file's mcpServers, lists its tools and searches the inbox.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StdioClientTransport } from '@modelcontextprotocol/sdk/client/stdio.js';
import { environment, resultObject } from './support/program.mjs';
import { samples, toolNames } from './support/samples.mjs';

const entry = JSON.parse(readFileSync(process.argv[2], 'utf8')).mcpServers.tarnwell;
const client = new Client({ name: 'configured-client', version: '1' });
await client.connect(new StdioClientTransport({ ...entry, env: { ...environment, ...entry.env } }));
const { tools } = await client.listTools();
assert.deepEqual(tools.map((tool) => tool.name), toolNames);
const found = resultObject(await client.callTool({ name: 'search_inbox', arguments: {} }));
assert.equal(found.count, samples.length);
await client.close();
console.log(`${tools.length} tools, ${found.count} messages`);
