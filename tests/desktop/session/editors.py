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

    def wait_for_window(self, patience=PATIENCE):
        self.window = wait_until(f"a window of {self._class}", self._find, patience)

    def bring_to_front(self, patience=PATIENCE):
        self.wait_for_window(patience)
        xdotool("windowactivate", "--sync", self.window)
        time.sleep(1.5)  # Until the window has put its focus where it wants it.

    def _find(self):
        found = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--class", self._class],
            capture_output=True, text=True, check=False).stdout.split()
        return found[-1] if found else None

    def _copy(self):
        xdotool("key", "ctrl+a")
        time.sleep(0.3)
        xdotool("key", "ctrl+c")

    def text(self):
        # The program's own copy of the text is on the clipboard: it must not pass for the editor's.
        subprocess.run(["xclip", "-selection", "clipboard"], input=SENTINEL, text=True, check=True)
        self._copy()
        wait_until("the copy", lambda: clipboard() != SENTINEL, 10)
        return clipboard().rstrip("\n")


class FileEditor(Editor):
    """A window of a text file, whose text is what it saves."""

    def __init__(self, stage, command, window_class, save):
        self._document = document(stage)
        self._save = save
        super().__init__(stage, [*command, str(self._document)], window_class)

    def text(self):
        before = self._document.stat().st_mtime_ns
        xdotool("key", "--delay", "50", *self._save)
        # Some empty the file first.
        return wait_until("the saved text", lambda: self._document.stat().st_mtime_ns != before
                          and self._document.read_text(), 10).rstrip("\n")


class Sheet(Editor):
    """A table, in which the cell with the cursor is written."""

    def _copy(self):
        xdotool("key", "F2")  # Opens the cell: all is its text then, not every cell.
        time.sleep(0.3)
        super()._copy()


class Terminal(Editor):
    """A terminal that runs a program which keeps what is typed."""

    def __init__(self, stage, command, window_class):
        super().__init__(stage, [*command, self._keeper(stage)], window_class, {"LC_ALL": "C.UTF-8"})

    def _keeper(self, stage):
        folder = stage.folder("terminal")
        self.typed = folder / "typed"  # Grows with every character.
        keeper = folder / "keeper"
        # Not by lines: the terminal cuts them, and the text has no end of one.
        keeper.write_text(f"#!/bin/sh\nstty -icanon\nexec cat >'{self.typed}'\n")
        keeper.chmod(0o755)
        return str(keeper)

    def bring_to_front(self, patience=PATIENCE):
        super().bring_to_front(patience)
        wait_until("the program in the terminal", self.typed.exists, patience)

    def text(self):
        time.sleep(0.5)
        return self.typed.read_text().rstrip("\n")


class GnomeTerminal(Terminal):
    """Its windows belong to a process that the session bus would start, and that would stay."""

    def __init__(self, stage):
        keeper = self._keeper(stage)
        Editor.__init__(self, stage, ["/usr/libexec/gnome-terminal-server"], "gnome-terminal")
        run("gdbus", "wait", "--session", "--timeout", str(PATIENCE), "org.gnome.Terminal")
        run("gnome-terminal", "--", keeper)


class KateTerminal(Terminal):
    """The terminal below the text of an editor."""

    def __init__(self, stage):
        Editor.__init__(self, stage, ["kate", "--new", str(document(stage))], "kate",
                        {"SHELL": self._keeper(stage)})

    def bring_to_front(self, patience=PATIENCE):
        Editor.bring_to_front(self, patience)
        xdotool("key", "F4")
        # The editor types what brings a shell into the document's folder.
        wait_until("the program in the terminal", lambda: self._so_far().endswith("\n"), patience)
        self._greeting = self._so_far()

    def _so_far(self):
        return self.typed.read_text() if self.typed.exists() else ""

    def text(self):
        return super().text().removeprefix(self._greeting)


class VimTerminal(Terminal):
    def __init__(self, stage):
        Editor.__init__(self, stage, ["gvim", "-f", "-c", f"terminal ++curwin {self._keeper(stage)}"],
                        "gvim")


