"""The stage of a whole session on a desktop: a text service with a model behind it, the program,
an editor in front, keys and a voice. Everything talks to this machine only."""

import contextlib
import json
import os
import pathlib
import re
import subprocess
import tempfile
import time
import urllib.request

from stand_in import Model

SERVICE = "http://127.0.0.1:8787"
EMAIL, PASSWORD = "you@tavrin.example", "a long enough password"
RIGHT_ALT, LEFT_ALT = "108", "64"  # Key codes: the symbols depend on the layout.
FOCUSED = 12  # The state's number on the accessibility bus.
PATIENCE = 60  # Seconds; far more than anything takes on a quiet machine.


def wait_until(what, condition, patience=PATIENCE):
    """The first true value of condition(); fails after a while."""
    end = time.monotonic() + patience
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise AssertionError(f"gave up waiting for {what}")


def run(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def xdotool(*arguments):
    return run("xdotool", *arguments)


def active_window():
    """The window that the window manager says is active; None while there is none."""
    return subprocess.run(["xdotool", "getactivewindow"], capture_output=True, text=True,
                          check=False).stdout.strip() or None


def sound():
    """What a recording may have changed: default devices, mute and volume."""
    return (run("pactl", "get-default-source"), run("pactl", "get-default-sink"),
            run("pactl", "get-sink-mute", "@DEFAULT_SINK@"),
            run("pactl", "get-sink-volume", "@DEFAULT_SINK@"))


def gdbus(bus, destination, path, method, *arguments):
    """The answer to a call, as gdbus prints it."""
    return run("gdbus", "call", bus, "--dest", destination, "--object-path", path, "--method", method,
               *arguments)


class AccessibilityBus:
    """Questions to programs over the accessibility bus."""

    def __init__(self):
        answer = gdbus("--session", "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress")
        self._address = re.search("'(.*)'", answer).group(1)

    def ask(self, destination, path, method, *arguments):
        return gdbus("--address=" + self._address, destination, path, method, *arguments)

    def ask_in_vain(self, *question):
        try:
            return self.ask(*question)
        except subprocess.CalledProcessError:  # It has gone meanwhile, or has no text.
            return ""

    def property(self, destination, path, name):
        """A text, without the marks that gdbus puts around it."""
        answer = self.ask_in_vain(destination, path, "org.freedesktop.DBus.Properties.Get",
                                  "org.a11y.atspi.Accessible", name)
        return answer.strip().removeprefix("(<").removesuffix(">,)")[1:-1]

    def children(self, destination, path):
        answer = self.ask_in_vain(destination, path, "org.a11y.atspi.Accessible.GetChildren")
        return re.findall(r"'([^']*)', (?:objectpath )?'([^']*)'", answer)

    def windows(self, process):
        root = "/org/a11y/atspi/accessible/root"
        for name, path in self.children("org.a11y.atspi.Registry", root):
            owner = self.ask("org.freedesktop.DBus", "/org/freedesktop/DBus",
                             "org.freedesktop.DBus.GetConnectionUnixProcessID", name)
            if f"uint32 {process}," in owner:
                yield from self.children(name, path)


def accessible_texts(process, depth=4):
    """What the windows of a process tell accessibility that they show, so many levels down: names,
    descriptions and texts."""
    bus = AccessibilityBus()

    def texts(name, path, levels):
        get = "org.freedesktop.DBus.Properties.Get"
        for each in ("Name", "Description"):
            yield bus.ask_in_vain(name, path, get, "org.a11y.atspi.Accessible", each)
        length = re.search(r"\d+", bus.ask_in_vain(name, path, get, "org.a11y.atspi.Text",
                                                   "CharacterCount"))
        if length:
            yield bus.ask_in_vain(name, path, "org.a11y.atspi.Text.GetText", "0", length.group())
        if levels > 1:
            for child in bus.children(name, path):
                yield from texts(*child, levels - 1)

    for window in bus.windows(process):
        yield from texts(*window, depth)


def focused_name(process, depth):
    """The accessible name of the control that has the keyboard; empty when none is found."""
    bus = AccessibilityBus()

    def search(name, path, levels):
        states = bus.ask_in_vain(name, path, "org.a11y.atspi.Accessible.GetState")
        words = [int(word) for word in re.findall(r"\d+", states.replace("uint32", ""))]
        if words and words[0] >> FOCUSED & 1:
            return bus.property(name, path, "Name")
        below = bus.children(name, path) if levels > 1 else []
        return next(filter(None, (search(*child, levels - 1) for child in below)), "")

    return next(filter(None, (search(*window, depth) for window in bus.windows(process))), "")


class Place:
    """A folder, and programs that are ended with it."""

    def __init__(self):
        self._exit = contextlib.ExitStack()
        self._folder = pathlib.Path(self._exit.enter_context(tempfile.TemporaryDirectory()))

    def close(self):
        self._exit.close()

    def folder(self, name):
        path = self._folder / name
        path.mkdir(exist_ok=True)
        return path

    def start(self, *command, environment=None, **options):
        """A program that is ended with the place."""
        process = subprocess.Popen(command, env={**os.environ, **(environment or {})}, **options)

        def end():
            process.terminate()
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()

        self._exit.callback(end)
        return process


class Stage(Place):
    def __init__(self, program, service, settings, use_model, log=None):
        """With a log, an open file, the program tells there what happens."""
        super().__init__()
        self._program_file = program
        self._log = log
        self.model = Model()
        self._exit.callback(self.model.close)
        self.recordings = self._folder / "recordings"
        self.recordings.mkdir()
        try:
            self._start_service(service, use_model)
            self._write_preferences(settings)
            self.start_program()
        except BaseException:
            self.close()
            raise

    def _start_service(self, service, use_model):
        data = self.folder("service")
        run(service, "--data", data, "account", EMAIL, input=PASSWORD)
        model = ["--llm-url", self.model.url, "--llm-model", "stand-in"] if use_model else []
        process = self.start(service, "--data", data, *model,
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.service = process
        credentials = {"email": EMAIL, "password": PASSWORD, "deviceId": "test",
                       "deviceName": "test", "clientVersion": "0.8.0"}

        def sign_in():
            if process.poll() is not None:
                raise AssertionError("the text service has ended; does another one hold its port?")
            request = urllib.request.Request(
                SERVICE + "/v1/auth/login", json.dumps(credentials).encode(),
                {"Content-Type": "application/json"})
            try:
                with urllib.request.urlopen(request) as answer:
                    return json.load(answer)
            except OSError:
                return None

        self._session = wait_until("the text service", sign_in)
        sign_in()  # Where another one answered, ours has ended by now.

    def _write_preferences(self, settings):
        folder = self.folder("config") / "Tavrin"
        folder.mkdir()
        preferences = {
            "interfaceLanguage": "en", "tavrinBetaOnboardingSeen": True,
            "tavrinLastUpdateCheckAt": time.time(),
            "cloudAccessToken": self._session["accessToken"],
            "cloudRefreshToken": self._session["refreshToken"],
            "translationShortcutIdentifiers": ["leftOption"],
            "chatShortcutIdentifiers": ["controlOptionSpace"], **settings}
        preferences = {key: value for key, value in preferences.items() if value is not None}
        self._preferences_file = folder / "preferences.json"
        self._preferences_file.write_text(json.dumps(preferences))
        self.history_file = self.folder("data") / "Tavrin/TranscriptionHistory.json"

    def start_program(self):
        """For the first time, or once it has ended."""
        options = ["--verbose"] if self._log else []
        self.program = self.start(self._program_file, *options, stderr=self._log, environment={
            "XDG_CONFIG_HOME": str(self.folder("config")),
            "XDG_DATA_HOME": str(self.folder("data")), "TMPDIR": str(self.recordings)})
        window = wait_until("the main window", lambda: self.window_of(self.program.pid, "^Tavrin$"))
        # It comes to the front by itself, after whatever would be brought there before that.
        wait_until("the main window in front", lambda: active_window() == window)

    @staticmethod
    def window_of(process, name=""):
        found = subprocess.run(
            ["xdotool", "search", "--all", "--onlyvisible", "--pid", str(process), "--name", name],
            capture_output=True, text=True, check=False).stdout.split()
        return found[-1] if found else None

    def panel_is_visible(self):
        """The recording panel is the program's only window of its size."""
        windows = subprocess.run(
            ["xdotool", "search", "--all", "--onlyvisible", "--pid", str(self.program.pid),
             "--name", "^Tavrin$"], capture_output=True, text=True, check=False).stdout.split()
        for window in windows:
            geometry = subprocess.run(["xdotool", "getwindowgeometry", window],
                                      capture_output=True, text=True, check=False).stdout
            if re.search(r"Geometry: 430x145", geometry):
                return True
        return False

    def panel_shows(self, text):
        """Whether the panel tells accessibility that it shows `text`."""
        return any(text in shown for shown in accessible_texts(self.program.pid, depth=1))

    def preference(self, key):
        return json.loads(self._preferences_file.read_text()).get(key)

    def voice(self, sentence):
        """A sound file in which somebody says it."""
        file = self._folder / f"{sentence}.wav"
        if not file.exists():
            run("flite", "-voice", "rms", "-t", sentence, "-o", file)
        return file

    def say(self, sentence):
        run("paplay", "--device=micfeed", self.voice(sentence))

    def start_recording(self, key):
        xdotool("key", key)
        wait_until("the recording", lambda: list(self.recordings.glob("tavrin-*.m4a")))

    def speak_and_finish(self, key, sentence, breath=0.5):
        time.sleep(breath)  # People breathe in first.
        self.say(sentence)
        time.sleep(0.3)
        xdotool("key", key)

    def dictate(self, key, sentence):
        """A whole session with one key: press, speak, press, until the result is in the history."""
        before = len(self.history())
        self.start_recording(key)
        wait_until("the panel", self.panel_is_visible)
        self.speak_and_finish(key, sentence)
        wait_until("the result", lambda: len(self.history()) > before)
        wait_until("the panel's end", lambda: not self.panel_is_visible())
        return self.history()[0]

    def history(self):
        try:
            return json.loads(self.history_file.read_text())
        except FileNotFoundError:
            return []
