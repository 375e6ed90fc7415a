"""Starts the built orvane in organize mode on a private X server, session bus and home, and
takes screenshots of the organizer window: its start panel, a function's panel and its
preferences sheet. The pictures are for a person to look at; the run checks that the window
came up and that each picture shows more than an empty screen."""

import os
import plistlib
import signal
import subprocess
import sys
import tempfile
import time

WINDOW_SECONDS = 30


def inside(orvane, version, folder):
    """Runs on the private display and bus."""
    with tempfile.TemporaryDirectory() as home:
        runtime = os.path.join(home, "run")
        os.makedirs(runtime, mode=0o700)
        env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=os.path.join(home, "config"),
                   XDG_DATA_HOME=os.path.join(home, "data"), XDG_CACHE_HOME=os.path.join(home, "cache"),
                   XDG_RUNTIME_DIR=runtime, ORVANE_SUPPORTED_SYSTEMS=current_system())
        env.pop("QT_QPA_PLATFORM", None)
        general = os.path.join(env["XDG_CONFIG_HOME"], "Orvane", version, "Preferences", "General.plist")
        os.makedirs(os.path.dirname(general))
        with open(general, "wb") as file:
            plistlib.dump({"LaunchMode": 2, "LaunchYourTunes": False, "LaunchMeOnLogin": False,
                           "UseLastFM": False, "UseHotkeyListener": False}, file)
        program = subprocess.Popen([orvane], env=env)
        try:
            window = wait_for_window("Organizer")
            settle()
            shots = [grab(folder, "organizer-start.png")]
            xdotool("windowfocus", "--sync", window)
            xdotool("key", "--window", window, "Down")
            settle()
            shots.append(grab(folder, "organizer-function.png"))
            xdotool("key", "--window", window, "ctrl+comma")
            settle()
            shots.append(grab(folder, "organizer-preferences.png"))
            for shot in shots:
                if os.path.getsize(shot) < 20000:
                    raise AssertionError(f"{shot} looks empty")
                print(f"screenshot: {shot}")
        finally:
            program.send_signal(signal.SIGTERM)
            try:
                program.wait(timeout=15)
            except subprocess.TimeoutExpired:
                program.kill()


def current_system():
    fields = {}
    with open("/etc/os-release") as file:
        for line in file:
            key, _, value = line.strip().partition("=")
            fields[key] = value.strip('"')
    return f"{fields.get('ID', 'unknown')} {fields.get('VERSION_ID', 'unknown')}"


def xdotool(*arguments):
    return subprocess.run(["xdotool", *arguments], check=True, capture_output=True, text=True).stdout.strip()


def wait_for_window(name):
    deadline = time.monotonic() + WINDOW_SECONDS
    while time.monotonic() < deadline:
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{name}$"],
                               capture_output=True, text=True).stdout.split()
        if found:
            return found[0]
        time.sleep(0.2)
    raise AssertionError(f"no window named {name} appeared")


def settle():
    # Fades last a fifth of a second; a picture taken after half a second shows their end.
    time.sleep(0.6)


def grab(folder, name):
    path = os.path.join(folder, name)
    subprocess.run(["ffmpeg", "-loglevel", "error", "-y", "-f", "x11grab", "-video_size", "1280x800",
                    "-i", os.environ["DISPLAY"], "-frames:v", "1", path], check=True)
    return path


def main():
    if sys.argv[1] == "--inside":
        inside(*sys.argv[2:5])
        return
    orvane, version, folder = sys.argv[1:4]
    os.makedirs(folder, exist_ok=True)
    env = dict(os.environ)
    env.pop("DBUS_SESSION_BUS_ADDRESS", None)
    subprocess.run(["xvfb-run", "-a", "-s", "-screen 0 1280x800x24", "dbus-run-session", "--",
                    sys.executable, os.path.abspath(__file__), "--inside", orvane, version, folder],
                   env=env, check=True, timeout=120)


if __name__ == "__main__":
    main()
