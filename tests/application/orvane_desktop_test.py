"""Starts the built orvane on a private X server and session bus with a private home, and checks
that it stays up in the mode it was asked for and quits in order on SIGTERM."""

import os
import plistlib
import queue
import signal
import subprocess
import sys
import tempfile
import threading
import time

# A private X server and session bus for the run (tests/support/xsession.sh).
X_SESSION = os.path.normpath(os.path.join(
    os.path.dirname(os.path.abspath(__file__)), "..", "support", "xsession.sh"))

ORVANE, VERSION = sys.argv[1], sys.argv[2]
STARTUP_SECONDS = 30


class Run:
    def __init__(self, stored_mode=None, hold_alt=False):
        self.home = tempfile.TemporaryDirectory()
        root = self.home.name
        runtime = os.path.join(root, "run")
        os.makedirs(runtime, mode=0o700)
        env = dict(os.environ, HOME=root, XDG_CONFIG_HOME=os.path.join(root, "config"),
                   XDG_DATA_HOME=os.path.join(root, "data"), XDG_CACHE_HOME=os.path.join(root, "cache"),
                   XDG_RUNTIME_DIR=runtime)
        env.pop("QT_QPA_PLATFORM", None)
        env.pop("DBUS_SESSION_BUS_ADDRESS", None)
        # This system counts as supported, so that no alert blocks the quit.
        env["ORVANE_SUPPORTED_SYSTEMS"] = self.current_system()
        self.general = os.path.join(env["XDG_CONFIG_HOME"], "Orvane", VERSION, "Preferences", "General.plist")
        if stored_mode is not None:
            os.makedirs(os.path.dirname(self.general))
            with open(self.general, "wb") as file:
                # Binary form: only a save by the program turns it into XML.
                plistlib.dump({"LaunchMode": stored_mode, "LaunchYourTunes": False, "LaunchMeOnLogin": False,
                               "ShowTrackInfoWindowWhenSkippingTrack": True, "UseLastFM": False,
                               "UseRatingNotifier": False, "UseHotkeyListener": False, "UseAutoLove": True,
                               "UseAutoLoveValue": 70, "LaunchLyricsWindow": False, "LaunchFunctionPool": False},
                              file, fmt=plistlib.FMT_BINARY)
        self.pidfile = os.path.join(root, "orvane.pid")
        command = ["/bin/sh", "-c", '"$0" & echo $! > "$1"; wait $!', ORVANE, self.pidfile]
        if hold_alt:
            # X releases a fake key press when its client goes, so xdotool stays for the run.
            command = ["xdotool", "keydown", "alt", "exec", "--sync"] + command
        self.process = subprocess.Popen(
            [X_SESSION] + command,
            env=env, stderr=subprocess.PIPE, text=True)
        self.lines = queue.Queue()
        threading.Thread(target=self.read_errors, daemon=True).start()

    @staticmethod
    def current_system():
        # QSysInfo's productType and productVersion: ID and VERSION_ID of os-release.
        fields = {}
        try:
            with open("/etc/os-release") as file:
                for line in file:
                    key, _, value = line.strip().partition("=")
                    fields[key] = value.strip('"')
        except OSError:
            pass
        return f"{fields.get('ID', 'unknown')} {fields.get('VERSION_ID', 'unknown')}"

    def read_errors(self):
        for line in self.process.stderr:
            self.lines.put(line)

    def wait_for_launch(self):
        deadline = time.monotonic() + STARTUP_SECONDS
        while time.monotonic() < deadline:
            try:
                line = self.lines.get(timeout=deadline - time.monotonic())
            except queue.Empty:
                break
            if "launching in" in line:
                return line.split("launching in", 1)[1].split()[0]
        raise AssertionError("orvane did not report its launch")

    def stays_up(self, seconds=1.0):
        try:
            self.process.wait(timeout=seconds)
            return False
        except subprocess.TimeoutExpired:
            return True

    def terminate(self):
        with open(self.pidfile) as file:
            pid = int(file.read())
        asked = time.monotonic()
        os.kill(pid, signal.SIGTERM)
        status = self.process.wait(timeout=STARTUP_SECONDS)
        return status, time.monotonic() - asked

    def stored_general(self):
        with open(self.general, "rb") as file:
            data = file.read()
        return data, plistlib.loads(data)


def check(condition, message):
    if not condition:
        raise AssertionError(message)


def run_case(name, expected_mode, **options):
    run = Run(**options)
    try:
        mode = run.wait_for_launch()
        check(mode == expected_mode, f"{name}: launched in {mode} mode, expected {expected_mode}")
        check(run.stays_up(), f"{name}: orvane ended on its own")
        status, took = run.terminate()
        check(status == 0, f"{name}: exit status {status}")
        check(took >= 1.1, f"{name}: quit after {took:.2f} s, before the controller's fade")
        data, general = run.stored_general()
        check(data.startswith(b"<?xml"), f"{name}: General.plist was not saved at quit")
        if "stored_mode" in options:
            check(general["LaunchMode"] == options["stored_mode"], f"{name}: stored mode changed")
        print(f"ok: {name}")
    finally:
        if run.process.poll() is None:
            run.process.kill()
        run.home.cleanup()


def main():
    run_case("default mode", "default", stored_mode=1)
    run_case("stored organize mode", "organize", stored_mode=2)
    run_case("Alt held at launch", "organize", stored_mode=1, hold_alt=True)


if __name__ == "__main__":
    main()
