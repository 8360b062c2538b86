// The conversation of scripts/demo: a table of steps, each a request that the official MCP client sends to
// the program, and what its answer must be like. A step that does not hold ends the demonstration.
//   node demo.mjs PROGRAM DIRECTORY
import assert from 'node:assert/strict';
import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StdioClientTransport } from '@modelcontextprotocol/sdk/client/stdio.js';
import { Display } from './support/display.mjs';
import { samples, secrets, toolNames, withheld } from './support/samples.mjs';
import { assertOnlyReading, recordedCommands } from './support/wire.mjs';

const [program, directory] = process.argv.slice(2);

// title, the tool and its arguments (or a method of the protocol), and a check of the answer.
// The tools that read one message, propose and write are to be added here, each with its check.
const steps = [
  { title: 'Which tools are there?', method: 'tools/list',
    check: ({ tools }) => assert.deepEqual(tools.map((tool) => tool.name), toolNames) },
  { title: 'Is everything in place?', tool: 'get_status',
    check: (answer) => assert.equal(answer.configured, true) },
  { title: 'Which folders are there?', tool: 'list_folders',
    check: (answer) => assert.ok(answer.folders.some((folder) => folder.specialUse === '\\Trash')) },
  { title: 'The three newest messages', tool: 'search_inbox', arguments: { limit: 3 },
    check: (answer) => assert.equal(answer.count, 3) },
  { title: 'A Japanese mail in Shift_JIS, found by a Japanese word', tool: 'search_inbox',
    arguments: { query: '見積' }, check: (answer) => assert.equal(answer.messages[0].from,
      samples[3].from) },
  { title: 'Unread mail of two days in March', tool: 'search_inbox',
    arguments: { unreadOnly: true, since: '2024-03-07', before: '2024-03-09' },
    check: (answer) => assert.equal(answer.count, 2) },
  { title: 'A one-time code: the mail is listed, its text is withheld', tool: 'search_inbox',
    arguments: { subject: 'verification code' },
    check: (answer) => assert.equal(answer.messages[0].snippet, withheld) },
  { title: 'The same when only the text gives it away', tool: 'search_inbox',
    arguments: { from: 'Example Parcel' },
    check: (answer) => assert.equal(answer.messages[0].snippet, withheld) },
];

const display = new Display();
let seen = '';

const transport = new StdioClientTransport({ command: program, args: ['serve'], env: { ...process.env } });
const client = new Client({ name: 'tarnwell-demo', version: '1.0.0' });
client.onerror = (error) => { throw error; };

// What really travels is shown: the client's own messages are listened to on both sides.
const send = transport.send.bind(transport);
transport.send = (message, options) => {
  display.request(message);
  return send(message, options);
};

display.title('The handshake');
await client.connect(transport);
const receive = transport.onmessage;
transport.onmessage = (message, extra) => {
  seen += JSON.stringify(message);
  receive(message, extra);
};
display.answer({ serverInfo: client.getServerVersion(), capabilities: client.getServerCapabilities() });

for (const step of steps) {
  display.title(step.title);
  if (step.tool) {
    const result = await client.callTool({ name: step.tool, arguments: step.arguments ?? {} });
    display.answer(result.structuredContent);
    assert.equal(result.isError, false, `${step.tool} reported an error`);
    step.check(result.structuredContent);
  } else {
    const result = await client.listTools();
    display.answer(result);
    step.check(result);
  }
}
await client.close();

display.title('What the mail server was asked, all in all');
const counts = new Map();
for (const { text } of recordedCommands(directory)) {
  const command = text.replace(/^\S+ /, '').replace(/^(LOGIN "[^"]*") .*/, '$1 "(the password)"');
  counts.set(command, (counts.get(command) ?? 0) + 1);
}
for (const [command, count] of counts) display.line(`${String(count).padStart(3)} x ${command}`);

assertOnlyReading(directory);
for (const secret of secrets) assert.ok(!seen.includes(secret), 'a secret left the program');
display.line('Nothing but reading commands; no code, link or password of the sample mails was in any answer.');
