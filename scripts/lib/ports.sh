# shellcheck shell=bash
# free_port: prints a TCP port of the loopback address that was free a moment ago.
free_port() {
  python3 -c 'import socket
with socket.socket() as probe:
    probe.bind(("127.0.0.1", 0))
    print(probe.getsockname()[1])'
}