def document(stage):
    file = stage.folder("documents") / "letter.txt"
    file.touch()
    return file


def page(stage, field):
    file = stage.folder("browser") / "page.html"
    file.write_text(f"<!doctype html><meta charset=utf-8><title>Page</title>{field}"
                    "<script>document.querySelector('#field').focus()</script>")
    return f"file://{file}"


TEXTAREA = "<textarea id=field style='width:95%;height:300px'></textarea>"


def chromium(stage, field):
    return Editor(stage, [
        "chromium", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-sync",
        "--disable-background-networking", "--disable-component-update", "--disable-quic",
        "--force-renderer-accessibility", f"--user-data-dir={stage.folder('profile')}",
        f"--app={page(stage, field)}"], "chromium")


def firefox(stage):
    profile = stage.folder("profile")
    (profile / "user.js").write_text("".join(
        f"user_pref({name}, {value});\n" for name, value in [
            ('"browser.aboutwelcome.enabled"', "false"),
            ('"browser.shell.checkDefaultBrowser"', "false"),
            ('"datareporting.policy.dataSubmissionEnabled"', "false"),
            ('"toolkit.telemetry.enabled"', "false"),
            ('"app.normandy.enabled"', "false")]))
    return Editor(stage, ["firefox-esr", "--no-remote", "--profile", str(profile),
                          page(stage, TEXTAREA)], "firefox-esr")


def office(stage, program):
    profile = stage.folder("office")
    user = profile / "user"
    user.mkdir()
    # No tip of the day over the document.
    (user / "registrymodifications.xcu").write_text(
        '<?xml version="1.0" encoding="UTF-8"?>'
        '<oor:items xmlns:oor="http://openoffice.org/2001/registry">'
        '<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="ShowTipOfTheDay" '
        'oor:op="fuse"><value>false</value></prop></item></oor:items>')
    kind = Sheet if program == "calc" else Editor
    return kind(stage, ["soffice", f"--{program}", "--norestore", "--nologo",
                        f"-env:UserInstallation=file://{profile}"], f"libreoffice-{program}")


def plain(command, window_class):
    return lambda stage: Editor(stage, [command], window_class)


EDITORS = {
    "mousepad": plain("mousepad", "mousepad"),
    "featherpad": plain("featherpad", "featherpad"),
    "gedit": plain("gedit", "gedit"),
    "gnome-text-editor": plain("gnome-text-editor", "gnome-text-editor"),
    # Without a document it shows a page of greetings.
    "kate": lambda stage: Editor(stage, ["kate", "--new", str(document(stage))], "kate"),
    "emacs-gtk": lambda stage: FileEditor(stage, ["emacs"], "emacs", ["ctrl+x", "ctrl+s"]),
    # Each is saved by keys that do so in the mode alone that it was in before.
    "gvim": lambda stage: FileEditor(
        stage, ["gvim", "-f", "-c", "nnoremap <F2> :w<CR>"], "gvim", ["F2"]),
    "gvim-insert": lambda stage: FileEditor(
        stage, ["gvim", "-f", "-c", "inoremap <F2> <C-O>:w<CR>", "-c", "startinsert"], "gvim", ["F2"]),
    "chromium-textarea": lambda stage: chromium(stage, TEXTAREA),
    "chromium-contenteditable": lambda stage: chromium(
        stage, "<div id=field contenteditable style='min-height:300px'></div>"),
    "firefox-esr": firefox,
    "libreoffice-writer": lambda stage: office(stage, "writer"),
    "libreoffice-calc": lambda stage: office(stage, "calc"),
    "xterm": lambda stage: Terminal(stage, ["xterm", "-u8", "-class", "XTerm", "-e"], "XTerm"),
    "gnome-terminal": GnomeTerminal,
    "gvim-terminal": VimTerminal,
    "kate-terminal": KateTerminal,
    "konsole": lambda stage: Terminal(stage, ["konsole", "-e"], "konsole"),
}
