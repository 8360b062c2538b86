// Shows a conversation to a person: requests as they are sent, and answers as indented JSON. Cuts long texts
// and names their full length. Uses colours only on a terminal.
const width = 100;
const longestText = 160;

export class Display {
  #coloured = process.stdout.isTTY && !process.env.NO_COLOR;

  #paint(code, text) { return this.#coloured ? `\x1b[${code}m${text}\x1b[0m` : text; }

  line(text) { console.log(text); }
  title(text) { console.log(`\n${this.#paint(1, text)}`); }
  request(message) { console.log(this.#paint(36, `--> ${cut(JSON.stringify(message), 400)}`)); }

  // A tool result says the same in content and in structuredContent. Only structuredContent is shown.
  answer(value) { console.log(`${this.#paint(32, '<--')} ${layOut(value, '    ')}`); }
}

function cut(text, limit) {
  const characters = [...text];
  if (characters.length <= limit) return text;
  return `${characters.slice(0, limit).join('')}... (${characters.length} characters in all)`;
}

// One line if the value fits, else one line for each member.
function layOut(value, indent) {
  if (typeof value === 'string') return JSON.stringify(cut(value, longestText));
  if (value === null || typeof value !== 'object') return JSON.stringify(value);
  const list = Array.isArray(value);
  const [open, close] = list ? ['[', ']'] : ['{', '}'];
  const inner = `${indent}  `;
  const members = Object.entries(value)
    .map(([key, member]) => (list ? '' : `${JSON.stringify(key)}: `) + layOut(member, inner));
  const flat = `${open}${members.join(', ')}${close}`;
  if (flat.length + indent.length <= width && !flat.includes('\n')) return flat;
  return `${open}\n${members.map((member) => inner + member).join(',\n')}\n${indent}${close}`;
}
