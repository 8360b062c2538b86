// The tools that read one message and the tool that proposes a clean-up, with a real mail server.
//   node messages.test.mjs PROGRAM DIRECTORY PORT
// PORT is the recorder's. Sample N has UID N.
import assert from 'node:assert/strict';
import test from 'node:test';
import { environment, resultObject, startClient, writeSettings } from './support/program.mjs';
import { samples, secrets, withheld } from './support/samples.mjs';
import { assertOnlyReading } from './support/wire.mjs';

const [program, directory, port] = process.argv.slice(2);
const account = { email: 'user@example.org', imapHost: 'localhost', imapPort: Number(port) };
const securityMails = samples.filter((sample) => sample.signals);

writeSettings(account);
// noSecretIsInAnyByteOfTheOutput closes it. That test runs even after failures.
const session = await startClient(program, directory, environment);
const summary = async (uid, args = {}) => resultObject(await session.call('get_message_summary', { uid, ...args }));
const body = async (uid, args = {}) => resultObject(await session.call('get_message_body', { uid, ...args }));
const refusal = async (tool, args) => {
  const result = await session.call(tool, args);
  assert.equal(result.isError, true);
  return result.structuredContent;
};

test('aSummaryTellsTheHeaderAndASnippet', async () => {
  const shown = await summary(1);
  assert.match(shown.bodySnippet, /^Hi, are you free for lunch on Thursday\? .* Alice$/);
  delete shown.bodySnippet;
  assert.deepEqual(shown, {
    uid: 1, subject: 'Lunch on Thursday?', date: 'Mon, 04 Mar 2024 09:12:45 +0000',
    from: [{ name: 'Alice Example', email: 'alice@example.org', display: 'Alice Example <alice@example.org>' }],
    to: [{ name: null, email: 'user@example.org', display: 'user@example.org' }], cc: [],
    flags: shown.flags, hasAttachments: false, detectedRiskSignals: [], bodyWithheld: false,
  });
  assert.ok(shown.flags.includes('\\Seen'));
});

test('theSnippetIsLeftOutOnRequest', async () => {
  const shown = await summary(1, { includeBodySnippet: false });
  assert.equal(shown.bodySnippet, null);
  assert.equal(shown.bodyWithheld, false);
});

test('everySecurityMailIsWithheldWithItsReason', async () => {
  for (const { number, signals } of securityMails) {
    const shown = await summary(number);
    assert.equal(shown.bodyWithheld, true);
    assert.equal(shown.bodySnippet, null);
    assert.equal(shown.withheldReason, 'Sensitive security content (OTP/2FA/verification/reset). Snippet withheld.');
    assert.deepEqual(shown.detectedRiskSignals, signals);
    const answer = await body(number);
    assert.match(answer.reason, /^Body withheld: looks like a sensitive security message \(/);
    assert.deepEqual({ ...answer, reason: '' },
      { uid: number, returned: false, blocked: true, reason: '', detectedRiskSignals: signals });
  }
});

test('aBodyIsReturnedWholeOrCutWhereAsked', async () => {
  const whole = await body(1);
  assert.equal(whole.returned, true);
  assert.equal(whole.truncated, false);
  assert.equal(whole.maxChars, 4000);
  assert.equal(whole.charCount, [...whole.body.replaceAll('\r\n', '\n')].length);
  assert.match(whole.body, /^Hi,\r\n\r\nare you free/);
  const cut = await body(1, { maxChars: 10 });
  assert.deepEqual({ truncated: cut.truncated, maxChars: cut.maxChars, charCount: cut.charCount },
    { truncated: true, maxChars: 10, charCount: whole.charCount });
  assert.equal(cut.body, 'Hi,\r\n\r\nare y…');
  assert.equal((await body(1, { maxChars: 50000 })).maxChars, 4000);
  assert.equal((await body(1, { maxChars: 0 })).maxChars, 1);
});

test('bodiesInEveryCharsetAndEncodingAreReadable', async () => {
  for (const { number, snippet, signals } of samples) {
    if (signals || !snippet?.length) continue;
    const text = (await body(number)).body.replaceAll(/\s+/gu, ' ');
    for (const words of snippet) assert.ok(text.includes(words), `sample ${number}: "${words}" is not in "${text}"`);
  }
});

test('aMessageWithoutTextSaysSo', async () => {
  assert.deepEqual(await body(14), { uid: 14, returned: false, blocked: false, detectedRiskSignals: [],
    reason: 'This message has no readable text body (it may be attachments-only).' });
});

test('unknownAndInvalidUIDsAreErrors', async () => {
  for (const tool of ['get_message_summary', 'get_message_body']) {
    assert.deepEqual(await refusal(tool, { uid: 4711 }), { error: 'No message with UID 4711 in INBOX.' });
    for (const uid of [0, -1, 4294967296, 'x', null]) {
      assert.deepEqual(await refusal(tool, { uid }), { error: "Missing or invalid 'uid'." });
    }
  }
});

test('aCleanUpIsProposedWithHintsAndPreviews', async () => {
  const proposal = resultObject(await session.call('propose_inbox_cleanup'));
  assert.equal(proposal.count, samples.length);
  assert.deepEqual(proposal.categories, ['action_needed', 'receipt', 'newsletter', 'notification', 'personal',
    'work', 'archive_candidate', 'unsure']);
  const items = new Map(proposal.items.map((item) => [item.uid, item]));
  const { suggestedCategory, suggestedFolder, confidence } = items.get(6);
  assert.deepEqual([suggestedCategory, suggestedFolder, confidence], ['receipt', 'Receipts', 0.5]);
  assert.equal(items.get(2).suggestedCategory, 'unsure');
  assert.equal(items.get(7).suggestedCategory, 'notification');
  assert.equal(items.get(1).suggestedCategory, 'unsure');
  assert.equal(items.get(14).snippet, null);
  for (const { number } of securityMails) assert.equal(items.get(number).snippet, withheld, `sample ${number}`);
  for (const { number, snippet, signals } of samples) {
    if (!signals && snippet?.length) assert.ok([...items.get(number).snippet].length <= 201, `sample ${number}`);
  }
});

test('onlyWantedCategoriesAreSuggested', async () => {
  const { items } = resultObject(await session.call('propose_inbox_cleanup', { categories: ['newsletter'] }));
  const receipt = items.find((item) => item.uid === 6);
  assert.equal(receipt.suggestedCategory, 'unsure');
  assert.equal(receipt.reason, "Heuristic suggested ‘receipt’ but it isn't in the requested category list.");
});

test('noSecretIsInAnyByteOfTheOutput', async () => {
  const { output, errors } = await session.finish();
  assert.ok(output.length > 1000, 'the output was not recorded');
  for (const secret of [...secrets, 'app-pass-word']) {
    assert.equal(output.indexOf(secret), -1, `${secret} is in the output`);
    assert.equal(errors.indexOf(secret), -1, `${secret} is on standard error`);
  }
});

test('withTheSettingOffSecurityMailIsReadInFull', async (t) => {
  writeSettings({ ...account, safety: { blockAuthCodeBodies: false } });
  const second = await startClient(program, directory, environment);
  t.after(() => second.client.close());
  const answer = resultObject(await second.call('get_message_body', { uid: 7 }));
  await second.finish();
  assert.equal(answer.returned, true);
  assert.ok(answer.body.includes('493817'));
  assert.equal(answer.detectedRiskSignals[0].category, 'verification_code');
});

test('onlyReadingCommandsWereSent', () => assertOnlyReading(directory));
