"""The real orvane on a private X server with a local server of its own: a document announcing a
newer version brings up the update alert (a picture of it lands in the screenshots folder), and a
document whose Launch/Run is false shows the stop alert, after which the program ends by itself."""

import http.server
import os
import signal
import subprocess
import sys
import tempfile
import threading
import time

# A private X server and session bus for the run (tests/support/xsession.sh).
X_SESSION = os.path.normpath(os.path.join(
    os.path.dirname(os.path.abspath(__file__)), "../..", "support", "xsession.sh"))

WINDOW_SECONDS = 30

UPDATE = b"""<?xml version="1.0" encoding="UTF-8"?>
<Orvane status="OK">
  <Update>
    <Version>999.0</Version>
    <Title>Orvane 999.0 is available</Title>
    <Message>This version follows your player more closely and fixes several problems. It is free for you.</Message>
    <URL>http://127.0.0.1:{port}/download</URL>
  </Update>
  <Launch><Run>true</Run></Launch>
</Orvane>"""

STOP = b"""<?xml version="1.0" encoding="UTF-8"?>
<Orvane status="OK">
  <Launch>
    <Run>false</Run>
    <Title>This version of Orvane has been retired</Title>
    <Message>Please install the current version from the website.</Message>
    <URL>http://127.0.0.1:{port}/download</URL>
  </Launch>
</Orvane>"""


class Server(http.server.ThreadingHTTPServer):
    def __init__(self):
        self.document = b""
        self.paths = []
        server = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                server.paths.append(self.path)
                body = server.document if self.path.startswith("/3/request.php") else b"download page"
                self.send_response(200)
                self.send_header("Content-Type", "text/xml; charset=utf-8")
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *arguments):
                pass

        super().__init__(("127.0.0.1", 0), Handler)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def serve(self, template):
        self.document = template.replace(b"{port}", str(self.server_address[1]).encode())


def current_system():
    fields = {}
    with open("/etc/os-release") as file:
        for line in file:
            key, _, value = line.strip().partition("=")
            fields[key] = value.strip('"')
    return f"{fields.get('ID', 'unknown')} {fields.get('VERSION_ID', 'unknown')}"


def start(orvane, server, home):
    runtime = os.path.join(home, "run")
    os.makedirs(runtime, mode=0o700)
    env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=os.path.join(home, "config"),
               XDG_DATA_HOME=os.path.join(home, "data"), XDG_CACHE_HOME=os.path.join(home, "cache"),
               XDG_RUNTIME_DIR=runtime, ORVANE_SUPPORTED_SYSTEMS=current_system(),
               ORVANE_SERVER_BASE_URL=f"http://127.0.0.1:{server.server_address[1]}",
               # Addresses the alerts open go nowhere.
               BROWSER="/bin/true")
    env.pop("QT_QPA_PLATFORM", None)
    return subprocess.Popen([orvane], env=env)


def windows_named(name):
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{name}$"],
                          capture_output=True, text=True).stdout.split()


def wait_for_window(name):
    deadline = time.monotonic() + WINDOW_SECONDS
    while time.monotonic() < deadline:
        found = windows_named(name)
        if found:
            return found[0]
        time.sleep(0.2)
    raise AssertionError(f"no window named {name} appeared")


def wait_until_gone(window):
    deadline = time.monotonic() + WINDOW_SECONDS
    while window in windows_named("Orvane"):
        if time.monotonic() > deadline:
            raise AssertionError("the alert stayed open after Return")
        time.sleep(0.2)


def grab(folder, name):
    """A picture of the screen once the new window has painted: a busy machine may show its first
    frames blank, so the grab is repeated until the picture holds more than a bare background."""
    path = os.path.join(folder, name)
    deadline = time.monotonic() + WINDOW_SECONDS
    while True:
        subprocess.run(["ffmpeg", "-loglevel", "error", "-y", "-f", "x11grab", "-video_size",
                        "1280x800", "-i", os.environ["DISPLAY"], "-frames:v", "1", path], check=True)
        if os.path.getsize(path) >= 10000:
            return path
        if time.monotonic() > deadline:
            raise AssertionError(f"{path} stayed empty: the window never painted")


def press_return(window):
    subprocess.run(["xdotool", "windowfocus", "--sync", window], check=True)
    subprocess.run(["xdotool", "key", "Return"], check=True)


def update_alert(orvane, server, folder):
    server.serve(UPDATE)
    with tempfile.TemporaryDirectory() as home:
        program = start(orvane, server, home)
        try:
            alert = wait_for_window("Orvane")
            shot = grab(folder, "server-update-alert.png")
            print(f"screenshot: {shot}")
            press_return(alert)
            wait_until_gone(alert)
            if program.poll() is not None:
                raise AssertionError("orvane ended after the update alert")
            if not any(path.startswith("/3/request.php?") for path in server.paths):
                raise AssertionError(f"the server was not asked: {server.paths}")
            print("ok: update alert")
        finally:
            program.send_signal(signal.SIGTERM)
            try:
                program.wait(timeout=15)
            except subprocess.TimeoutExpired:
                program.kill()


def stop_alert(orvane, server, folder):
    server.serve(STOP)
    with tempfile.TemporaryDirectory() as home:
        program = start(orvane, server, home)
        try:
            alert = wait_for_window("Orvane")
            print(f"screenshot: {grab(folder, 'server-stop-alert.png')}")
            press_return(alert)
            status = program.wait(timeout=WINDOW_SECONDS)
            if status != 0:
                raise AssertionError(f"orvane ended with status {status} after the stop alert")
            print("ok: stop alert ends the program")
        finally:
            if program.poll() is None:
                program.kill()


def main():
    if sys.argv[1] == "--inside":
        orvane, folder = sys.argv[2:4]
        server = Server()
        update_alert(orvane, server, folder)
        stop_alert(orvane, server, folder)
        return
    orvane, folder = sys.argv[1:3]
    os.makedirs(folder, exist_ok=True)
    env = dict(os.environ)
    env.pop("DBUS_SESSION_BUS_ADDRESS", None)
    subprocess.run([X_SESSION,
                    sys.executable, os.path.abspath(__file__), "--inside", orvane, folder],
                   env=env, check=True, timeout=240)


if __name__ == "__main__":
    main()
