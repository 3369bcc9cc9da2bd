"""Keyboard layouts, and what has to work in each: a paste and typing that leave the keyboard as it
was, and the shortcuts."""

import contextlib
import ctypes
import ctypes.util
import dataclasses
import json
import pathlib
import queue
import subprocess
import threading

from display import Display
from stage import Stage, run, wait_until, xdotool

GTK_EDITOR = pathlib.Path(__file__).parents[1] / "editor/gtk_editor.py"
TEXT = "Fix 3 typos @ noon: 1,50 € – Straße, Я, 你好, “Zoë”; (a+b)/2 = 7.5?\nDONE!"
PATIENCE = 10  # Seconds; far more than a text of this length takes.

SHIFT, CAPS_LOCK, CONTROL, ALT, LEVEL_THREE = 1, 2, 4, 8, 128  # As the server counts modifiers.

# Key codes of what is the same in all layouts.
LEFT_CONTROL, LEFT_SHIFT, LEFT_ALT, SPACE, RIGHT_ALT, SUPER = 37, 50, 64, 65, 108, 133
LETTER = 24  # The first key of the upper row of letters.

# What is pressed together, and the operations that the keyboard of the tests takes it for: Option
# keys count when they go down, alone or not yet.
SHORTCUTS = {
    "Right Option": ((RIGHT_ALT,), ["dictation"]),
    "Left Option": ((LEFT_ALT,), ["translation"]),
    "Alt+Space": ((LEFT_ALT, SPACE), ["translation", "chat"]),
    "Ctrl+Alt+Space": ((LEFT_CONTROL, LEFT_ALT, SPACE), ["dictation"]),
    "Shift+Super+Space": ((LEFT_SHIFT, SUPER, SPACE), ["translation"]),
}
CHARACTER = (RIGHT_ALT, LETTER)  # Typed by these where the right Alt is AltGr.


@dataclasses.dataclass(frozen=True)
class Row:
    """One keyboard; `used` is the layout in use, from 0."""
    layouts: str
    variants: str = ""
    used: int = 0
    options: str = ""
    locked: int = 0
    latched: int = 0
    altgr: bool = False  # The key right of the space bar types characters.


ROWS = {
    "us": Row("us"),
    "de": Row("de", altgr=True),
    "fr": Row("fr", altgr=True),
    "bepo": Row("fr", "bepo", altgr=True),
    "us, dvorak in use": Row("us,us", ",dvorak", used=1),
    "dvorak, us in use": Row("us,us", "dvorak,", used=1),
    "fr, bepo in use": Row("fr,fr", ",bepo", used=1, altgr=True),
    "tr(f)": Row("tr", "f", altgr=True),
    "tr, tr(f) in use": Row("tr,tr", ",f", used=1, altgr=True),
    "ru": Row("ru"),
    "ru in use, us": Row("ru,us"),
    "us, ru in use": Row("us,ru", used=1),
    "ru in use, us, changed by Ctrl+Shift": Row("ru,us", options="grp:ctrl_shift_toggle"),
    "de, us, ru in use": Row("de,us,ru", used=2, altgr=True),  # Of the first layout for all.
    "us, ru, de in use": Row("us,ru,de", used=2, altgr=True),
    "us, ru, gr, de in use": Row("us,ru,gr,de", used=3, altgr=True),
    "us, de, gr, ru in use": Row("us,de,gr,ru", used=3),
    "us, Caps Lock": Row("us", locked=CAPS_LOCK),
    "de, Caps Lock": Row("de", locked=CAPS_LOCK, altgr=True),
    "us, Shift latched": Row("us", latched=SHIFT),
    "us, Shift locked": Row("us", locked=SHIFT),
    "de, AltGr locked": Row("de", locked=LEVEL_THREE, altgr=True),
    "us, Ctrl and Alt locked": Row("us", locked=CONTROL | ALT),
}


