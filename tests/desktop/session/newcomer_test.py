"""What somebody does on his first day, by keys alone or by the mouse alone: signs in, dictates, copies an
old record, adds a term and corrects it, chooses a shortcut, a microphone and a language, and reads how
much was dictated. Only text is typed by keys in either case.

usage: newcomer_test.py PROGRAM SERVICE keys|mouse
"""

import json
import subprocess
import sys
import time

from accessibility_test import ScreenReader, check, controls
from editors import EDITORS, SENTINEL, clipboard
from stage import EMAIL, PASSWORD, RIGHT_ALT, Stage, wait_until, xdotool

OLD = "The old sentence that somebody looks for."
# Signed out, and everything else as it is at first.
NEWCOMER = {"cloudAccessToken": None, "cloudRefreshToken": None}


def matches(node, name):
    return name in (node["name"], node["description"]) and "enabled" in node["states"]


class Hands:
    def __init__(self, stage):
        self.stage = stage
        self._reader = ScreenReader(stage)
        self._window = wait_until("the window", lambda: Stage.window_of(stage.program.pid, "^Tavrin$"))

    def tree(self):
        return self._reader.tree()

    def find(self, name):
        return next((node for node in self.tree() if matches(node, name)), None)

    def control(self, name):
        return wait_until(f"the control {name}", lambda: next(
            (node for node in controls(self.tree()) if matches(node, name)), None))

    def sees(self, text):
        wait_until(repr(text), lambda: any(text in node["name"] for node in self.tree()))

    def focused(self):
        return next((node for node in self.tree() if "focused" in node["states"]), None)

    def entries(self):
        """Of the list that is open."""
        return [node for node in self.tree() if node["role"] == "list item"]

    def record(self):
        """What the record in sight that holds the old sentence is called."""
        record = wait_until("the old record", lambda: next(
            (node for node in self.tree() if OLD in node["description"]), None))
        return record["name"]

    def to_window(self):
        xdotool("windowactivate", "--sync", self._window)

    @staticmethod
    def type(text):
        xdotool("type", "--delay", "20", text)


class Keys(Hands):
    def go(self, name):
        self.control(name)
        seen = []
        for _ in range(60):
            at = self.focused()
            seen.append(at and at["name"])
            if at and matches(at, name):
                return
            xdotool("key", "Tab")
            time.sleep(0.05)
        check(False, "Tab does not lead to", name, "but to", seen)

    def press(self, name):
        self.go(name)
        xdotool("key", "Return")

    def choose(self, popup, steps):
        """The entry so many below the one that is chosen."""
        self.go(popup)
        xdotool("key", "space")
        wait_until("the list", self.entries)
        xdotool("key", "--repeat", str(abs(steps)), "--delay", "60", "Down" if steps > 0 else "Up")
        xdotool("key", "Return")

    def copy_old_record(self):
        xdotool("key", "ctrl+f")
        wait_until("the field", lambda: (self.focused() or {}).get("role") == "text")
        self.type("somebody looks")
        self.press("Copy · " + self.record())


class Mouse(Hands):
    def go(self, name):
        left, top, width, height = self.control(name)["place"]
        xdotool("mousemove", str(left + width // 2), str(top + height // 2), "click", "1")

    def press(self, name):
        self.go(name)

    def choose(self, popup, steps):
        chosen = self.control(popup)["name"]
        self.go(popup)
        entries = wait_until("the list", self.entries)
        at = next(i for i, entry in enumerate(entries) if entry["name"] == chosen)
        left, top, width, height = entries[at + steps]["place"]
        xdotool("mousemove", str(left + width // 2), str(top + height // 2), "click", "1")

    def copy_old_record(self):
        self.press("Copy · " + self.record())


def sign_in(hands):
    hands.sees("Continue with email")
    hands.go("Email")
    hands.type(EMAIL)
    hands.press("Continue")
    hands.sees("Welcome back")
    hands.go("Password")
    hands.type(PASSWORD)
    hands.press("Sign in")
    hands.sees("Account connected")


def dictate(hands):
    editor = EDITORS["mousepad"](hands.stage)
    editor.bring_to_front()
    record = hands.stage.dictate(RIGHT_ALT, "hello there")
    check(record["delivery"] == "自动输入已完成", record["delivery"])
    wait_until("the text", lambda: "ello" in editor.text())
    hands.to_window()


def copy_old_record(hands):
    subprocess.run(["xclip", "-selection", "clipboard"], input=SENTINEL, text=True, check=True)
    hands.press("History")
    hands.copy_old_record()
    wait_until("the copy", lambda: clipboard() == OLD)


def terms(stage):
    return [entry["term"] for entry in stage.preference("personalDictionaryEntries") or []]


def add_and_edit_term(hands):
    hands.press("Dictionary")
    hands.go("Enter a term, for example Tavrin")
    hands.type("Ostrander")
    hands.press("Add term")
    wait_until("the term", lambda: terms(hands.stage) == ["Ostrander"])
    hands.press("Edit Ostrander")
    wait_until("the question", lambda: hands.find("保存"))
    xdotool("key", "ctrl+a")
    hands.type("Ostrander & Sons")
    hands.press("保存")
    wait_until("the edited term", lambda: terms(hands.stage) == ["Ostrander & Sons"])


def choose_shortcut_microphone_and_language(hands):
    stage = hands.stage
    hands.press("Input & Output")
    hands.choose("Dictation: first shortcut", 2)  # The next one is translation's.
    wait_until("another shortcut", lambda: stage.preference("dictationShortcutIdentifiers")
               not in (None, ["rightOption"]))
    hands.press("General")
    hands.choose("Preferred microphone", 1)
    wait_until("a microphone", lambda: stage.preference("preferredMicrophoneUID"))
    hands.choose("Interface language", -1)
    wait_until("another language", lambda: stage.preference("interfaceLanguage") != "en")


def read_figures(hands):
    hands.press("Overview")
    today = wait_until("today's figure", lambda: next(
        (node["name"] for node in hands.tree() if node["name"].startswith("Today: ")), None))
    check(today == f"Today: {hands.stage.history()[0]['inputCharacters']} chars", today)


def main():
    hands_of = {"keys": Keys, "mouse": Mouse}[sys.argv[3]]
    stage = Stage(*sys.argv[1:3], NEWCOMER, use_model=False)
    try:
        old = {"id": "R1", "timestamp": time.time() - 51 * 3600, "mode": "dictation",
               "transcript": OLD.lower(), "finalText": OLD, "inputCharacters": len(OLD)}
        stage.history_file.parent.mkdir(parents=True, exist_ok=True)
        stage.history_file.write_text(json.dumps([old]))
        hands = hands_of(stage)
        sign_in(hands)
        print("signed in", flush=True)
        dictate(hands)
        print("dictated", flush=True)
        copy_old_record(hands)
        print("copied", flush=True)
        add_and_edit_term(hands)
        print("term", flush=True)
        read_figures(hands)
        print("figures", flush=True)
        choose_shortcut_microphone_and_language(hands)
        print("settings", flush=True)
    finally:
        stage.close()


if __name__ == "__main__":
    main()
