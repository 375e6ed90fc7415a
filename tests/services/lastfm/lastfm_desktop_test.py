"""End to end: orvane in default mode on a private X server and session bus follows mpv, after
orvane-cli lastfm connect authorised it against a local Last.fm stand-in. mpv plays two 40 s
tracks; the stand-in must see now playing for both and one scrobble, of the first, stamped near
its start. Pausing the second before its share is reached sends no scrobble."""

import hashlib
import http.server
import os
import platform
import plistlib
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import urllib.parse

HERE = os.path.dirname(os.path.abspath(__file__))
X_SESSION = os.path.normpath(os.path.join(HERE, "..", "..", "support", "xsession.sh"))
API_KEY, SECRET = "0123456789abcdef0123456789abcdef", "fedcba9876543210fedcba9876543210"
TOKEN, SESSION_KEY = "t" * 32, "s" * 32
GUARD = 120  # seconds; only against a hang
TRACK_SECONDS = 40


class Calls:
    """The calls the stand-in received: (parameters, signature ok), with waiting on them."""

    def __init__(self):
        self.lock, self.list = threading.Condition(), []

    def add(self, call):
        with self.lock:
            self.list.append(call)
            self.lock.notify_all()

    def wait_for(self, method, track):
        with self.lock:
            if not self.lock.wait_for(lambda: track in [p.get("track") for p in self.of(method)], GUARD):
                raise AssertionError(f"no {method} of {track}; calls: {self.describe()}")

    def of(self, method):
        return [parameters for parameters, _ in self.list if parameters.get("method") == method]

    def describe(self):
        return [(p.get("method"), p.get("track", p.get("track[0]"))) for p, _ in self.list]


def serve(calls):
    class Handler(http.server.BaseHTTPRequestHandler):
        def do_POST(self):
            body = self.rfile.read(int(self.headers.get("Content-Length", 0))).decode()
            parameters = dict(urllib.parse.parse_qsl(body, keep_blank_values=True))
            signed = "".join(k + v for k, v in sorted(parameters.items()) if k != "api_sig") + SECRET
            ok = hashlib.md5(signed.encode()).hexdigest() == parameters.get("api_sig")
            calls.add((parameters, ok))
            method = parameters.get("method")
            if not ok:
                reply = '<lfm status="failed"><error code="13">Invalid method signature supplied</error></lfm>'
            elif method == "auth.getToken":
                reply = f'<lfm status="ok"><token>{TOKEN}</token></lfm>'
            elif method == "auth.getSession":
                reply = f'<lfm status="ok"><session><name>listener</name><key>{SESSION_KEY}</key></session></lfm>'
            else:
                reply = '<lfm status="ok"></lfm>'
            data = reply.encode()
            self.send_response(200)
            self.send_header("Content-Type", "text/xml; charset=utf-8")
            self.send_header("Content-Length", str(len(data)))
            self.end_headers()
            self.wfile.write(data)

        def log_message(self, *arguments):
            pass

    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server


def check(condition, message):
    if not condition:
        raise AssertionError(message)


def bus_call(destination, path, method, *arguments):
    return subprocess.run(["dbus-send", "--session", "--print-reply", f"--dest={destination}", path, method]
                          + list(arguments), capture_output=True, text=True).stdout


def wait_until(condition, what):
    deadline = time.monotonic() + GUARD
    while not condition():
        if time.monotonic() > deadline:
            raise AssertionError(f"timed out waiting for {what}")
        time.sleep(0.1)