class _State(ctypes.Structure):
    _fields_ = [("group", ctypes.c_ubyte), ("locked_group", ctypes.c_ubyte),
                ("base_group", ctypes.c_ushort), ("latched_group", ctypes.c_ushort),
                ("mods", ctypes.c_ubyte), ("base_mods", ctypes.c_ubyte),
                ("latched_mods", ctypes.c_ubyte), ("locked_mods", ctypes.c_ubyte),
                ("rest", ctypes.c_ubyte * 16)]


class Keyboard:
    """The keyboard of the desktop: its layouts, and a hand on it."""

    CORE = 0x100  # The one that all programs follow.

    def __init__(self):
        self._x = ctypes.CDLL(ctypes.util.find_library("X11"))
        self._test = ctypes.CDLL(ctypes.util.find_library("Xtst"))
        self._display = Display()
        # The library understands the extension on displays that were opened with it alone.
        self._x.XkbQueryExtension(self._display.handle, None, None, None, None, None)
        self._usual = self._description()

    def close(self):
        self.rest()
        subprocess.run(["xkbcomp", "-w0", "-", self._name()], input=self._usual, check=True,
                       capture_output=True)
        self._display.close()

    def use(self, row):
        self.rest()
        # An option of its own resets those of the row before.
        run("setxkbmap", "-option", "", "-layout", row.layouts, "-variant", row.variants,
            *(["-option", row.options] if row.options else []))
        self._x.XkbLockGroup(self._display.handle, self.CORE, row.used)
        self._x.XkbLockModifiers(self._display.handle, self.CORE, 0xff, row.locked)
        self._x.XkbLatchModifiers(self._display.handle, self.CORE, 0xff, row.latched)
        self._x.XSync(self._display.handle, 0)

    def rest(self):
        """Nothing locked, nothing latched, the first layout."""
        self._x.XkbLockGroup(self._display.handle, self.CORE, 0)
        self._x.XkbLatchModifiers(self._display.handle, self.CORE, 0xff, 0)
        self._x.XkbLockModifiers(self._display.handle, self.CORE, 0xff, 0)
        self._x.XSync(self._display.handle, 0)

    def state(self):
        """All that typing must leave as it was."""
        state = _State()
        self._x.XkbGetState(self._display.handle, self.CORE, ctypes.byref(state))
        return (state.group, state.locked_mods, state.latched_mods, self._display.pressed_keys(),
                self._display.keyboard_map())

    @contextlib.contextmanager
    def grabbed(self):
        """While no other program gets a key; who watches the keyboard sees them all the same."""
        grab = [ctypes.c_int(1), ctypes.c_int(1), ctypes.c_int(1), ctypes.c_ulong(0)]
        wait_until("the grab", lambda: self._x.XGrabKeyboard(
            self._display.handle, self._display.root, *grab) == 0, PATIENCE)
        try:
            yield
        finally:
            self._x.XUngrabKeyboard(self._display.handle, ctypes.c_ulong(0))
            self._x.XSync(self._display.handle, 0)

    def press(self, *codes):
        for code in codes:
            self._test.XTestFakeKeyEvent(self._display.handle, code, 1, 0)
        for code in reversed(codes):
            self._test.XTestFakeKeyEvent(self._display.handle, code, 0, 0)
        self._x.XSync(self._display.handle, 0)

    def _description(self):
        return subprocess.run(["xkbcomp", "-w0", self._name(), "-"], check=True,
                              capture_output=True).stdout

    def _name(self):
        return run("sh", "-c", "printf %s \"$DISPLAY\"")


class Field:
    """A window with a text field of one toolkit."""

    def __init__(self, command, title):
        self._process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                         text=True)
        self._process.stdout.readline()  # "ready"
        self.process = self._process.pid
        self.window = wait_until(f"the window {title}",
                                  lambda: Stage.window_of(self._process.pid, title))

    def close(self):
        self._process.kill()
        self._process.wait()
        self._process.stdin.close()
        self._process.stdout.close()

    def bring_to_front(self):
        xdotool("windowactivate", "--sync", self.window)
        # The manager says so before the program has taken the keyboard.
        wait_until("the keyboard", lambda: xdotool("getwindowfocus").strip() == self.window)

    def clear(self):
        self._ask("clear")

    def text(self):
        return self._ask("text")

    def _ask(self, question):
        self._process.stdin.write(question + "\n")
        self._process.stdin.flush()
        return json.loads(self._process.stdout.readline())["text"]


