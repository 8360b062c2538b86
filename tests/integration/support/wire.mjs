// Reads the record of the recorder, and says what must never be in it.
import assert from 'node:assert/strict';
import fs from 'node:fs';

// The commands of the record from line `start` on, each as {connection, burst, text}. A command with literals is
// one text; each literal stands as «bytes» after its announcement. Its burst is that of its first piece.
export function recordedCommands(directory, start = 0) {
  const open = new Map();
  const commands = [];
  for (const { connection, burst, kind, text } of recordLines(directory).slice(start).map((x) => JSON.parse(x))) {
    const begun = open.get(connection);
    if (kind === 'literal') {
      begun.text += `«${Buffer.from(text, 'latin1')}»`;
      continue;
    }
    if (begun) begun.text += text;
    const command = begun ?? { connection, burst, text };
    if (!begun) commands.push(command);
    if (/\{0*[1-9]\d*\+?\}$/.test(text)) open.set(connection, command);
    else open.delete(connection);
  }
  return commands;
}

// The words of the commands that went out together, as texts in the order of sending.
export function recordedBursts(directory, start = 0) {
  const bursts = new Map();
  for (const { connection, burst, text } of recordedCommands(directory, start)) {
    const key = `${connection} ${burst}`;
    bursts.set(key, [...bursts.get(key) ?? [], /^\S+ ((?:UID )?\S+)/.exec(text)[1]]);
  }
  return [...bursts.values()].map((words) => words.join(', '));
}

export const recordLines = (directory) =>
  fs.readFileSync(`${directory}/wire`, 'utf8').split('\n').filter((line) => line !== '');

const withoutLiterals = (command) => command.replace(/«[^»]*»/gu, '');

// No session may send these words.
const neverSent = /^\S+ (UID )?(EXPUNGE|CLOSE|CREATE|DELETE|RENAME|APPEND|SETACL|DELETEACL|STATUS|LSUB)\b/i;
// A reading session sends only these commands.
const text = String.raw`\{\d+\}`;
const readingCommands = new RegExp(String.raw`^A\d{4,} (LOGIN "(\\.|[^"\\])*" "(\\.|[^"\\])*"|CAPABILITY`
  + String.raw`|EXAMINE INBOX|LIST "" "\*"|LOGOUT`
  + String.raw`|UID SEARCH( CHARSET UTF-8)?( ALL|( UNSEEN)?( SINCE [\w-]+)?( BEFORE [\w-]+)?`
  + String.raw`( FROM ${text})?( SUBJECT ${text})?( TEXT ${text})?)`
  + String.raw`|UID FETCH \d+(,\d+)* \(UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE\)`
  + String.raw`|UID FETCH \d+ \(BODY\.PEEK\[[\d.]+\]\))$`);

export const isNeverSent = (command) => neverSent.test(withoutLiterals(command));
export const isReadingCommand = (command) => readingCommands.test(withoutLiterals(command));

export function assertNothingForbidden(directory) {
  const commands = recordedCommands(directory);
  assert.notEqual(commands.length, 0, 'the recorder saw no command at all');
  for (const { text: command } of commands) {
    assert.ok(!isNeverSent(command), `a forbidden command was sent: ${command}`);
  }
}

export function assertOnlyReading(directory) {
  assertNothingForbidden(directory);
  for (const { text: command } of recordedCommands(directory)) {
    assert.ok(isReadingCommand(command), `not a command of a reading session: ${command}`);
  }
}
