// The official conformance suite, over HTTP or through the bridge over standard input and output.
//   node conformance.test.mjs http|stdio PROGRAM DIRECTORY
import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import test, { after } from 'node:test';
import { fileURLToPath } from 'node:url';
import { startHTTP } from '../support/http-program.mjs';
import { environment } from '../support/program.mjs';
import { startBridge } from './bridge.mjs';

const [way, program, directory] = process.argv.slice(2);
const here = path.dirname(fileURLToPath(import.meta.url));
const suite = `${here}/node_modules/@modelcontextprotocol/conformance/dist/index.js`;
const server = way === 'http' ? await startHTTP(program) : await startBridge(program, environment);
after(() => server.close());

// How many checks of a scenario pass. The other ones are in expected-failures.yaml, or are skipped by the suite
// because the server has no subscriptions and no resources. Checks that begin to pass fail the run too.
const scenarios = [
  ['2026-07-28', 'server-stateless', 21],
  ['2026-07-28', 'tools-list', 4],
  ['2026-07-28', 'caching', 4],
  ['2026-07-28', 'dns-rebinding-protection', 2],
  ['2026-07-28', 'http-header-validation', 14],
  ['2025-11-25', 'server-initialize', 2],
  ['2025-11-25', 'ping', 2],
  ['2025-11-25', 'tools-list', 3],
  ['2025-11-25', 'dns-rebinding-protection', 2],
];
// Over the bridge these two would only test the bridge.
const onlyHTTP = ['dns-rebinding-protection', 'http-header-validation'];

function run(words) {
  return new Promise((resolve) => {
    execFile(process.execPath, [suite, ...words], { env: environment }, (error, output, errors) =>
      resolve({ status: error ? error.code : 0, output: output + errors }));
  });
}

for (const [version, scenario, passing] of scenarios) {
  if (way === 'stdio' && onlyHTTP.includes(scenario)) continue;
  test(`${scenario} of ${version}`, async () => {
    const results = `${directory}/conformance-${way}-${version}-${scenario}`;
    const { status, output } = await run(['server', '--url', server.url, '--scenario', scenario,
      '--spec-version', version, '-o', results, '--expected-failures', `${here}/expected-failures.yaml`]);
    assert.equal(status, 0, output);
    const [run_] = fs.readdirSync(results);
    const checks = JSON.parse(fs.readFileSync(`${results}/${run_}/checks.json`, 'utf8'));
    assert.equal(checks.filter((check) => check.status === 'SUCCESS').length, passing, output);
  });
}

test('theServerEndsByItself', async () => assert.equal(await server.close(), 0));
