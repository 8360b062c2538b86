// A mail server for MCP clients that one could write in an afternoon: the official TypeScript SDK, imapflow
// for the mailbox and mailparser for the messages. Offers search_inbox with the result shape of the program,
// as far as the libraries provide it: newest first, header fields and a snippet of the text. Withholds
// nothing.
//   MAIL_PORT=... MAIL_USER=... MAIL_PASSWORD=... MAIL_CA=ca.pem node sdk_server.mjs
import fs from 'node:fs';
import { McpServer } from '@modelcontextprotocol/sdk/server/mcp.js';
import { StdioServerTransport } from '@modelcontextprotocol/sdk/server/stdio.js';
import { z } from 'zod';

const snippetLength = 200;

// The mail libraries are loaded on first use, so they do not slow the start down.
async function searchInbox(limit) {
  const { ImapFlow } = await import('imapflow');
  const { simpleParser } = await import('mailparser');
  const client = new ImapFlow({
    host: 'localhost', port: Number(process.env.MAIL_PORT), secure: true, logger: false,
    auth: { user: process.env.MAIL_USER, pass: process.env.MAIL_PASSWORD },
    tls: { ca: fs.readFileSync(process.env.MAIL_CA) },
  });
  await client.connect();
  const messages = [];
  const lock = await client.getMailboxLock('INBOX', { readOnly: true });
  try {
    const uids = await client.search({ all: true }, { uid: true });
    const newest = uids.slice(-limit);
    const items = { uid: true, flags: true, internalDate: true, envelope: true, source: true };
    for await (const item of client.fetch(newest, items, { uid: true })) {
      const parsed = await simpleParser(item.source);
      messages.push({
        uid: item.uid,
        subject: item.envelope.subject,
        from: item.envelope.from?.map(({ name, address }) => ({ name, address })),
        to: item.envelope.to?.map(({ name, address }) => ({ name, address })),
        date: item.envelope.date,
        internalDate: item.internalDate,
        seen: item.flags.has('\\Seen'),
        hasAttachments: parsed.attachments.length > 0,
        snippet: (parsed.text ?? '').replace(/\s+/g, ' ').trim().slice(0, snippetLength),
      });
    }
  } finally {
    lock.release();
    await client.logout();
  }
  return messages.sort((one, other) => other.uid - one.uid);
}

const server = new McpServer({ name: 'sdk-server', version: '1.0.0' });
server.registerTool('search_inbox', {
  description: 'Search INBOX, newest first',
  inputSchema: { limit: z.number().int().default(20) },
}, async ({ limit }) => {
  const messages = await searchInbox(limit);
  const result = { count: messages.length, limit, messages };
  return { content: [{ type: 'text', text: JSON.stringify(result, null, 2) }], structuredContent: result };
});
await server.connect(new StdioServerTransport());
