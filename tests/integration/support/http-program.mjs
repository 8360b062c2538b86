// Starts http_server_program, the loopback endpoint as a program of its own.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import readline from 'node:readline';
import { environment } from './program.mjs';

// startHTTP(PROGRAM, TOKEN) returns {url, close}. Without a token the endpoint asks for none. close() ends the program
// and returns its exit status.
export async function startHTTP(program, token) {
  const server = spawn(program, token ? [token] : [], { env: environment, stdio: ['pipe', 'pipe', 'inherit'] });
  const ended = new Promise((resolve) => server.on('exit', resolve));
  const firstLine = readline.createInterface({ input: server.stdout })[Symbol.asyncIterator]().next();
  const { value: url } = await Promise.race([firstLine,
    ended.then((status) => assert.fail(`the server ended with status ${status}`))]);
  return {
    url,
    close() {
      server.stdin.end();
      return ended;
    },
  };
}
