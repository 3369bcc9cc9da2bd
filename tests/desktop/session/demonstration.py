"""What a user sees: the menu and the window in three languages, and a spoken sentence on its way into
an editor. Leaves pictures, and prints what the editor holds in the end.

usage: demonstration.py PROGRAM SERVICE FOLDER     on a desktop with a tray; pictures go to FOLDER
"""

import contextlib
import hashlib
import pathlib
import re
import subprocess
import sys
import time

from editors import EDITORS
from stage import RIGHT_ALT, Stage, run, wait_until, xdotool

SENTENCE = "please send the report to the office before friday"
# A user's own settings: the stage has shortcuts that suit its tests.
SETTINGS = {"translationShortcutIdentifiers": None, "chatShortcutIdentifiers": None}


class Demonstration:
    def __init__(self, program, service, folder):
        self._program, self._service, self._folder = program, service, pathlib.Path(folder)
        self._folder.mkdir(parents=True, exist_ok=True)

    @contextlib.contextmanager
    def stage(self, language):
        stage = Stage(self._program, self._service, {**SETTINGS, "interfaceLanguage": language}, use_model=False)
        try:
            # Without an item the panel is but a sliver.
            wait_until("the status item", lambda: panel_geometry()[2] > 12)
            yield stage
        finally:
            stage.close()

    def picture(self, name, settled=True):
        if settled:
            wait_until_settled()
        run("import", "-window", "root", self._folder / f"{name}.png")
        print(self._folder / f"{name}.png")

    def show_menu(self, language):
        """The status menu, and its submenus opened one after the other."""
        x, y, width, height = panel_geometry()
        xdotool("mousemove", str(x + width // 2), str(y + height // 2), "click", "3")
        self.picture(f"menu-{language}")
        xdotool("key", "Down", "Down", "Down", "Down", "Right")
        self.picture(f"menu-style-{language}")
        xdotool("key", "Left", "Down", "Right")
        self.picture(f"menu-translation-{language}")
        xdotool("key", "Escape", "Escape")

    def show_language(self, language):
        with self.stage(language):
            self.picture(f"window-{language}")
            self.show_menu(language)

    def dictate(self):
        """Press, speak, press: the sentence ends up in the editor."""
        with self.stage("en") as stage:
            editor = EDITORS["mousepad"](stage)
            editor.bring_to_front()
            stage.start_recording(RIGHT_ALT)
            time.sleep(1)  # People breathe in first.
            stage.say(SENTENCE)
            self.picture("listening", settled=False)
            xdotool("key", RIGHT_ALT)
            wait_until("the text", stage.history)
            self.picture("editor")
            print(f"\nSpoken:   {SENTENCE}\nInserted: {editor.text()}\n")


def panel_geometry():
    """x, y, width and height of the panel with the status items."""
    told = run("xwininfo", "-name", "panel")
    return [int(re.search(rf"{what}: +(-?\d+)", told).group(1))
            for what in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")]


def wait_until_settled():
    """Until two looks at the screen are alike, or some seconds have passed."""
    before = None
    for _ in range(40):
        time.sleep(0.15)
        screen = subprocess.run(["import", "-window", "root", "ppm:-"], check=True, capture_output=True).stdout
        now = hashlib.sha256(screen).digest()
        if now == before:
            return
        before = now


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    demonstration = Demonstration(*sys.argv[1:])
    for language in ("zh-Hans", "zh-Hant", "en"):
        demonstration.show_language(language)
    demonstration.dictate()


if __name__ == "__main__":
    main()
