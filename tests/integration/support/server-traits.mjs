// What differs between mail servers, as a JSON object. Tests ask for these and for no server's name.
//   prefix               what the names of all folders but INBOX begin with
//   separator            what stands between the levels of a name
//   specialUse           whether LIST tells the special uses of folders (RFC 6154)
//   refuses              the sample folders whose names the server does not allow
//   searchesOldCharsets  whether a search finds words in bodies that are neither in US-ASCII nor in UTF-8
import assert from 'node:assert/strict';
import { folders } from './samples.mjs';

const names = ['prefix', 'refuses', 'searchesOldCharsets', 'separator', 'specialUse'];

export function readTraits(text) {
  const traits = JSON.parse(text);
  assert.deepEqual(Object.keys(traits).sort(), names);
  return traits;
}

// The sample folders as this server names them.
export const foldersOn = ({ prefix, separator, specialUse, refuses }) => folders
  .filter((folder) => !refuses.includes(folder.path))
  .map((folder) => ({
    ...folder,
    path: folder.path === 'INBOX' ? 'INBOX' : prefix + folder.path.replaceAll('/', separator),
    specialUse: specialUse ? folder.specialUse : null,
    delimiter: separator,
  }));
