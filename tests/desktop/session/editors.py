"""Real programs to dictate into: how each is started, and how its text is read back."""

import subprocess
import time

from stage import PATIENCE, run, wait_until, xdotool

SENTINEL = "nothing was copied"


def clipboard():
    # Not as text: Python would change its line ends.
    return subprocess.run(["xclip", "-selection", "clipboard", "-o"], capture_output=True,
                          check=False).stdout.decode()


class Editor:
    """A window whose text can be selected and copied."""

    def __init__(self, stage, command, window_class, environment=None):
        self._stage = stage
        # A home of its own: some editors offer what an earlier one left.
        home = str(stage.folder("home"))
        places = {"HOME": home, "XDG_CONFIG_HOME": f"{home}/config", "XDG_DATA_HOME": f"{home}/data",
                  "XDG_CACHE_HOME": f"{home}/cache"}
        self.process = stage.start(*command, environment={**places, **(environment or {})},
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._class = window_class

    def bring_to_front(self, patience=PATIENCE):
        self.window = wait_until(f"a window of {self._class}", self._find, patience)
        xdotool("windowactivate", "--sync", self.window)
        time.sleep(1.5)  # Until the window has put its focus where it wants it.

    def _find(self):
        found = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--class", self._class],
            capture_output=True, text=True, check=False).stdout.split()
        return found[-1] if found else None

    def text(self):
        # The program's own copy of the text is on the clipboard: it must not pass for the editor's.
        subprocess.run(["xclip", "-selection", "clipboard"], input=SENTINEL, text=True, check=True)
        xdotool("key", "ctrl+a")
        time.sleep(0.3)
        xdotool("key", "ctrl+c")
        wait_until("the copy", lambda: clipboard() != SENTINEL, 10)
        return clipboard().rstrip("\n")


class Terminal(Editor):
    """A terminal that runs a program which keeps what is typed."""

    def __init__(self, stage):
        self.typed = stage.folder("terminal") / "typed"
        super().__init__(
            stage, ["xterm", "-u8", "-class", "XTerm", "-e", "sh", "-c",
                    f"stty -icanon; cat > '{self.typed}'"], "XTerm",
            {"LC_ALL": "C.UTF-8"})

    def text(self):
        time.sleep(0.5)
        return self.typed.read_text().rstrip("\n")


def browser(stage, field):
    page = stage.folder("browser") / "page.html"
    page.write_text(f"<!doctype html><meta charset=utf-8><title>Page</title>{field}"
                    "<script>document.querySelector('#field').focus()</script>")
    return Editor(stage, [
        "chromium", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-sync",
        "--disable-background-networking", "--disable-component-update", "--disable-quic",
        "--force-renderer-accessibility", f"--user-data-dir={stage.folder('profile')}",
        f"--app=file://{page}"], "chromium")


def writer(stage):
    profile = stage.folder("office")
    user = profile / "user"
    user.mkdir()
    # No tip of the day over the document.
    (user / "registrymodifications.xcu").write_text(
        '<?xml version="1.0" encoding="UTF-8"?>'
        '<oor:items xmlns:oor="http://openoffice.org/2001/registry">'
        '<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="ShowTipOfTheDay" '
        'oor:op="fuse"><value>false</value></prop></item></oor:items>')
    return Editor(stage, ["soffice", "--writer", "--norestore", "--nologo",
                          f"-env:UserInstallation=file://{profile}"], "libreoffice-writer")


def kate(stage):
    document = stage.folder("documents") / "letter.txt"  # Without one it shows a page of greetings.
    document.touch()
    return Editor(stage, ["kate", "--new", str(document)], "kate")


def plain(command, window_class):
    return lambda stage: Editor(stage, [command], window_class)


EDITORS = {
    "mousepad": plain("mousepad", "mousepad"),
    "featherpad": plain("featherpad", "featherpad"),
    "gedit": plain("gedit", "gedit"),
    "gnome-text-editor": plain("gnome-text-editor", "gnome-text-editor"),
    "kate": kate,
    "chromium-textarea": lambda stage: browser(
        stage, "<textarea id=field style='width:95%;height:300px'></textarea>"),
    "chromium-contenteditable": lambda stage: browser(
        stage, "<div id=field contenteditable style='min-height:300px'></div>"),
    "libreoffice-writer": writer,
    "xterm": Terminal,
}
