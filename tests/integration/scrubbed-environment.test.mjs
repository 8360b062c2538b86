// The program as an MCP client starts it by default, with only six variables. The program finds the user's
// bus at /run/user/UID/bus and uses the system's certificates.
//   node scrubbed-environment.test.mjs PROGRAM DIRECTORY
import assert from 'node:assert/strict';
import test from 'node:test';
import { resultObject, startClient } from './support/program.mjs';
import { samples } from './support/samples.mjs';
import { assertOnlyReading } from './support/wire.mjs';

const [program, directory] = process.argv.slice(2);

test('noVariableHelps', () => {
  const allowed = ['HOME', 'LOGNAME', 'PATH', 'SHELL', 'TERM', 'USER', 'PWD', 'SHLVL', '_', 'OLDPWD'];
  assert.deepEqual(Object.keys(process.env).filter((name) => !allowed.includes(name)), []);
});

test('theBusOfTheUserIsFoundWithoutItsVariables', async (t) => {
  const session = await startClient(program, directory);
  t.after(() => session.client.close());
  assert.equal(resultObject(await session.call('get_status')).configured, true);
  assert.equal(resultObject(await session.call('search_inbox')).count, samples.length);
  await session.finish();
});

test('onlyReadingCommandsWereSent', () => assertOnlyReading(directory));