class Program:
    """The program's keyboard alone."""

    def __init__(self, command):
        self._process = subprocess.Popen([command], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                         text=True)
        self._process.stdout.readline()  # "ready"
        self._operations = queue.SimpleQueue()
        self._reader = threading.Thread(target=self._read)
        self._reader.start()

    def close(self):
        self._process.stdin.close()
        self._process.wait()
        self._reader.join()
        self._process.stdout.close()

    def press(self, what, text, field):
        """Pastes or types the text into that field."""
        target = {"process": field.process, "window": int(field.window)}
        self._process.stdin.write(json.dumps({what: text, **target}) + "\n")
        self._process.stdin.flush()

    def operations(self, count):
        """The next ones that shortcuts have called; fewer when no more come."""
        operations = []
        with contextlib.suppress(queue.Empty):
            while len(operations) < count:
                operations.append(self._operations.get(timeout=2))
        return operations

    def _read(self):
        for line in self._process.stdout:
            self._operations.put(line.strip())


class Layouts:
    """The keyboards, a field of each toolkit, and the program's keyboard."""

    def __init__(self, program, editor):
        self._exit = contextlib.ExitStack()
        self.keyboard = self._closing(Keyboard())
        self.fields = {
            "GTK 3": self._closing(Field([str(GTK_EDITOR), "3.0", "A field of GTK 3"],
                                         "A field of GTK 3")),
            "GTK 4": self._closing(Field([str(GTK_EDITOR), "4.0", "A field of GTK 4"],
                                         "A field of GTK 4")),
            "Qt 6": self._closing(Field([editor, "--window-title", "A field of Qt"],
                                        "A field of Qt")),
        }
        self.program = self._closing(Program(program))

    def close(self):
        self._exit.close()

    def _closing(self, thing):
        self._exit.callback(thing.close)
        return thing

    def deliver(self, what, field):
        """What went wrong with a "paste" or "type" into the field that is in front; "" for nothing."""
        field.clear()
        before = self.keyboard.state()
        self.program.press(what, TEXT, field)
        try:
            wait_until("the text", lambda: field.text() == TEXT, PATIENCE)
            wait_until("the keyboard's rest", lambda: self.keyboard.state() == before, PATIENCE)
        except AssertionError as error:
            return f"{error}: {field.text()!r}, {before[:4]} became {self.keyboard.state()[:4]}"
        return ""

    def try_shortcuts(self, row):
        """What went wrong with the shortcuts of a keyboard; "" for nothing."""
        with self.keyboard.grabbed():  # Alt+Space would open the menu of the window in front.
            wrong = [self._recognise(name, *shortcut) for name, shortcut in SHORTCUTS.items()]
            operations = [] if row.altgr else ["dictation"]
            wrong.append(self._recognise("a key with the right Alt", CHARACTER, operations))
        return "; ".join(filter(None, wrong))

    def right_option(self):
        """The operations that the right Alt calls while a character is typed with it."""
        with self.keyboard.grabbed():
            self.keyboard.press(*CHARACTER)
            self.keyboard.press(LEFT_ALT)  # Whatever is called has been called before this.
        return self.program.operations(2)[:-1]

    def _recognise(self, name, codes, operations):
        self.keyboard.press(*codes)
        self.keyboard.press(LEFT_ALT)  # Whatever came too much has come before this.
        expected = [*operations, "translation"]
        recognised = self.program.operations(len(expected))
        return "" if recognised == expected else f"{name} was taken for {recognised[:-1]}"
