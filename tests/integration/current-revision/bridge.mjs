// Lets the conformance suite, which speaks HTTP, test standard input and output. Each POST becomes a line, and
// its answer the body. Ids become texts that occur once, because several clients share one program.
import { spawn } from 'node:child_process';
import http from 'node:http';
import readline from 'node:readline';

const mark = 'io.modelcontextprotocol/protocolVersion';

// What HTTP adds to the protocol, as the program cannot know it: the code of the error of a request whose headers
// do not fit its body.
function refusal(headers, message) {
  const claimed = message.params?._meta?.[mark];
  if (claimed === undefined) {
    const isCurrent = headers['mcp-protocol-version'] >= '2026-07-28';
    return isCurrent && (message.method === 'initialize' ? -32020 : -32602);
  }
  const fits = headers['mcp-protocol-version'] === claimed &&
    (claimed !== '2026-07-28' || (headers['mcp-method'] === message.method &&
      (message.method !== 'tools/call' || headers['mcp-name'] === message.params.name)));
  return !fits && -32020;
}

const statusOf = { [-32601]: 404, [-32600]: 400, [-32020]: 400, [-32022]: 400 };

function status(message, answer) {
  if (message.params?._meta?.[mark] === undefined || !answer.error) return 200;
  const isDefectOfMeta = answer.error.code === -32602 && answer.error.message.includes('_meta');
  return isDefectOfMeta ? 400 : statusOf[answer.error.code] ?? 200;
}

// startBridge(PROGRAM, ENVIRONMENT) starts PROGRAM serve and returns {url, close}. close() ends both, and
// returns the exit status.
export async function startBridge(program, env) {
  const child = spawn(program, ['serve'], { env, stdio: ['pipe', 'pipe', 'inherit'] });
  const ended = new Promise((resolve) => child.on('exit', resolve));
  const waiting = new Map();
  let count = 0;
  readline.createInterface({ input: child.stdout }).on('line', (line) => {
    const answer = JSON.parse(line);
    waiting.get(answer.id)?.(answer);
    waiting.delete(answer.id);
  });

  const server = http.createServer(async (request, response) => {
    const host = /^(localhost|127\.0\.0\.1|\[::1\])(:\d+)?$/;
    const origin = request.headers.origin?.replace(/^https?:\/\//, '');
    const reply = (code, body) => response.writeHead(code, { 'Content-Type': 'application/json' })
      .end(body && JSON.stringify(body));
    if (!host.test(request.headers.host) || (origin && !host.test(origin))) return reply(403);
    if (request.method !== 'POST') return reply(405);
    let body = '';
    for await (const chunk of request) body += chunk;
    const message = JSON.parse(body);
    if (message.id === undefined) {
      child.stdin.write(JSON.stringify(message) + '\n');
      return reply(202);
    }
    const code = refusal(request.headers, message);
    if (code) return reply(400, { jsonrpc: '2.0', id: message.id, error: { code, message: 'the bridge' } });
    const id = `bridge-${++count}`;
    const answer = await new Promise((resolve) => {
      waiting.set(id, resolve);
      child.stdin.write(JSON.stringify({ ...message, id }) + '\n');
    });
    return reply(status(message, answer), { ...answer, id: message.id });
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  return {
    url: `http://127.0.0.1:${server.address().port}/mcp`,
    close() {
      server.close();
      server.closeAllConnections();
      child.stdin.end();
      return ended;
    },
  };
}
