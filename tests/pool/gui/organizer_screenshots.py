"""Starts the built orvane in organize mode on a private X server, session bus and home, and
takes screenshots of the organizer window: its start panel, a function's panel, its
preferences sheet, the search sets sheet of search and replace, and a run of search and replace
over a small library (imported with orvane-cli beforehand): the progress sheet while it runs and
the log sheet after it. The pictures are for a person to look at; the run checks that each
window came up and that each picture shows more than an empty screen."""

import os
import plistlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

# A private X server and session bus for the run (tests/support/xsession.sh).
X_SESSION = os.path.normpath(os.path.join(
    os.path.dirname(os.path.abspath(__file__)), "../..", "support", "xsession.sh"))

WINDOW_SECONDS = 30
LIBRARY_SIZE = 800
# Places in the organizer window (900 by 600, DejaVu fonts) that the pictures click.
NAVIGATOR_FIRST_ROW = (60, 66)
EDIT_SEARCH_SETS_BUTTON = (360, 552)
RUN_BUTTON = (843, 576)


def inside(orvane, cli, version, folder):
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
        search_sets = os.path.join(env["XDG_CONFIG_HOME"], "Orvane", version, "Organizer",
                                   "Search And Replace Sets.plist")
        os.makedirs(os.path.dirname(search_sets))
        with open(search_sets, "wb") as file:
            plistlib.dump([{"Search": "feat.", "Replace": "featuring", "Case": 1, "Mode": 1},
                           {"Search": "Rmx", "Replace": "Remix", "Case": 0, "Mode": 4},
                           {"Search": r"\s*\(Live\)$", "Replace": "", "Case": 1, "Mode": 9}], file)
        make_library(cli, os.path.join(home, "music"), env)
        program = subprocess.Popen([orvane], env=env)
        try:
            window = wait_for_window("Organizer")
            settle()
            shots = [grab(folder, "organizer-start.png")]
            xdotool("windowfocus", "--sync", window)
            xdotool("key", "--window", window, "Down")
            settle()
            shots.append(grab(folder, "organizer-function.png"))
            shots += search_and_replace_shots(window, folder)
            press(window, "ctrl+comma")
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


def make_library(cli, music, env):
    """LIBRARY_SIZE copies of one short MP3 whose names and artists search and replace changes."""
    os.makedirs(music)
    first = os.path.join(music, "0000.mp3")
    subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", "sine=frequency=440:duration=1",
                    "-ac", "1", "-b:a", "32k", first], check=True)
    from mutagen.easyid3 import EasyID3
    for number in range(LIBRARY_SIZE):
        path = os.path.join(music, f"{number:04}.mp3")
        if number:
            shutil.copyfile(first, path)
        tags = EasyID3()
        tags.update({"title": f"Song {number + 1} ft. Guest (Live)", "artist": "Band ft. Guest",
                     "album": "Rmx Collection"})
        tags.save(path)
    subprocess.run([cli, "library", "add", music], env=env, check=True, capture_output=True, timeout=120)


def search_and_replace_shots(window, folder):
    """Search and replace: its sets sheet, then a run on the whole library (Alt held at Run)."""
    click(window, *NAVIGATOR_FIRST_ROW)
    settle()
    shots = [grab(folder, "organizer-search-replace.png")]
    click(window, *EDIT_SEARCH_SETS_BUTTON)
    sheet = wait_for_window("Search Sets")
    settle()
    shots.append(grab(folder, "organizer-search-sets.png"))
    press(sheet, "Escape")
    settle()

    before = visible_windows()
    xdotool("keydown", "alt")
    click(window, *RUN_BUTTON)
    xdotool("keyup", "alt")
    confirmation = wait_for_new_window(before)
    settle()
    shots.append(grab(folder, "organizer-confirmation.png"))
    # A run over the library takes well under a second: film it and keep a frame from its middle.
    with tempfile.TemporaryDirectory() as frames:
        film = subprocess.Popen(["ffmpeg", "-loglevel", "error", "-f", "x11grab", "-framerate", "10",
                                 "-video_size", "1280x800", "-i", os.environ["DISPLAY"], "-t", "4",
                                 os.path.join(frames, "%03d.png")])
        time.sleep(0.8)
        press(confirmation, "Return")
        film.wait(timeout=30)
        shots.append(frame_of_run(frames, os.path.join(folder, "organizer-progress.png")))
    wait_until(lambda: len(windows_named("Organizer")) == 1, seconds=120)
    press(window, "ctrl+l")
    log = wait_for_window("Log of the Last Run")
    settle()
    shots.append(grab(folder, "organizer-log.png"))
    press(log, "Escape")
    settle()
    return shots


def frame_of_run(frames, path):
    """The middle one of the frames that show neither the confirmation (first frame) nor the
    window after the run (last frame)."""
    names = sorted(os.listdir(frames))
    contents = [open(os.path.join(frames, name), "rb").read() for name in names]
    during = [name for name, content in zip(names, contents) if content not in (contents[0], contents[-1])]
    if not during:
        raise AssertionError("no frame shows the run")
    shutil.copyfile(os.path.join(frames, during[len(during) // 2]), path)
    return path


def current_system():
    fields = {}
    with open("/etc/os-release") as file:
        for line in file:
            key, _, value = line.strip().partition("=")
            fields[key] = value.strip('"')
    return f"{fields.get('ID', 'unknown')} {fields.get('VERSION_ID', 'unknown')}"


def xdotool(*arguments):
    return subprocess.run(["xdotool", *arguments], check=True, capture_output=True, text=True).stdout.strip()


def press(window, key):
    xdotool("windowfocus", "--sync", window)
    xdotool("key", key)


def click(window, x, y):
    xdotool("mousemove", "--window", window, str(x), str(y), "click", "1")


def windows_named(name):
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{name}$"],
                          capture_output=True, text=True).stdout.split()


def wait_until(condition, seconds=WINDOW_SECONDS):
    deadline = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > deadline:
            raise AssertionError("waited in vain")
        time.sleep(0.05)


def visible_windows():
    return set(subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "."],
                              capture_output=True, text=True).stdout.split())


def wait_for_new_window(before):
    """The first visible window that is not among `before`."""
    deadline = time.monotonic() + WINDOW_SECONDS
    while time.monotonic() < deadline:
        new = visible_windows() - before
        if new:
            return new.pop()
        time.sleep(0.1)
    raise AssertionError("no new window appeared")


def wait_for_window(name, seconds=WINDOW_SECONDS):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        found = windows_named(name)
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
        inside(*sys.argv[2:6])
        return
    orvane, cli, version, folder = sys.argv[1:5]
    os.makedirs(folder, exist_ok=True)
    env = dict(os.environ)
    env.pop("DBUS_SESSION_BUS_ADDRESS", None)
    subprocess.run([X_SESSION,
                    sys.executable, os.path.abspath(__file__), "--inside", orvane, cli, version, folder],
                   env=env, check=True, timeout=240)


if __name__ == "__main__":
    main()
