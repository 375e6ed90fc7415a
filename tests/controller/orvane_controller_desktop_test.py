"""The status strip of the built orvane against mpv, on the private X server and session bus it
is run in (tests/support/xsession.sh): the strip's buttons, clicked with xdotool, change mpv's
track and play state, and a rating set with its stars reaches the library track, read back with
orvane-cli. With ORVANE_SHOTS_DIR set, pictures of the strip and its panel are saved there.

usage: xsession.sh python3 orvane_controller_desktop_test.py ORVANE ORVANE_CLI VERSION [SHOTS_TOOL]"""

import json
import os
import plistlib
import queue
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time

ORVANE, ORVANE_CLI, VERSION = sys.argv[1], sys.argv[2], sys.argv[3]
SHOTS_TOOL = sys.argv[4] if len(sys.argv) > 4 else None
DEADLINE = 30  # seconds; only a guard against a hang, every wait ends on what it waits for

# The strip with navigation, stars and love (widths 70 + 68 + 19), placed by the program 24
# points from the right edge of a 1280 wide screen, at its top.
STRIP_WIDTH, STRIP_HEIGHT = 157, 22
NEXT_X, PLAY_X, MENU_X = 43, 26, 61
STAR_X = [73 + 3 + 12 * n + 6 for n in range(5)]


def check(condition, message):
    if not condition:
        raise AssertionError(message)


def wait_until(what, condition):
    deadline = time.monotonic() + DEADLINE
    while time.monotonic() < deadline:
        value = condition()
        if value:
            return value
        time.sleep(0.05)  # polling a condition; the deadline is only the guard
    raise AssertionError(f"timed out waiting for {what}")


def current_system():
    fields = {}
    try:
        with open("/etc/os-release") as file:
            for line in file:
                key, _, value = line.strip().partition("=")
                fields[key] = value.strip('"')
    except OSError:
        pass
    return f"{fields.get('ID', 'unknown')} {fields.get('VERSION_ID', 'unknown')}"


class Mpv:
    def __init__(self, home, files, env):
        self.socket_path = os.path.join(home, "mpv.sock")
        self.process = subprocess.Popen(
            ["mpv", "--no-config", "--ao=null", "--vo=null", "--idle=yes", "--keep-open=yes",
             "--script=/usr/lib/mpv-mpris/mpris.so", f"--input-ipc-server={self.socket_path}"] + files,
            env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.connection = None
        wait_until("mpv's control socket", self.connect)
        self.buffer = b""

    def connect(self):
        try:
            self.connection = socket.socket(socket.AF_UNIX)
            self.connection.connect(self.socket_path)
            self.connection.settimeout(DEADLINE)
            return True
        except OSError:
            return False

    def get(self, name):
        self.connection.sendall(json.dumps({"command": ["get_property", name], "request_id": 1}).encode() + b"\n")
        while True:
            while b"\n" not in self.buffer:
                self.buffer += self.connection.recv(65536)
            line, self.buffer = self.buffer.split(b"\n", 1)
            reply = json.loads(line)
            if reply.get("request_id") == 1:
                return reply.get("data")

    def stop(self):
        self.process.terminate()
        self.process.wait(timeout=DEADLINE)


def windows(name):
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{name}$"],
                           capture_output=True, text=True).stdout.split()
    for window in found:
        shell = subprocess.run(["xdotool", "getwindowgeometry", "--shell", window],
                               capture_output=True, text=True).stdout
        values = dict(line.split("=", 1) for line in shell.split() if "=" in line)
        geometry = tuple(int(values.get(key, -1)) for key in ("X", "Y", "WIDTH", "HEIGHT"))
        yield window, geometry


def find_strip():
    for _, (x, y, width, height) in windows("Orvane Controller"):
        if (width, height) == (STRIP_WIDTH, STRIP_HEIGHT) and y == 0:
            return x, y
    return None


def find_panel():
    for _, (x, y, width, height) in windows("Orvane Navigation"):
        if height > 60:
            return x, y, width, height
    return None


def click(x, y):
    # The X server takes the move and the click in order, so the click lands where it moved to.
    subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", "1"], check=True)


def library_rating(env, location):
    listed = subprocess.run([ORVANE_CLI, "--offline", "library", "list", "--json"], env=env,
                            capture_output=True, text=True, check=True).stdout
    for line in listed.splitlines():
        track = json.loads(line)
        if track.get("location") == location:
            return track.get("rating")
    return None


def shot(env, name, *area):
    folder = os.environ.get("ORVANE_SHOTS_DIR")
    if not folder or not SHOTS_TOOL:
        return
    os.makedirs(folder, exist_ok=True)
    subprocess.run([SHOTS_TOOL, "screen", os.path.join(folder, name)] + [str(value) for value in area],
                   env=env, check=True)


