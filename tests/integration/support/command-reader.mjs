// Cuts what an IMAP client sends into command lines and literals (RFC 3501 section 2.2.1: a line that ends
// in {n} or {n+} is followed by n bytes of literal). However the bytes arrive, the pieces are the same.
export class CommandReader {
  #kept = Buffer.alloc(0);
  #literal = 0;

  // Returns [{kind: 'line' | 'literal', text}], the text one character a byte (latin1), without CRLF.
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
