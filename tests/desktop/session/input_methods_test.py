"""What arrives while an input method is on, in editors of every toolkit.

usage: input_methods_test.py TYPIST EDITOR [ibus|fcitx5|fcitx5-alone]…     EDITOR: the test editor

Pastes and types, each without and with an open composition, and prints a table in Markdown of what
became of the text and of what was being composed. Ends with 1 when a row is not as it should be.
"""

import sys
import time

from editors import TEXTAREA, Editor, chromium
from input_methods import COMPOSED, SPELT, Fcitx5, Fcitx5Alone, IBus, Typist
from stage import Place, wait_until, xdotool

TEXT = "晚上好，Tavrin 把 3 件事, done. “x” Ω"
INPUT_METHODS = {"ibus": IBus, "fcitx5": Fcitx5, "fcitx5-alone": Fcitx5Alone}
TOOLKITS = {"mousepad": "GTK 3", "gnome-text-editor": "GTK 4", "featherpad": "Qt 5",
            "tavrin-test-editor": "Qt 6", "chromium": "Chromium"}
PATIENCE = 20


class Case:
    """An editor that has the keyboard and an input method that is on in it."""

    def __init__(self, typist, method, editor, name):
        self.typist, self.method, self.editor, self.name = typist, method, editor, name
        # Its modules turn the order of fast keys about, whoever types: what is typed is written.
        mixes = method.NAME == "ibus" and TOOLKITS[name] in ("GTK 4", "Qt 5", "Qt 6")
        self.types = method.LETS_GO and not mixes

    def begin(self):
        # Otherwise no row would tell anything.
        wait_until(f"{self.method.NAME} in {self.name}", self.composes)

    def composes(self):
        self.editor.bring_to_front()
        self.method.switch_on()
        self.clear()
        xdotool("type", "--delay", "100", SPELT + " ")
        return self.typist.reads(COMPOSED, 5)

    def clear(self):
        def empty():
            for key in ("Escape", "ctrl+a", "Delete"):
                xdotool("key", key)
                time.sleep(0.1)
            return self.typist.reads("", 1)
        wait_until("an empty field", empty)

    def kept(self, composing):
        """What is to stand there of what was being composed."""
        return SPELT if composing and self.method.NAME == "fcitx5" else ""

    def bring(self, way, expected):
        if way == "type" and not self.types:
            self.typist.tell(type=TEXT)
            time.sleep(1)  # Not one key may come, so there is nothing to wait for.
            # Accessibility leaves a program alone for a while that was slow to answer, and an answer
            # that comes late does not undo the write.
            wait_until("the write", lambda: self.typist.tell(write=TEXT)["done"]
                       or self.typist.reads(TEXT, 2), PATIENCE)
        else:
            self.typist.tell(**{way: TEXT})
        self.typist.reads(expected, PATIENCE)
        wait_until("the engine", self.method.is_on, PATIENCE)

    def run(self, composing, way):
        """A row of the table, and whether it is as it should be."""
        self.clear()
        if composing:
            xdotool("type", "--delay", "60", SPELT)
            time.sleep(0.5)
        expected = self.kept(composing) + TEXT
        self.bring(way, expected)
        try:
            text = self.editor.text()
        except AssertionError:
            text = "nothing could be copied"  # An open composition swallows the shortcut, too.
        right = text == expected
        arrived = "whole, once" if right else f"WRONG: {text}"
        if not composing:
            composition = ""
        else:
            composition = f"`{SPELT}` before the text" if self.kept(composing) else "dropped"
        means = {"paste": "pasting", "type": "typing" if self.types else "not typed, but written"}
        method = self.method.NAME if self.method.LETS_GO else f"{self.method.NAME}, pinyin alone"
        cells = (method, TOOLKITS[self.name], means[way], "yes" if composing else "no",
                 arrived, composition)
        return cells, right


def print_row(cells):
    print("| " + " | ".join(cells) + " |", flush=True)


def start_editors(place, method, test_editor, names):
    commands = {name: [name] for name in names} | {"tavrin-test-editor": [test_editor]}
    own = {"XDG_CONFIG_HOME": method.environment["XDG_CONFIG_HOME"]}  # Toolkits look there for ibus.
    editors = {name: chromium(place, TEXTAREA) if name == "chromium" else
               Editor(place, commands[name], name, own) for name in names}
    for editor in editors.values():  # One that comes later would take the keyboard from another.
        editor.wait_for_window()
    return editors


def check_crash(place, case, typist_program):
    """A typist that dies while it types leaves the engine off; the next one switches it on."""
    case.clear()
    dying = Typist(place, typist_program)
    dying.tell(begin=TEXT * 50)
    wait_until("the engine's end", lambda: not case.method.is_on())
    dying.process.kill()
    dying.process.wait()
    time.sleep(0.3)
    stayed_off = not case.method.is_on()
    Typist(place, typist_program)
    wait_until("the engine after a crash", case.method.is_on, PATIENCE)
    return stayed_off


def check(place, method, typist_program, test_editor):
    right = True
    names = TOOLKITS if method.LETS_GO else ["tavrin-test-editor"]
    editors = start_editors(place, method, test_editor, names)
    typist = Typist(place, typist_program)
    for name, editor in editors.items():
        case = Case(typist, method, editor, name)
        case.begin()
        for composing in (False, True) if method.LETS_GO else (False,):
            for way in ("paste", "type"):
                cells, row_right = case.run(composing, way)
                print_row(cells)
                right &= row_right
        if name == "mousepad" and not check_crash(place, case, typist_program):
            print("the engine was on again before anybody put it back", file=sys.stderr)
            right = False
        editor.process.terminate()
    return right


def main():
    typist_program, test_editor, *names = sys.argv[1:]
    print_row(("Input method", "Editor", "By", "While composing", "Text", "The composition"))
    print_row(["---"] * 6)
    right = True
    for name in names or INPUT_METHODS:
        place = Place()
        try:
            method = INPUT_METHODS[name](place)
            right &= check(place, method, typist_program, test_editor)
        finally:
            place.close()
    sys.exit(0 if right else 1)


if __name__ == "__main__":
    main()
