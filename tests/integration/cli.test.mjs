// The command words against the real services: exit statuses and exact texts.
//   node cli.test.mjs PROGRAM DIRECTORY PORT SERVER_PORT OTHER_DIRECTORY OTHER_PORT OTHER_SERVER_PORT FREE_PORT
// PORT is the recorder's and SERVER_PORT that of the mail server behind it. The record is in DIRECTORY. The
// other three belong to a server without MOVE. Nobody listens at FREE_PORT.
import assert from 'node:assert/strict';
import { execFile, spawnSync } from 'node:child_process';
import fs from 'node:fs';
import readline from 'node:readline';
import test from 'node:test';
import tls from 'node:tls';
import { promisify } from 'node:util';
import { capabilitiesOf } from './support/imap-session.mjs';
import { environment, readSettings, writeSettings } from './support/program.mjs';
import { toolNames } from './support/samples.mjs';
import { assertOnlyReading, isReadingCommand, recordLines, recordedCommands } from './support/wire.mjs';

const [program, directory, port, serverPort, otherDirectory, otherPort, otherServerPort, freePort] =
  process.argv.slice(2);
const account = { email: 'user@example.org', imapHost: 'localhost', imapPort: Number(port) };
const failed = '❌ Connection failed: ';

function run(words, env = environment) {
  const { status, signal, stdout, stderr } = spawnSync(program, words, { env, encoding: 'utf8', input: '' });
  assert.equal(signal, null);
  return { status, stdout, stderr };
}

const withoutCertificate = { ...environment };
delete withoutCertificate.SSL_CERT_FILE;

async function assertConnects(settings, ownPort, move) {
  const words = await capabilitiesOf(directory, ownPort);
  const before = recordLines(directory).length;
  writeSettings(settings);
  assert.deepEqual(run(['test-connection']), {
    status: 0, stderr: '',
    stdout: `✅ Connected to localhost:${settings.imapPort} as user@example.org\n`
      + `   INBOX selected OK · MOVE supported: ${move}\n   Capabilities: ${words.join(' ')}\n`,
  });
  return recordedCommands(directory, before);
}

test('testConnectionReportsInThreeLinesAndIsRemembered', async () => {
  const commands = await assertConnects({ ...account, language: 'ja' }, serverPort, 'yes');
  assert.deepEqual(commands.map((command) => command.text), [
    'A0001 LOGIN "user@example.org" "app-pass-word"', 'A0002 CAPABILITY', 'A0003 EXAMINE INBOX',
    'A0004 LOGOUT']);
  const saved = readSettings();
  assert.equal(saved.lastConnectionTestSuccess, true);
  assert.match(saved.lastConnectionTestDate, /^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$/);
  assert.deepEqual([saved.email, saved.imapPort, saved.language], [account.email, account.imapPort, 'ja']);
  const folder = `${environment.HOME}/.local/share/app.tarnwell.Tarnwell`;
  assert.equal(fs.statSync(`${folder}/config.json`).mode & 0o777, 0o600);
  assert.equal(fs.statSync(folder).mode & 0o777, 0o700);
  assert.deepEqual(fs.readdirSync(folder), ['config.json']);
  const status = JSON.parse(run(['status']).stdout);
  assert.deepEqual(status.lastConnectionTest, { date: saved.lastConnectionTestDate, success: true });
});

test('aServerWithoutMoveIsReportedAsSuch', async () => {
  await assertConnects({ ...account, imapPort: Number(otherPort) }, otherServerPort, 'no');
});

// A server that greets and agrees to everything. It runs `atLogin` when the login arrives.
async function startAgreeingServer(atLogin) {
  const files = { key: fs.readFileSync(`${directory}/server.key`), cert: fs.readFileSync(`${directory}/server.pem`) };
  const server = tls.createServer(files, (socket) => {
    socket.on('error', () => {});
    socket.write('* OK ready\r\n');
    readline.createInterface({ input: socket, crlfDelay: Infinity }).on('line', (line) => {
      assert.ok(isReadingCommand(line), line);
      if (line.includes(' LOGIN ')) atLogin();
      socket.write(`${line.split(' ')[0]} OK done\r\n`);
    });
  });
  await new Promise((resolve) => { server.listen(0, '127.0.0.1', resolve); });
  return server;
}

test('settingsChangedDuringTheTestAreKept', async (t) => {
  const meanwhile = { email: account.email, imapHost: 'mail.example.org', safety: { readOnly: false } };
  const server = await startAgreeingServer(() => writeSettings(meanwhile));
  t.after(() => server.close());
  writeSettings({ ...account, imapPort: server.address().port });
  await promisify(execFile)(program, ['test-connection'], { env: environment });
  const saved = readSettings();
  assert.deepEqual([saved.imapHost, saved.safety.readOnly, saved.lastConnectionTestSuccess],
    ['mail.example.org', false, true]);
});

