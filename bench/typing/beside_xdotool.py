"""A thousand mixed characters, typed by Tavrin and by xdotool into real editors.

usage: beside_xdotool.py TYPIST OBSERVER [CHARACTERS]

Ends with 1 when a limit is missed: Tavrin is faster, gets every character right, and leaves the
keyboard's map as it was.
"""

import os
import pathlib
import subprocess
import sys
import time
from typing import NamedTuple

TOP = pathlib.Path(__file__).parents[2]
sys.path[:0] = [str(TOP / "tests/desktop/session"), str(TOP / "bench/session")]

from editors import EDITORS  # noqa: E402
from observer import Observer  # noqa: E402
from stage import Place, run, wait_until  # noqa: E402
from text import text, wrong_characters  # noqa: E402

EDITOR_NAMES = ("mousepad", "featherpad", "xterm")
SILENCE = 3  # Seconds without a character: nothing comes any more.
PATIENCE = 600  # Seconds.


class Typing(NamedTuple):
    seconds: float
    wrong: int
    map_kept: bool


def keyboard_map():
    return run("xkbcomp", "-w0", os.environ["DISPLAY"], "-")


class Watch:
    """When an editor took in a character last, seen from outside."""

    def __init__(self, editor, observer):
        self._editor, self._observer = editor, observer
        self._size = 0
        self._began = self.last_change = time.monotonic()

    def look(self):
        inserted = self._observer.last("inserted")
        if inserted:
            self.last_change = max(self.last_change, inserted.time)
        # A terminal tells nobody, but what is typed there goes into a file.
        typed = getattr(self._editor, "typed", None)
        if typed and typed.exists() and typed.stat().st_size != self._size:
            self._size = typed.stat().st_size
            self.last_change = time.monotonic()

    def seconds(self):
        """From the beginning to the last character."""
        if self.last_change == self._began:
            raise AssertionError("no character was seen to arrive")
        return self.last_change - self._began

    def is_silent(self):
        self.look()
        return time.monotonic() - self.last_change > SILENCE


def type_into(name, observer, command, wanted):
    """What came of it when one program typed into one editor that has just been opened."""
    place = Place()
    try:
        file = place.folder("input") / "text"
        file.write_text(wanted, encoding="utf-8")
        editor = EDITORS[name](place)
        editor.bring_to_front(PATIENCE)  # The window manager still follows the keyboard's changes.
        before = keyboard_map()
        watch = Watch(editor, observer)
        typist = place.start(*command, str(file), stdin=subprocess.PIPE)
        wait_until("the end of the typing", watch.is_silent, patience=PATIENCE)
        typist.stdin.close()
        typist.wait()
        return Typing(watch.seconds(), wrong_characters(wanted, editor.text()),
                      keyboard_map() == before)
    finally:
        place.close()


def row(name, who, typing, verdict=""):
    kept = "as before" if typing.map_kept else "changed"
    print(f"{name:<12}{who:<10}{typing.seconds:>8.1f} s{typing.wrong:>8}   {kept:<12}{verdict}".rstrip())


def compare(name, observer, typist, wanted):
    """Whether the limits are kept."""
    ours = type_into(name, observer, [typist], wanted)
    peer = type_into(name, observer, ["xdotool", "type", "--clearmodifiers", "--file"], wanted)
    kept = ours.wrong == 0 and ours.map_kept and ours.seconds < peer.seconds
    row(name, "Tavrin", ours, "kept" if kept else "MISSED")
    row("", "xdotool", peer)
    return kept


def main():
    typist, observer_path, *rest = sys.argv[1:]
    wanted = text(int(rest[0]) if rest else 1000)
    print(f"{len(wanted)} characters, {len(set(wanted))} different ones")
    print(f"{'editor':<12}{'typed by':<10}{'time':>10}{'wrong':>8}   {'keyboard':<12}"
          "(Tavrin: faster, 0 wrong, keyboard as before)")
    observer = Observer(observer_path)
    try:
        kept = [compare(name, observer, typist, wanted) for name in EDITOR_NAMES]
    finally:
        observer.close()
    sys.exit(0 if all(kept) else 1)


if __name__ == "__main__":
    main()
