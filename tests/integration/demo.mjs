// The conversation of scripts/demo: a table of steps. Each step is a request that the official MCP client
// sends to the program, and a check of the answer. A failed step ends the demonstration.
//   node demo.mjs PROGRAM DIRECTORY PORT SERVER_PORT
// PORT is the recorder's, SERVER_PORT the mail server's own, for a second session that checks each change.
import assert from 'node:assert/strict';
import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StdioClientTransport } from '@modelcontextprotocol/sdk/client/stdio.js';
import { Display } from './support/display.mjs';
import { lookInto } from './support/imap-session.mjs';
import { writeSettings } from './support/program.mjs';
import { samples, secrets, toolNames, withheld } from './support/samples.mjs';
import { assertNothingForbidden, recordedCommands } from './support/wire.mjs';

const [program, directory, port, serverPort] = process.argv.slice(2);

// The server's state as a second, independent session sees it.
const uidsIn = async (folder) => (await lookInto(folder, directory, serverPort)).map((message) => message.uid);
const flagsOf = async (uid) =>
  (await lookInto('INBOX', directory, serverPort)).find((message) => message.uid === uid).flags;

// Title, the tool and its arguments (or a method of the protocol), and a check of the answer. `safety` is
// first written into the settings file, as the companion app would do. `onServer` says what the second
// session must see afterwards, in words and as a check.
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
  { title: 'One message in short', tool: 'get_message_summary', arguments: { uid: 5 },
    check: (answer) => assert.equal(answer.hasAttachments, true) },
  { title: 'One message in full', tool: 'get_message_body', arguments: { uid: 1 },
    check: (answer) => assert.match(answer.body, /half past twelve/) },
  { title: 'A password reset is not read out', tool: 'get_message_body', arguments: { uid: 8 },
    check: (answer) => assert.match(answer.reason, /^Body withheld: looks like a sensitive security message/) },
  { title: 'A proposal for tidying up', tool: 'propose_inbox_cleanup', arguments: { limit: 4 },
    check: (answer) => assert.equal(answer.count, 4) },
  { title: 'In read-only mode, which is how everybody starts, nothing is written', tool: 'move_message',
    arguments: { uid: 6, targetFolder: 'Archive' },
    check: (answer) => assert.deepEqual([answer.blocked, answer.mode], [true, 'read-only']),
    onServer: ['message 6 is still in INBOX', async () => (await uidsIn('INBOX')).includes(6)] },
  { title: 'With read-only mode off: a dry run first', tool: 'move_message',
    safety: { readOnly: false }, arguments: { uid: 6, targetFolder: 'Archive', dryRun: true },
    check: (answer) => assert.equal(answer.dryRun, true),
    onServer: ['message 6 is still in INBOX, and Archive is empty', async () =>
      (await uidsIn('INBOX')).includes(6) && (await uidsIn('Archive')).length === 0] },
  { title: 'And now the move itself', tool: 'move_message', arguments: { uid: 6, targetFolder: 'Archive' },
    check: (answer) => assert.equal(answer.detail.method, 'UID MOVE'),
    onServer: ['message 6 has left INBOX, and Archive holds one message', async () =>
      !(await uidsIn('INBOX')).includes(6) && (await uidsIn('Archive')).length === 1] },
  { title: 'One message is marked as read', tool: 'mark_as_read', arguments: { uid: 13 },
    check: (answer) => assert.equal(answer.executed, true),
    onServer: ['message 13 has the flag \\Seen', async () => (await flagsOf(13)).includes('\\Seen')] },
  { title: 'Trash has a switch of its own, which is off', tool: 'trash_message', arguments: { uid: 2 },
    check: (answer) => assert.equal(answer.blocked, true),
    onServer: ['message 2 is still in INBOX', async () => (await uidsIn('INBOX')).includes(2)] },
  { title: 'With that switch on, a message goes to the trash folder', tool: 'trash_message',
    safety: { readOnly: false, allowTrash: true }, arguments: { uid: 2 },
    check: (answer) => assert.equal(answer.detail.to, 'Trash'),
    onServer: ['message 2 has left INBOX and lies in Trash', async () =>
      !(await uidsIn('INBOX')).includes(2) && (await uidsIn('Trash')).length === 1] },
];

const display = new Display();
let seen = '';

const transport = new StdioClientTransport({ command: program, args: ['serve'], env: { ...process.env } });
const client = new Client({ name: 'tarnwell-demo', version: '1.0.0' });
client.onerror = (error) => { throw error; };

// Shows the real messages: listens to the client's messages in both directions.
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
  if (step.safety) {
    writeSettings({ email: 'user@example.org', imapHost: 'localhost', imapPort: Number(port), safety: step.safety });
    display.line(`    in the settings file now: "safety": ${JSON.stringify(step.safety)}`);
  }
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
  if (step.onServer) {
    const [words, isTrue] = step.onServer;
    assert.ok(await isTrue(), `a second session sees otherwise: ${words}`);
    display.line(`    A second session on the server confirms: ${words}.`);
  }
}
await client.close();

// Nothing was lost: each message that left INBOX is in its new folder.
const remaining = [...await uidsIn('INBOX'), ...await uidsIn('Archive'), ...await uidsIn('Trash')].length;
assert.equal(remaining, samples.length, 'a message is missing');

display.title('What the mail server was asked, all in all');
const counts = new Map();
for (const { text } of recordedCommands(directory)) {
  const command = text.replace(/^\S+ /, '').replace(/^(LOGIN "[^"]*") .*/, '$1 "(the password)"');
  counts.set(command, (counts.get(command) ?? 0) + 1);
}
for (const [command, count] of counts) display.line(`${String(count).padStart(3)} x ${command}`);

assertNothingForbidden(directory);
for (const secret of secrets) assert.ok(!seen.includes(secret), 'a secret left the program');
display.line('No EXPUNGE, CLOSE, CREATE, DELETE, RENAME or APPEND among them, and every message is still there.');
display.line('No code, link or password of the sample mails was in any answer.');
