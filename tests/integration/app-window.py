"""app-window.py APP HELPER PORT PASSWORD: a person who uses a screen reader goes through all pages, from the first start
to a tested account, an assistant that is connected, a search that shows what it would see, and the local endpoint.
Everything is found by its role and its accessible name; nothing by its place. Then the official MCP client uses the
configuration that the app wrote.

Runs under a display with a window manager and the bus of screen readers (AT-SPI), with a private keyring.
"""

import json
import os
import pathlib
import socket
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

PATIENCE = 20  # seconds, for a machine that does much else
ADDRESS = "user@example.org"
CURSOR = pathlib.Path(os.environ["HOME"], ".cursor/mcp.json")
OTHER_SERVER = b'{\r\n\t"mcpServers": {\r\n\t\t"other": {"command": "other"}\r\n\t}\r\n}\r\n'


class Missing(Exception):
    """There is no such thing on the screen."""


def eventually(look, what):
    """What `look` finds, once it does not fail any more; `what` says what was looked for."""
    end = time.monotonic() + PATIENCE
    while True:
        try:
            found = look()
            if found:
                return found
        except (gi.repository.GLib.Error, Missing):
            pass  # it is being built or has just gone
        if time.monotonic() > end:
            raise Missing(what())
        time.sleep(0.05)


def children(node):
    for place in range(node.get_child_count()):
        child = node.get_child_at_index(place)
        if child is not None:
            yield child


def descendants(node):
    for child in children(node):
        yield child
        yield from descendants(child)


def has(node, state):
    node.clear_cache()  # what was known may be of a moment ago
    return node.get_state_set().contains(state)


def is_shown(node):
    return has(node, Atspi.StateType.SHOWING)


class Window:
    def __init__(self, process):
        self.process = process

    def root(self):
        for application in children(Atspi.get_desktop(0)):
            if application.get_process_id() == self.process.pid:
                return application
        raise Missing(f"the app on the bus of screen readers; its end is {self.process.poll()}")

    def all(self):
        return [node for node in descendants(self.root()) if is_shown(node)]

    def find(self, role, name):
        return eventually(
            lambda: next((node for node in self.all()
                          if node.get_role_name() == role and node.get_name() == name), None),
            lambda: f"{role} “{name}”; there are " + self.told())

    def hears(self, words):
        """Waits until something on the screen says these words."""
        eventually(lambda: any(words in node.get_name() for node in self.all()),
                   lambda: f"the words “{words}”; there are " + self.told())

    def told(self):
        """All that is on the screen."""
        return ", ".join(sorted({f"{node.get_role_name()} “{node.get_name()}”" for node in self.all()}))

    def write(self, role, name, text):
        field = self.find(role, name)
        assert Atspi.EditableText.set_text_contents(field, text), name

    def choose_page(self, name):
        assert Atspi.Action.do_action(self.find("list item", name), 0), name
        self.find("label", name)

    def press(self, name):
        button = self.find("push button", name)
        eventually(lambda: has(button, Atspi.StateType.ENABLED), lambda: f"“{name}” to press")
        assert Atspi.Action.do_action(button, 0), name


def free_port():
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


def end(process):
    process.terminate()
    process.wait(PATIENCE)


def main(app, helper, port, password):
    started = time.monotonic()
    process = subprocess.Popen([app])
    try:
        window = Window(process)
        eventually(window.root, lambda: "the window")
        set_up(window, port, password)
        connect_cursor(window)
        try_it(window)
        use_endpoint(window)
        look_at_the_rest(window)
        assert subprocess.run([app], timeout=PATIENCE, check=False).returncode == 0, "a second start ends"
        assert process.poll() is None, "the first window stays"
    finally:
        end(process)
    check_what_was_saved(helper, port, password)
    check_cursor(helper)
    print(f"Through all pages: {time.monotonic() - started:.1f} s")


def set_up(window, port, password):
    window.write("text", "E-mail address", ADDRESS)
    window.write("text", "Mail server", "localhost")
    window.write("text", "Port", port)
    window.write("password text", "App password", "wrong")
    window.press("Test connection")
    window.hears("Sign in: failed")
    window.hears("The server does not accept")  # a button that is pressed before the end of the test does nothing
    window.write("password text", "App password", password)
    window.press("Test connection")
    window.hears("Inbox: done")
    window.hears("The connection works.")
    window.press("Save")
    window.hears("saved")


def connect_cursor(window):
    CURSOR.parent.mkdir(parents=True)
    CURSOR.write_bytes(OTHER_SERVER)
    window.choose_page("Assistants")
    window.press("Cursor: Connect")
    assert CURSOR.read_bytes() == OTHER_SERVER, "nothing is written before it was shown"
    window.press("Write the change")
    window.hears("Connected")
    connected = CURSOR.read_bytes()
    window.press("Cursor: Undo")
    eventually(lambda: CURSOR.read_bytes() == OTHER_SERVER, lambda: "the file as it was")
    window.press("Cursor: Connect")
    window.press("Write the change")
    eventually(lambda: CURSOR.read_bytes() == connected, lambda: "the entry again")


def try_it(window):
    window.choose_page("Try it")
    window.press("Search")
    window.hears("An assistant sees exactly this.")
    found = window.find("list", "Messages")
    assert found.get_child_count() > 5, found.get_child_count()


def use_endpoint(window):
    port = free_port()
    window.choose_page("Local endpoint")
    assert Atspi.Value.set_current_value(window.find("spin button", "Port"), port)
    window.press("Start")
    window.find("push button", "Stop")
    refused = subprocess.run(["curl", "-s", "-o", "/dev/null", "-w", "%{http_code}", "-d", "{}",
                              f"http://127.0.0.1:{port}/mcp"], capture_output=True, text=True,
                             timeout=PATIENCE, check=True).stdout
    assert refused == "401", refused
    window.press("Stop")
    window.find("push button", "Start")


def look_at_the_rest(window):
    window.choose_page("Safety settings")
    window.choose_page("Activity")
    window.hears("16 messages, 5 withheld")
    window.choose_page("About")


def check_cursor(helper):
    """The official client with what the app wrote."""
    written = json.loads(CURSOR.read_text(encoding="utf-8"))["mcpServers"]
    assert written["other"] == {"command": "other"}, written
    assert written["tarnwell"]["command"] == helper, written
    client = pathlib.Path(__file__).with_name("configured-client.mjs")
    told = subprocess.run(["node", str(client), str(CURSOR)], capture_output=True, text=True, timeout=PATIENCE,
                          check=True).stdout
    assert told.startswith("9 tools, "), told


def check_what_was_saved(helper, port, password):
    file = pathlib.Path(os.environ["HOME"], ".local/share/app.tarnwell.Tarnwell/config.json")
    settings = json.loads(file.read_text(encoding="utf-8"))
    assert settings["email"] == ADDRESS and settings["imapHost"] == "localhost", settings
    assert settings["imapPort"] == int(port) and settings["strictWithholding"] is True, settings
    assert settings["safety"]["readOnly"] is True, settings
    assert password not in file.read_text(encoding="utf-8")
    stored = subprocess.run(["secret-tool", "lookup", "service", "app.tarnwell.Tarnwell", "account", ADDRESS],
                            capture_output=True, text=True, timeout=PATIENCE, check=True).stdout
    assert stored == password, "the keyring has the password"
    subprocess.run([helper, "test-connection"], timeout=PATIENCE, check=True)


main(*sys.argv[1:])
