// A TLS server between the program and the mail server. It passes on every byte in both directions and
// records what the program sends: one JSON line for each command line or literal, with its connection and its
// burst. Pieces of one burst came together, as one piece of bytes.
//
//   node wire-recorder.mjs DIRECTORY UPSTREAM_PORT
//
// DIRECTORY contains server.pem, server.key and ca.pem. The record is appended to DIRECTORY/wire before the
// bytes are passed on. Prints its port when it listens. Runs until it is ended.
import fs from 'node:fs';
import tls from 'node:tls';
import { CommandReader } from './support/command-reader.mjs';

const [directory, upstreamPort] = process.argv.slice(2);
const record = fs.openSync(`${directory}/wire`, 'a');
let connections = 0;

const server = tls.createServer({
  key: fs.readFileSync(`${directory}/server.key`),
  cert: fs.readFileSync(`${directory}/server.pem`),
}, (client) => {
  const connection = ++connections;
  const reader = new CommandReader();
  let bursts = 0;
  const upstream = tls.connect({
    host: '127.0.0.1', port: Number(upstreamPort), servername: 'localhost',
    ca: fs.readFileSync(`${directory}/ca.pem`),
  });
  client.on('data', (bytes) => {
    const burst = ++bursts;
    for (const piece of reader.push(bytes)) {
      fs.writeSync(record, JSON.stringify({ connection, burst, ...piece }) + '\n');
    }
    upstream.write(bytes);
  });
  upstream.on('data', (bytes) => client.write(bytes));
  client.on('end', () => upstream.end());
  upstream.on('end', () => client.end());
  client.on('error', () => upstream.destroy());
  upstream.on('error', () => client.destroy());
});

server.on('tlsClientError', () => {});  // a client refused the certificate: the tests check the client
server.listen(0, '127.0.0.1', () => console.log(server.address().port));