def inner(orvane, cli, version):
    root = tempfile.mkdtemp()
    runtime = os.path.join(root, "run")
    os.makedirs(runtime, mode=0o700)
    calls = Calls()
    server = serve(calls)
    base = f"http://127.0.0.1:{server.server_address[1]}"
    env = dict(os.environ, HOME=root, XDG_CONFIG_HOME=os.path.join(root, "config"),
               XDG_DATA_HOME=os.path.join(root, "data"), XDG_CACHE_HOME=os.path.join(root, "cache"),
               XDG_RUNTIME_DIR=runtime, ORVANE_LASTFM_BASE_URL=base, ORVANE_LASTFM_AUTH_URL=base + "/api/auth/",
               ORVANE_LASTFM_API_KEY=API_KEY, ORVANE_LASTFM_API_SECRET=SECRET,
               ORVANE_SUPPORTED_SYSTEMS=current_system())
    env.pop("QT_QPA_PLATFORM", None)
    started = []
    try:
        keyring = subprocess.Popen(["gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets"],
                                   env=env, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)
        started.append(keyring)
        keyring.stdin.write(b"keyring-password")
        keyring.stdin.close()
        wait_until(lambda: "true" in bus_call("org.freedesktop.DBus", "/", "org.freedesktop.DBus.NameHasOwner",
                                              "string:org.freedesktop.secrets"), "the keyring on the bus")

        connect = subprocess.run([cli, "--offline", "lastfm", "connect", "--user", "listener"], env=env,
                                 input="\n", capture_output=True, text=True, timeout=GUARD)
        check(connect.returncode == 0, f"connect failed: {connect.stderr}")
        check(connect.stdout.strip() == f"{base}/api/auth/?api_key={API_KEY}&token={TOKEN}",
              f"consent address: {connect.stdout!r}")

        general = os.path.join(env["XDG_CONFIG_HOME"], "Orvane", version, "Preferences", "General.plist")
        os.makedirs(os.path.dirname(general), exist_ok=True)
        with open(general, "wb") as file:
            plistlib.dump({"LaunchMode": 1, "LaunchYourTunes": False, "LaunchMeOnLogin": False, "UseLastFM": True},
                          file)

        tracks = []
        for number, frequency in ((1, 440), (2, 660)):
            path = os.path.join(root, f"track{number}.mp3")
            subprocess.run(["ffmpeg", "-loglevel", "error", "-y", "-f", "lavfi", "-i",
                            f"sine=f={frequency}:d={TRACK_SECONDS}", "-metadata", f"title=Track {number}",
                            "-metadata", "artist=Test Artist", "-metadata", "album=Test Album", path], check=True)
            tracks.append(path)

        log = open(os.path.join(root, "orvane.log"), "w+")
        program = subprocess.Popen([orvane], env=env, stderr=log, stdout=log)
        started.append(program)
        wait_until(lambda: "launching in" in open(log.name).read(), "orvane's launch")

        player = subprocess.Popen(["mpv", "--no-config", "--ao=null", "--vo=null", "--idle=yes", "--keep-open=yes",
                                   "--script=/usr/lib/mpv-mpris/mpris.so"] + tracks, env=env,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        started.append(player)
        # The track has begun when mpv knows its length (it says "Playing" before the file is loaded).
        mpv = ("org.mpris.MediaPlayer2.mpv", "/org/mpris/MediaPlayer2")
        wait_until(lambda: "mpris:length" in bus_call(*mpv, "org.freedesktop.DBus.Properties.Get",
                                                      "string:org.mpris.MediaPlayer2.Player", "string:Metadata"),
                   "mpv to load the first track")
        began = time.time()

        calls.wait_for("track.updateNowPlaying", "Track 1")
        calls.wait_for("track.updateNowPlaying", "Track 2")
        # Paused long before its share: the second track must not be scrobbled, then or at the quit.
        bus_call(*mpv, "org.mpris.MediaPlayer2.Player.Pause")
        wait_until(lambda: "Paused" in bus_call(*mpv, "org.freedesktop.DBus.Properties.Get",
                                                "string:org.mpris.MediaPlayer2.Player", "string:PlaybackStatus"),
                   "mpv to pause")
        program.send_signal(signal.SIGTERM)
        program.wait(timeout=GUARD)

        check(all(ok for _, ok in calls.list), f"a call was not signed right: {calls.describe()}")
        scrobbles = calls.of("track.scrobble")
        check(len(scrobbles) == 1, f"scrobbles: {scrobbles}")
        scrobble = scrobbles[0]
        check((scrobble.get("track[0]"), scrobble.get("artist[0]"), scrobble.get("album[0]"))
              == ("Track 1", "Test Artist", "Test Album"), f"scrobble: {scrobble}")
        # Measuring starts with the snapshot, three seconds after the track began.
        check(-2 <= int(scrobble["timestamp[0]"]) - began <= 10,
              f"timestamp {scrobble['timestamp[0]']}, began {began:.0f}")
        check(scrobble.get("sk") == SESSION_KEY, "the stored session key signs the calls")
        print("ok: two tracks, one scrobble, none after the pause; calls:", calls.describe())
    except AssertionError:
        if os.path.exists(os.path.join(root, "orvane.log")):
            sys.stderr.write(open(os.path.join(root, "orvane.log")).read())
        raise
    finally:
        for process in reversed(started):
            if process.poll() is None:
                process.terminate()
                try:
                    process.wait(timeout=10)
                except subprocess.TimeoutExpired:
                    process.kill()
        server.shutdown()
        shutil.rmtree(root, ignore_errors=True)


def current_system():
    # As QSysInfo names it, so that no "unsupported system" alert comes up.
    release = platform.freedesktop_os_release()
    return f"{release.get('ID', 'unknown')} {release.get('VERSION_ID', 'unknown')}"


if __name__ == "__main__":
    if sys.argv[1] == "--inner":
        inner(*sys.argv[2:5])
    else:
        sys.exit(subprocess.call([X_SESSION, sys.executable, os.path.abspath(__file__), "--inner"] + sys.argv[1:4]))
