// Cuts the bytes of an IMAP client into command lines and literals. A line that ends in {n} or {n+} is
// followed by a literal of n bytes (RFC 3501 section 2.2.1). The pieces do not depend on how the bytes
// arrive.
export class CommandReader {
  #kept = Buffer.alloc(0);
  #literal = 0;

  // Returns [{kind: 'line' | 'literal', text}]. The text has one character for each byte (latin1), and no
  // CRLF.
  push(bytes) {
    this.#kept = Buffer.concat([this.#kept, bytes]);
    const pieces = [];
    for (;;) {
      const length = this.#literal > 0 ? this.#literal : this.#kept.indexOf('\r\n');
      if (length < 0 || this.#kept.length < length) return pieces;
      const kind = this.#literal > 0 ? 'literal' : 'line';
      const text = this.#kept.subarray(0, length).toString('latin1');
      this.#kept = this.#kept.subarray(length + (kind === 'line' ? 2 : 0));
      this.#literal = kind === 'line' ? Number(/\{(\d+)\+?\}$/.exec(text)?.[1] ?? 0) : 0;
      pieces.push({ kind, text });
    }
  }
}