test('theOutcomeIsNotSavedForAnotherAccount', async (t) => {
  const other = { email: 'other@example.org' };
  const server = await startAgreeingServer(() => writeSettings(other));
  t.after(() => server.close());
  writeSettings({ ...account, imapPort: server.address().port });
  await promisify(execFile)(program, ['test-connection'], { env: environment });
  assert.deepEqual(readSettings(), other);
});

const settingsFile = `${environment.HOME}/.local/share/app.tarnwell.Tarnwell/config.json`;
const bytesOfSettings = () => (fs.existsSync(settingsFile) ? fs.readFileSync(settingsFile, 'utf8') : 'none');

// Name, and a change to the settings during the connection test. The changed settings must stay.
const meanwhiles = [
  ['removed', () => fs.rmSync(settingsFile)],
  ['malformed', () => fs.writeFileSync(settingsFile, '{"email": "user@example.org", "imapPort": "993"}')],
  ['openToEverybody', () => fs.chmodSync(settingsFile, 0o666)],
];

for (const [name, change] of meanwhiles) {
  test(`theOutcomeIsNotSavedWhenTheSettingsAre_${name}_meanwhile`, async (t) => {
    let changed;
    const server = await startAgreeingServer(() => { change(); changed = bytesOfSettings(); });
    t.after(() => { server.close(); fs.rmSync(settingsFile, { force: true }); });
    writeSettings({ ...account, imapPort: server.address().port });
    const { stdout } = await promisify(execFile)(program, ['test-connection'], { env: environment });
    assert.match(stdout, /^✅ Connected to /);
    assert.equal(bytesOfSettings(), changed);
  });
}

// Name, settings, environment, standard error (a text or an expression), and whether a login is allowed.
const failures = [
  ['aWrongPasswordFailsAsAuthentication', { ...account, email: 'wrong@example.org' }, environment,
    `${failed}Authentication failed. Check the email address and Apple app-specific password.\n`, true],
  ['aMissingPasswordIsNamedRedacted', { ...account, email: 'nobody@example.org' }, environment,
    'No app password in Keychain for no***@example.org.\n', false],
  ['noAccountIsSaidToBeMissing', {}, environment,
    'Not configured. Open the app and save your iCloud email + app password.\n', false],
  ['aCertificateOfAnUnknownMakerIsRefused', account, withoutCertificate,
    /^❌ Connection failed: .*certificate.*\n$/i, false],
  ['aRefusedConnectionIsReportedAtOnce', { ...account, imapPort: Number(freePort) }, environment,
    /^❌ Connection failed: Could not connect to the IMAP server: .*refused.*\n$/i, false],
  ['aPortOutOfRangeIsReported', { ...account, imapPort: 70000 }, environment,
    `${failed}Invalid argument: IMAP port 70000 is out of range\n`, false],
];

for (const [name, settings, env, expected, login] of failures) {
  test(name, () => {
    writeSettings(settings);
    const before = recordLines(directory).length;
    const { status, stdout, stderr } = run(['test-connection'], env);
    assert.deepEqual([status, stdout], [1, '']);
    if (expected instanceof RegExp) assert.match(stderr, expected);
    else assert.equal(stderr, expected);
    const commands = recordedCommands(directory, before).map((command) => command.text);
    if (login) assert.match(commands[0], /^A0001 LOGIN "wrong@example\.org"/);
    else assert.deepEqual(commands, []);
    const tried = stderr.startsWith(failed);
    assert.equal(readSettings().lastConnectionTestSuccess, tried ? false : undefined);
  });
}

test('statusKnowsThePasswordButNeverShowsIt', () => {
  writeSettings(account);
  const { status, stdout, stderr } = run(['status', 'extra', 'words']);
  assert.deepEqual([status, stderr], [0, '']);
  const report = JSON.parse(stdout);
  assert.deepEqual([report.configured, report.mode], [true, 'read-only']);
  assert.deepEqual(report.availableTools, toolNames);
  assert.ok(!stdout.includes('app-pass-word'));
});

test('printConfigIsPureJSONThatNamesTheProgram', () => {
  const { status, stdout, stderr } = run(['print-config']);
  assert.equal(status, 0);
  assert.deepEqual(JSON.parse(stdout),
    { mcpServers: { tarnwell: { command: fs.realpathSync(program), args: ['serve'] } } });
  assert.equal(stderr, '\n# Add the block above to your MCP client config.\n'
    + '# (This output never contains your app password.)\n');
});

test('printConfigFollowsSymbolicLinks', () => {
  const link = `${directory}/link-to-tarnwell`;
  fs.symlinkSync(program, link);
  const { stdout } = spawnSync(link, ['print-config'], { env: environment, encoding: 'utf8' });
  assert.equal(JSON.parse(stdout).mcpServers.tarnwell.command, fs.realpathSync(program));
});

test('onlyReadingCommandsWereSent', () => {
  assertOnlyReading(directory);
  assertOnlyReading(otherDirectory);
});
