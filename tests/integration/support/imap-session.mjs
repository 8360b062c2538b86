// A second, independent session with the mail server: plain commands and their untagged lines.
//
//   const session = await IMAPSession.open(port, caFile, address, password);
//   const lines = await session.command('UID SEARCH ALL');  // throws unless the server says OK
//   await session.close();
import fs from 'node:fs';
import tls from 'node:tls';

export class IMAPSession {
  #socket;
  #received = '';
  #wake = () => {};
  #ended = false;
  #tag = 0;

  static async open(port, caFile, address, password) {
    const session = new IMAPSession();
    session.#socket = tls.connect({ host: 'localhost', port, ca: fs.readFileSync(caFile), family: 4 });
    session.#socket.setEncoding('latin1');
    session.#socket.on('data', (text) => { session.#received += text; session.#wake(); });
    for (const event of ['close', 'error']) {
      session.#socket.on(event, () => { session.#ended = true; session.#wake(); });
    }
    await session.#line();
    await session.command(`LOGIN "${address}" "${password}"`);
    return session;
  }

  async #line() {
    for (;;) {
      const end = this.#received.indexOf('\r\n');
      if (end >= 0) {
        const line = this.#received.slice(0, end);
        this.#received = this.#received.slice(end + 2);
        return line;
      }
      if (this.#ended) throw new Error('the server closed the independent session');
      await new Promise((resolve) => { this.#wake = resolve; });
    }
  }

  // The literal, if there is one, ends the command. It has one character for each byte (latin1).
  async command(text, literal) {
    const tag = `T${++this.#tag}`;
    this.#socket.write(`${tag} ${text}${literal === undefined ? '' : ` {${literal.length}}`}\r\n`);
    const lines = [];
    for (;;) {
      const line = await this.#line();
      if (literal !== undefined && line.startsWith('+')) {
        this.#socket.write(`${literal}\r\n`, 'latin1');
        continue;
      }
      if (line.startsWith(`${tag} OK`)) return lines;
      if (line.startsWith(`${tag} `)) throw new Error(`${text}: ${line}`);
      lines.push(line);
    }
  }

  async close() {
    await this.command('LOGOUT').catch(() => {});
    this.#socket.destroy();
  }
}

// The server's capabilities after a login, in a separate session: in upper case, sorted, each once.
export async function capabilitiesOf(directory, port) {
  const onlooker = await IMAPSession.open(port, `${directory}/ca.pem`, 'user@example.org', 'app-pass-word');
  const [line] = await onlooker.command('CAPABILITY');
  await onlooker.close();
  return [...new Set(line.toUpperCase().split(' ').slice(2))].sort();
}

// The content of a folder in a separate session: UID, flags and header lines of each message.
export async function lookInto(folder, directory, port) {
  const onlooker = await IMAPSession.open(port, `${directory}/ca.pem`, 'user@example.org', 'app-pass-word');
  await onlooker.command(`EXAMINE "${folder.replaceAll(/["\\]/g, '\\$&')}"`);
  const lines = await onlooker.command('UID FETCH 1:* (UID FLAGS BODY.PEEK[HEADER.FIELDS (SUBJECT MESSAGE-ID)])');
  await onlooker.close();
  const messages = [];
  for (const line of lines) {
    const fetch = line.match(/ FETCH .*UID (\d+) .*FLAGS \(([^)]*)\)/);
    // \Recent is about the session that sees a message first, not about the message.
    const flags = fetch?.[2].split(' ').filter((flag) => flag !== '' && flag !== '\\Recent');
    if (fetch) messages.push({ uid: Number(fetch[1]), flags, header: '' });
    else if (messages.length) messages.at(-1).header += `${line}\n`;
  }
  return messages;
}
