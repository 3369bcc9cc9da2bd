#!/usr/bin/env python3
"""Starts the real program on the desktop around and sees how it runs once, stays and ends.

usage: PYTHONPATH=session program_test.py TAVRIN
"""

import http.server
import json
import os
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

from stage import accessible_texts

REACH_NOTICE = "This is a Wayland session: Tavrin reaches only programs that run on XWayland."
DOWNLOAD = "https://tavrin.example/download"
SERVICE_PORT = 8787

PATIENCE = 20  # Seconds; the machine may be busy.


def until(condition):
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        if condition():
            return True
        time.sleep(0.05)
    return False


class UpdateService(http.server.BaseHTTPRequestHandler):
    """Has a newer build for whoever asks for anything."""

    def do_GET(self):
        answer = json.dumps({"build": 10**6, "version": "99", "downloadUrl": DOWNLOAD}).encode()
        self.send_response(200)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(answer)))
        self.end_headers()
        self.wfile.write(answer)

    def log_message(self, *arguments):
        pass


class ProgramTest(unittest.TestCase):
    program = ""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.environment = {
            **os.environ,
            "XDG_CONFIG_HOME": f"{self.folder}/config",
            "XDG_DATA_HOME": f"{self.folder}/data",
        }
        self.preferences = self.folder / "config/Tavrin/preferences.json"
        self.preferences.parent.mkdir(parents=True)
        self.set_up(last_update_check=time.time())

    def set_up(self, last_update_check):
        self.preferences.write_text(json.dumps({
            "interfaceLanguage": "en",
            "tavrinBetaOnboardingSeen": True,
            "tavrinLastUpdateCheckAt": last_update_check,
        }), encoding="utf-8")

    def start(self, *options, **more):
        process = subprocess.Popen([self.program, *options], env=self.environment,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, **more)
        self.addCleanup(self.end, process)
        return process

    @staticmethod
    def end(process):
        if process.poll() is None:
            process.kill()
        process.communicate()

    def windows(self, process):
        found = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--all", "--pid", str(process.pid), "--name",
             "^Tavrin$"], env=self.environment, capture_output=True, text=True, check=False)
        return found.stdout.split()

    def alerts(self, process):
        """Those of its windows that want an answer before anything else."""
        def is_modal(window):
            state = subprocess.run(["xprop", "-id", window, "_NET_WM_STATE"], env=self.environment,
                                   capture_output=True, text=True, check=False).stdout
            return "_NET_WM_STATE_MODAL" in state

        return [window for window in self.windows(process) if is_modal(window)]

    def start_with_window(self):
        process = self.start()
        self.assertTrue(until(lambda: self.windows(process) or process.poll() is not None))
        self.assertIsNone(process.poll(), "ended at once")
        return process

    def assert_ends_cleanly(self, process):
        _, errors = process.communicate(timeout=PATIENCE)
        self.assertEqual(process.returncode, 0, errors)

    def test_closing_the_window_leaves_the_program_and_a_second_start_brings_it_back(self):
        first = self.start_with_window()
        subprocess.run(["wmctrl", "-i", "-c", self.windows(first)[0]], env=self.environment,
                       check=True)
        self.assertTrue(until(lambda: not self.windows(first)))
        self.assertIsNone(first.poll())

        second = self.start()
        self.assert_ends_cleanly(second)
        self.assertTrue(until(lambda: self.windows(first)))
        self.assertIsNone(first.poll())

    def test_signals_end_the_program_cleanly(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number):
                process = self.start_with_window()
                process.send_signal(number)
                self.assert_ends_cleanly(process)

    def test_nothing_is_logged_when_nothing_goes_wrong(self):
        process = self.start_with_window()
        process.send_signal(signal.SIGTERM)
        output, errors = process.communicate(timeout=PATIENCE)
        self.assertEqual(output, "")
        # Whether there is a tray is the desktop's affair; it is said once.
        lines = [line for line in errors.splitlines() if "no tray" not in line]
        self.assertEqual(lines, [])

    def test_a_wayland_session_is_noted_once_in_the_log_and_in_the_window(self):
        self.environment["WAYLAND_DISPLAY"] = "there-is-none"
        process = self.start_with_window()
        self.assertTrue(until(lambda: any(
            REACH_NOTICE in text for text in accessible_texts(process.pid))))
        process.send_signal(signal.SIGTERM)
        _, errors = process.communicate(timeout=PATIENCE)
        self.assertEqual(errors.count(REACH_NOTICE), 1, errors)

    def stand_in_for_opening(self):
        """Puts another program in the place of the one that opens links. Where it notes what it was
        called with, and its environment."""
        note = self.folder / "opened"
        program = self.folder / "bin/xdg-open"
        program.parent.mkdir()
        program.write_text(f'#!/bin/sh\n(printf "%s\\n" "$@"; env) > "{note}.part"\n'
                           f'mv "{note}.part" "{note}"\n', encoding="utf-8")
        program.chmod(0o755)
        self.environment["PATH"] = f"{program.parent}:{self.environment['PATH']}"
        return note

    def test_what_opens_a_link_inherits_nothing_that_is_meant_for_the_program(self):
        service = http.server.ThreadingHTTPServer(("127.0.0.1", SERVICE_PORT), UpdateService)
        threading.Thread(target=service.serve_forever, daemon=True).start()
        self.addCleanup(service.server_close)
        self.addCleanup(service.shutdown)
        note = self.stand_in_for_opening()
        self.environment.pop("QT_NO_GLIB", None)
        self.set_up(last_update_check=0)

        process = self.start_with_window()
        self.assertTrue(until(lambda: self.alerts(process)))
        subprocess.run(["xdotool", "windowactivate", "--sync", self.alerts(process)[0], "key",
                        "Return"], env=self.environment, check=True)
        self.assertTrue(until(note.exists))
        link, *environment = note.read_text(encoding="utf-8").splitlines()
        self.assertEqual(link, DOWNLOAD)
        self.assertIn(f"XDG_CONFIG_HOME={self.folder}/config", environment)  # It is the program's.
        self.assertEqual([line for line in environment if line.startswith("QT_NO_GLIB=")], [])

    def test_settings_that_cannot_be_read_are_no_obstacle(self):
        self.preferences.write_text('{"interfaceLanguage": ', encoding="utf-8")
        process = self.start_with_window()
        process.send_signal(signal.SIGTERM)
        self.assert_ends_cleanly(process)

    def test_another_start_may_ask_before_the_window_is_there(self):
        first = self.start()
        bus = ["gdbus", "call", "--session", "--dest", "app.tavrin.Tavrin", "--object-path",
               "/app/tavrin/Tavrin", "--method", "org.freedesktop.Application.Activate", "{}"]

        def activated():
            return subprocess.run(bus, env=self.environment, capture_output=True,
                                  check=False).returncode == 0

        self.assertTrue(until(activated))  # From the first moment that it has its name.
        self.assertTrue(until(lambda: self.windows(first) or first.poll() is not None))
        self.assertIsNone(first.poll(), "ended by it")

    def test_signing_in_needs_no_desktop(self):
        for variable in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "QT_QPA_PLATFORM"):
            self.environment.pop(variable, None)
        process = self.start("--sign-in", "you@tavrin.example", stdin=subprocess.DEVNULL)
        _, errors = process.communicate(timeout=PATIENCE)
        self.assertEqual(process.returncode, 1, errors)
        self.assertRegex(errors, "^tavrin: ")  # Nobody answers, and it says so.

    def test_help_and_version_need_no_desktop(self):
        for variable in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"):
            self.environment.pop(variable, None)
        help_output, _ = self.start("--help").communicate(timeout=PATIENCE)
        self.assertTrue(help_output.startswith("Usage: tavrin"), help_output)
        version, _ = self.start("--version").communicate(timeout=PATIENCE)
        self.assertRegex(version, r"^Tavrin \d+\.\d+\.\d+ \(build \d+\)\n$")

    def test_an_unknown_option_is_refused(self):
        process = self.start("--colour")
        _, errors = process.communicate(timeout=PATIENCE)
        self.assertEqual(process.returncode, 2)
        self.assertIn("--colour", errors)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    ProgramTest.program = sys.argv.pop()
    unittest.main()