def main():
    home = tempfile.TemporaryDirectory()
    root = home.name
    runtime = os.path.join(root, "run")
    os.makedirs(runtime, mode=0o700)
    env = dict(os.environ, HOME=root, XDG_CONFIG_HOME=os.path.join(root, "config"),
               XDG_DATA_HOME=os.path.join(root, "data"), XDG_CACHE_HOME=os.path.join(root, "cache"),
               XDG_RUNTIME_DIR=runtime, ORVANE_SUPPORTED_SYSTEMS=current_system())
    env.pop("QT_QPA_PLATFORM", None)
    music = os.path.join(root, "music")
    os.makedirs(music)
    files = []
    for number, tone in ((1, 440), (2, 660)):
        path = os.path.join(music, f"tone{number}.mp3")
        subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", f"sine=frequency={tone}:duration=120",
                        "-metadata", f"title=Tone {tone}", "-metadata", "artist=Orvane Tests", path], check=True)
        files.append(path)
    added = subprocess.run([ORVANE_CLI, "--offline", "library", "add", music], env=env,
                           capture_output=True, text=True)
    check(added.returncode == 0 and added.stdout.startswith("2 added"), f"library add: {added.stdout}{added.stderr}")

    preferences = os.path.join(env["XDG_CONFIG_HOME"], "Orvane", VERSION, "Preferences")
    os.makedirs(preferences)
    with open(os.path.join(preferences, "General.plist"), "wb") as file:
        plistlib.dump({"LaunchMode": 1, "LaunchYourTunes": False, "LaunchMeOnLogin": False,
                       "ShowTrackInfoWindowWhenSkippingTrack": True, "UseLastFM": False,
                       "UseRatingNotifier": False, "UseHotkeyListener": False, "UseAutoLove": False,
                       "UseAutoLoveValue": 70, "LaunchLyricsWindow": False, "LaunchFunctionPool": False}, file)
    with open(os.path.join(preferences, "Status Item.plist"), "wb") as file:
        plistlib.dump({"DesignYourTunesController": True, "DesignRating": True, "DesignLove": True,
                       "ShowTrackInfoWindowOnControllerMouseover": False}, file)

    mpv = Mpv(root, files, env)
    orvane = None
    errors = queue.Queue()
    try:
        wait_until("the first file to load", lambda: (mpv.get("duration") or 0) > 0)
        orvane = subprocess.Popen([ORVANE], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        threading.Thread(target=lambda: [errors.put(line) for line in orvane.stderr], daemon=True).start()
        x, y = wait_until("the status strip", find_strip)
        middle = y + STRIP_HEIGHT // 2
        print(f"strip at {x},{y}")

        click(x + NEXT_X, middle)
        wait_until("mpv on the second track", lambda: mpv.get("playlist-pos") == 1)
        print("ok: next moves mpv to the second track")

        # Held for a second, next seeks forward instead, and the track stays.
        start = mpv.get("time-pos") or 0
        subprocess.run(["xdotool", "mousemove", str(x + NEXT_X), str(middle), "mousedown", "1"], check=True)
        held = time.monotonic()
        wait_until("mpv seeking forward", lambda: (mpv.get("time-pos") or 0) >= start + 9)
        # A seek jumps; playing on would take as long as it advanced.
        check((mpv.get("time-pos") or 0) - start > time.monotonic() - held + 5, "no seek, the track only played on")
        subprocess.run(["xdotool", "mouseup", "1"], check=True)
        check(mpv.get("playlist-pos") == 1, "a hold on next changed the track")
        print("ok: holding next seeks forward in the same track")

        click(x + PLAY_X, middle)
        wait_until("mpv paused", lambda: mpv.get("pause") is True)
        print("ok: play pauses mpv")

        click(x + STAR_X[2], middle)
        wait_until("the rating in the library", lambda: library_rating(env, files[1]) == 60)
        check(library_rating(env, files[0]) in (0, None), "the first track was rated too")
        print("ok: three stars rate the playing library track 60")
        # The resume that follows every click never undid the pause.
        check(mpv.get("pause") is True, "mpv plays again after a pause from the strip")

        click(x + PLAY_X, middle)
        wait_until("mpv playing", lambda: mpv.get("pause") is False)
        print("ok: play resumes mpv")
        shot(env, "program-strip-playing-rated.png", x - 40, 0, STRIP_WIDTH + 64, 40)

        click(x + MENU_X, middle)
        panel = wait_until("the navigation panel", find_panel)
        check(panel[1] == STRIP_HEIGHT, f"the panel does not hang from the strip: {panel}")
        print("ok: the menu button drops the panel")
        shot(env, "program-navigation-panel.png", panel[0] - 20, 0, panel[2] + 60, panel[3] + 40)

        orvane.send_signal(signal.SIGTERM)
        check(orvane.wait(timeout=DEADLINE) == 0, "orvane did not quit cleanly")
    except BaseException:
        if orvane and orvane.poll() is None:
            orvane.kill()
            orvane.wait()
        if orvane:
            sys.stderr.write("orvane said:\n" + "".join(list(errors.queue)))
        raise
    finally:
        if orvane and orvane.poll() is None:
            orvane.kill()
        mpv.stop()
        home.cleanup()


if __name__ == "__main__":
    main()
