"""The live hooks of the real program, run inside tests/support/xsession.sh (a private X server
and session bus) with mpv as the followed player: the current track action's files follow what
mpv plays and the user's script runs once per player event; a hotkey from the key bindings file,
pressed with xdotool, skips mpv to the next track. Usage: live_hooks_desktop.py ORVANE VERSION"""

import json
import os
import plistlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

# The desktop start test's reading of the system (it takes the same two arguments).
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "application"))
from orvane_desktop_test import Run  # noqa: E402

ORVANE, VERSION = sys.argv[1], sys.argv[2]
DEADLINE = 60  # seconds; a guard only, every wait ends on its condition
MPV = "org.mpris.MediaPlayer2.mpv"


WORKSPACE = None


def describe_workspace():
    return {name: open(os.path.join(WORKSPACE, name), errors="replace").read() for name in os.listdir(WORKSPACE)}


def wait_for(what, condition):
    end = time.monotonic() + DEADLINE
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise AssertionError(f"timed out waiting for {what}; the workspace:\n{describe_workspace()}")


def check(condition, message):
    if not condition:
        raise AssertionError(message)


def key_code(keysym):
    """The X server's key code for a symbol at the base level, from its keymap."""
    keymap = subprocess.run(["xkbcomp", "-xkb", os.environ["DISPLAY"], "-"], capture_output=True, text=True,
                            check=True).stdout
    codes = dict(re.findall(r"<(\w+)>\s*=\s*(\d+);", keymap))
    name = re.search(r"key\s+<(\w+)>\s*\{[^}]*\[\s*" + keysym + r"\s*[,\]]", keymap).group(1)
    return int(codes[name])


def mpris(method):
    subprocess.run(["dbus-send", "--session", "--type=method_call", f"--dest={MPV}", "/org/mpris/MediaPlayer2",
                    f"org.mpris.MediaPlayer2.Player.{method}"], check=True)


def on_bus(name):
    names = subprocess.run(["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
                            "/org/freedesktop/DBus", "org.freedesktop.DBus.ListNames"],
                           capture_output=True, text=True).stdout
    return f'"{name}"' in names


def read_json(path):
    try:
        with open(path) as file:
            return json.load(file)
    except (OSError, ValueError):
        return None  # between a run's clean-up and its write


def main():
    home = tempfile.mkdtemp()
    processes = []
    try:
        runtime = os.path.join(home, "run")
        os.makedirs(runtime, mode=0o700)
        config = os.path.join(home, "config")
        env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=config, XDG_DATA_HOME=os.path.join(home, "data"),
                   XDG_CACHE_HOME=os.path.join(home, "cache"), XDG_RUNTIME_DIR=runtime,
                   ORVANE_PLAYER_BUS_NAME=MPV)
        env.pop("QT_QPA_PLATFORM", None)
        # This system counts as supported, so that no alert comes up.
        env["ORVANE_SUPPORTED_SYSTEMS"] = Run.current_system()

        music = os.path.join(home, "music")
        os.makedirs(music)
        titles = ["First", "Second", "Third"]
        files = []
        for number, title in enumerate(titles, 1):
            path = os.path.join(music, f"{number} {title}.mp3")
            subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", f"sine=frequency={300 + 100 * number}:duration=120",
                            "-metadata", f"title={title}", "-metadata", "artist=Tester", path], check=True)
            files.append(path)

        global WORKSPACE
        workspace = WORKSPACE = os.path.join(home, "workspace")
        os.makedirs(workspace)
        events = os.path.join(workspace, "events.txt")
        with open(os.path.join(workspace, "hook.sh"), "w") as script:
            script.write('here=$(dirname "$0")\n'
                         'state=$(grep -o \'"state": "[a-z ]*"\' "$here/player.json" 2>/dev/null || echo none)\n'
                         'echo "$state" >> "$here/events.txt"\n')
        preferences = os.path.join(config, "Orvane", VERSION, "Preferences")
        os.makedirs(preferences)
        with open(os.path.join(preferences, "General.plist"), "wb") as file:
            plistlib.dump({"LaunchMode": 1, "LaunchYourTunes": False, "LaunchMeOnLogin": False, "UseLastFM": False,
                           "UseRatingNotifier": False, "UseHotkeyListener": True, "LaunchLyricsWindow": False,
                           "LaunchFunctionPool": False}, file)
        with open(os.path.join(preferences, "Current Track Action.plist"), "wb") as file:
            plistlib.dump({"workspace directory path": "~/workspace",
                           "write info to json file": {"track": "track", "player": "player"},
                           "run sh script": "hook"}, file)
        with open(os.path.join(preferences, "Key Bindings.plist"), "wb") as file:
            plistlib.dump({"YourTunesNextTrack": {"KeyCode": key_code("n"), "ModifierFlags": 0x020000 | 0x040000}}, file)

        mpv = subprocess.Popen(["mpv", "--no-config", "--ao=null", "--vo=null", "--idle=yes", "--keep-open=yes",
                                "--pause=yes", "--script=/usr/lib/mpv-mpris/mpris.so"] + files,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=env)
        processes.append(mpv)
        wait_for("mpv on the bus", lambda: on_bus(MPV))
        orvane = subprocess.Popen([ORVANE], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        processes.append(orvane)
        for line in orvane.stderr:
            if "launching in" in line:
                break
        check("default" in line, f"orvane did not launch in default mode: {line}")
        threading.Thread(target=lambda: [None for _ in orvane.stderr], daemon=True).start()  # never a full pipe

        def lines():
            try:
                with open(events) as file:
                    return file.read().splitlines()
            except OSError:
                return []

        def track_named(name):
            track = read_json(os.path.join(workspace, "track.json"))
            return track if track and track.get("name") == name else None

        def state_is(state, name):
            def reached():
                player = read_json(os.path.join(workspace, "player.json"))
                track = read_json(os.path.join(workspace, "track.json"))
                return (player and track and player.get("state") == state and track.get("name") == name
                        and lines() and lines()[-1] == f'"state": "{state}"' and (player, track))
            return wait_for(f"{state} {name}", reached)

        # The launch runs the action once: mpv paused on the first file.
        state_is("paused", "First")
        mpris("Play")
        player, track = state_is("playing", "First")
        check(track["location"] == files[0], f"location {track['location']!r}")
        check(track["artist"] == "Tester", f"artist {track['artist']!r}")
        check(isinstance(track["duration"], (int, float)) and 119 <= track["duration"] <= 121,
              f"duration {track['duration']!r}")
        check(isinstance(player["sound volume"], int) and isinstance(player["mute"], bool), f"player {player}")
        mpris("Pause")
        state_is("paused", "First")
        mpris("Next")
        wait_for("the second track", lambda: track_named("Second"))

        # The hotkey skips mpv on.
        before = len(lines())
        subprocess.run(["xdotool", "key", "ctrl+shift+n"], check=True)
        track = wait_for("the hotkey's skip", lambda: track_named("Third"))
        check(track["location"] == files[2], f"location {track['location']!r}")
        wait_for("the script's run after the skip", lambda: len(lines()) > before)

        # At quit the files go; the script and what it wrote stay.
        orvane.send_signal(signal.SIGTERM)
        check(orvane.wait(timeout=DEADLINE) == 0, "orvane did not quit cleanly")
        left = sorted(os.listdir(workspace))
        check(left == ["events.txt", "hook.sh"], f"left in the workspace: {left}")
        print(f"ok: {len(lines())} script runs")
    finally:
        for process in processes:
            if process.poll() is None:
                process.kill()
                process.wait()
        shutil.rmtree(home, ignore_errors=True)


if __name__ == "__main__":
    main()
