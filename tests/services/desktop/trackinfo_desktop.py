"""The track info panel of the real program, run inside tests/support/xsession.sh with mpv as the
followed player: skipping to the next track opens the panel beside the status strip, and it fades
out again after its display time. A picture of the screen with the panel is saved to
ORVANE_SCREENSHOT_DIR if set. Usage: trackinfo_desktop.py ORVANE VERSION"""

import os
import plistlib
import shutil
import signal
import subprocess
import sys
import tempfile
import threading

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from live_hooks_desktop import DEADLINE, MPV, Run, check, mpris, on_bus, wait_for  # noqa: E402

ORVANE, VERSION = sys.argv[1], sys.argv[2]


def panel_windows(name=""):
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Track Info: " + name],
                           capture_output=True, text=True).stdout.split()
    return found


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
        env["ORVANE_SUPPORTED_SYSTEMS"] = Run.current_system()

        music = os.path.join(home, "music")
        os.makedirs(music)
        files = []
        for number, title in enumerate(["Opening", "Second Song"], 1):
            path = os.path.join(music, f"{number}.mp3")
            subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", "sine=duration=120",
                            "-metadata", f"title={title}", "-metadata", "artist=Tester", "-metadata", "album=Desk",
                            path], check=True)
            files.append(path)
        preferences = os.path.join(config, "Orvane", VERSION, "Preferences")
        os.makedirs(preferences)
        with open(os.path.join(preferences, "General.plist"), "wb") as file:
            plistlib.dump({"LaunchMode": 1, "LaunchYourTunes": False, "LaunchMeOnLogin": False, "UseLastFM": False,
                           "UseRatingNotifier": False, "UseHotkeyListener": False, "LaunchLyricsWindow": False,
                           "LaunchFunctionPool": False, "ShowTrackInfoWindowWhenSkippingTrack": True}, file)

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
        threading.Thread(target=lambda: [None for _ in orvane.stderr], daemon=True).start()

        mpris("Play")
        mpris("Next")
        # The panel shows the new track's tags as soon as mpv has read them.
        wait_for("the track info panel", lambda: panel_windows("Second Song$"))
        shots = os.environ.get("ORVANE_SCREENSHOT_DIR")
        if shots:
            os.makedirs(shots, exist_ok=True)
            subprocess.run(["ffmpeg", "-loglevel", "error", "-y", "-f", "x11grab", "-i", os.environ["DISPLAY"],
                            "-frames:v", "1", os.path.join(shots, "trackinfo-desktop.png")], check=True)
        # The default display time is 5 s; the panel then fades out and goes.
        wait_for("the panel to close", lambda: not panel_windows())

        orvane.send_signal(signal.SIGTERM)
        check(orvane.wait(timeout=DEADLINE) == 0, "orvane did not quit cleanly")
        print("ok")
    finally:
        for process in processes:
            if process.poll() is None:
                process.kill()
                process.wait()
        shutil.rmtree(home, ignore_errors=True)


if __name__ == "__main__":
    main()
