"""The measured programs, as processes that answer each line with one line."""
import json
import os
import random
import subprocess
import time


FLOOR, SDK, REPLAY, LOOP = "C floor", "TypeScript SDK, imapflow", "raw TLS replay", "Python imaplib"


def in_any_order(rounds):
    """The contenders of one round in random order, so none always comes after the same other."""
    return random.sample(list(rounds.items()), len(rounds))


class Answering:
    """A process that gets requests as lines on its standard input. It ends when its input ends."""

    def __init__(self, command, environment=None, directory=None):
        self._process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0,
                                         env={**os.environ, **(environment or {})}, cwd=directory)
        self._output = self._process.stdout.fileno()
        self._input = self._process.stdin.fileno()
        self._received = b""

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._process.stdin.close()
        try:
            self._process.wait(timeout=10)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()
        self._process.stdout.close()

    def write(self, text):
        data = memoryview(text.encode() + b"\n")
        while data:
            data = data[os.write(self._input, data):]

    def read(self):
        pieces = [self._received]
        while b"\n" not in pieces[-1]:
            piece = os.read(self._output, 1 << 20)
            if not piece:
                raise RuntimeError(f"{self._process.args[0]} ended without an answer")
            pieces.append(piece)
        line, self._received = b"".join(pieces).split(b"\n", 1)
        return line

    def ask(self, text):
        self.write(text)
        return self.read()

    def measure(self, text):
        """The answer and its nanoseconds: wall time and processor time."""
        processor, wall = self.processor_time(), time.perf_counter_ns()
        answer = self.ask(text)
        return answer, {"wall": time.perf_counter_ns() - wall, "processor": self.processor_time() - processor}

    def processor_time(self):
        """Nanoseconds of the whole process, including the threads that have ended (clock_getcpuclockid(3))."""
        return time.clock_gettime_ns((~self._process.pid << 3) | 2)

    def memory(self):
        """Resident bytes, now and at their peak."""
        with open(f"/proc/{self._process.pid}/status") as file:
            fields = dict(line.split(":", 1) for line in file)
        return {name: int(fields[key].split()[0]) * 1024 for name, key in
                (("resident", "VmRSS"), ("peak", "VmHWM"))}


class Comparator(Answering):
    """A comparator that does one round for each line "go"."""

    def round(self):
        answer, taken = self.measure("go")
        return {**taken, "result": json.loads(answer)}


class MCPServer(Answering):
    """A server for MCP clients, after the handshake."""

    def __init__(self, command, environment=None, directory=None):
        super().__init__(command, environment, directory)
        self._id = 0
        self.request("initialize", {"protocolVersion": "2025-11-25", "capabilities": {},
                                    "clientInfo": {"name": "bench", "version": "1"}})
        self.write('{"jsonrpc":"2.0","method":"notifications/initialized"}')

    def request(self, method, parameters=None):
        self._id += 1
        message = {"jsonrpc": "2.0", "id": self._id, "method": method, "params": parameters or {}}
        return json.loads(self.ask(json.dumps(message)))

    def call(self, tool, **arguments):
        """The nanoseconds of a call and its result."""
        self._id += 1
        message = json.dumps({"jsonrpc": "2.0", "id": self._id, "method": "tools/call",
                              "params": {"name": tool, "arguments": arguments}})
        answer, taken = self.measure(message)
        result = json.loads(answer)["result"]
        if result.get("isError"):
            raise RuntimeError(f"{tool} failed: {result['content']}")
        return {**taken, "result": result["structuredContent"]}


def run_timer(program, count, command):
    """One run of ServeTimer."""
    output = subprocess.run([program, str(count), *command], check=True, stdout=subprocess.PIPE).stdout
    return json.loads(output)
