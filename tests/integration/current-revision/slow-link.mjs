// A TCP link between the program and the mail server that can be slowed down and held. The bytes pass unread.
import net from 'node:net';

// startSlowLink(PORT) returns {port, pace, hold, release, opened, closed, close}.
// - pace(N) passes on N bytes of the server each 10 ms; pace(Infinity) passes them on as they come.
// - hold() passes on nothing of the server until release().
// - opened() and closed() resolve when the program next opens or closes a connection, with the time.
export async function startSlowLink(port) {
  let bytesAtOnce = Infinity;
  let isHeld = false;
  const waiting = { open: [], close: [] };
  const tell = (event) => {
    for (const resolve of waiting[event].splice(0)) resolve(performance.now());
  };
  const pumps = new Set();
  const server = net.createServer((client) => {
    tell('open');
    const upstream = net.connect(port, '127.0.0.1');
    let queued = Buffer.alloc(0);
    const pump = () => {
      if (isHeld || queued.length === 0) return;
      client.write(queued.subarray(0, bytesAtOnce));
      queued = queued.subarray(bytesAtOnce);
    };
    const timer = setInterval(pump, 10);
    pumps.add(timer);
    client.on('data', (bytes) => upstream.write(bytes));
    upstream.on('data', (bytes) => {
      queued = Buffer.concat([queued, bytes]);
      if (bytesAtOnce === Infinity) pump();
    });
    const end = () => {
      clearInterval(timer);
      pumps.delete(timer);
      client.destroy();
      upstream.destroy();
    };
    client.on('end', () => {
      tell('close');
      end();
    });
    client.on('close', end);
    client.on('error', end);
    upstream.on('error', end);
    upstream.on('close', () => {
      if (queued.length === 0) end();
    });
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  return {
    port: server.address().port,
    pace(bytes) { bytesAtOnce = bytes; },
    hold() { isHeld = true; },
    release() { isHeld = false; },
    opened: () => new Promise((resolve) => waiting.open.push(resolve)),
    closed: () => new Promise((resolve) => waiting.close.push(resolve)),
    close() {
      for (const timer of pumps) clearInterval(timer);
      server.close();
    },
  };
}
