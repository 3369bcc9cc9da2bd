"""Whole sessions, with the time of every stage.

usage: session.py PROGRAM SERVICE OBSERVER [RUNS [EDITOR]]

Presses, speaks and presses again, RUNS times (30 when not told otherwise), into an editor in front
(mousepad); then some more sessions whose editor hangs. Ends with 1 when a limit is missed.
"""

import os
import pathlib
import signal
import statistics
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests/desktop/session"))

from editors import EDITORS  # noqa: E402
from log import Log  # noqa: E402
from observer import Observer  # noqa: E402
from stage import RIGHT_ALT, Stage, run, wait_until  # noqa: E402

SENTENCE = "please send the report to the office before friday"
PASTE = ("37", "55")  # Control and v.
PANEL = (430, 145)
PANEL_BOTTOM = 54  # Pixels of the screen below the panel.
ACTIVATION_DELAY = 260  # Fixed: the target gets that long to come to the front.
LIMITS = {"shown": 60, "own share": 30, "blocked": 50, "blocked, hung": 500}  # Milliseconds.


def milliseconds(begin, end):
    return (end - begin) * 1000


def percentile(values, share):
    """The smallest value that so large a share does not exceed."""
    ordered = sorted(values)
    return ordered[max(0, -(-len(ordered) * share // 100) - 1)]


def place_in_panel():
    """A pixel of the panel that holds neither text nor light."""
    width, height = map(int, run("xdotool", "getdisplaygeometry").split())
    return (width - PANEL[0]) // 2 + 12, height - PANEL_BOTTOM - PANEL[1] // 2


class Bench:
    def __init__(self, stage, log, observer, editor):
        self._stage, self._log, self._observer = stage, log, observer
        window = wait_until("the main window", lambda: stage.window_of(stage.program.pid, "^Tavrin$"))
        observer.watch(window, *place_in_panel())
        self._editor = EDITORS[editor](stage)
        self._editor.bring_to_front()

    def healthy(self):
        """What one session gave; milliseconds."""
        figures = self._record()
        finished = self._observer.press(RIGHT_ALT)
        inserted = self._observer.wait_for("inserted", finished)
        stages = self._end()
        figures["blocked"], figures["machine"] = self._observer.longest_waits()
        self._check(inserted)
        figures["text"] = milliseconds(finished, inserted.time)
        figures["own share"] = (figures["text"] - stages["recogniser"] - stages["service"]
                                - ACTIVATION_DELAY)
        figures["by hand"] = self._paste_by_hand()
        return {**figures, **stages}

    def hung(self):
        """The longest silence of a session whose editor hangs while it is processed."""
        self._record()
        finished = self._observer.press(RIGHT_ALT)
        editor = self._editor.process.pid
        os.kill(editor, signal.SIGSTOP)
        try:
            self._end()
            blocked, _ = self._observer.longest_waits()
        finally:
            os.kill(editor, signal.SIGCONT)
        self._check(self._observer.wait_for("inserted", finished))
        return blocked

    def _record(self):
        self._observer.longest_waits()
        pressed = self._observer.press(RIGHT_ALT)
        recording = self._observer.wait_for("recording", pressed)
        panel = self._observer.wait_for("changed", pressed)
        figures = {"recorder": milliseconds(pressed, recording.time),
                   "panel": milliseconds(pressed, panel.time)}
        figures["shown"] = max(figures.values())
        time.sleep(0.5)
        self._stage.say(SENTENCE)
        time.sleep(0.3)
        return figures

    def _end(self):
        stages = self._log.next_stages()
        wait_until("the panel's end", lambda: not self._stage.panel_is_visible())
        return stages

    def _check(self, inserted):
        expected = self._stage.history()[0]["finalText"]
        if inserted.detail != expected:
            sys.exit(f"the editor took in {inserted.detail!r} and not {expected!r}")

    def _paste_by_hand(self):
        """How long the editor itself takes to paste the same text."""
        pressed = self._observer.press(*PASTE)
        return milliseconds(pressed, self._observer.wait_for("inserted", pressed).time)


ROWS = (
    ("first press to the panel drawn", "panel", None),
    ("first press to the recorder running", "recorder", None),
    ("  both", "shown", "shown"),
    ("second press to the recogniser called", "stop", None),
    ("recogniser", "recogniser", None),
    ("text service", "service", None),
    ("delivery with its checks", "delivery", None),
    ("closing: history, panel, sound", "closing", None),
    ("second press to the text in the editor", "text", None),
    ("  without recogniser, service, fixed delay", "own share", "own share"),
    ("  the editor alone: a paste by hand", "by hand", None),
)


def print_row(title, values, limit, judged):
    """Whether the limit is kept."""
    kept = limit is None or judged <= limit
    verdict = "" if limit is None else f"{limit:6d} ms  {'kept' if kept else 'MISSED'}"
    print(f"{title:<44}{statistics.median(values):9.1f}{percentile(values, 95):9.1f}"
          f"{max(values):9.1f}  {verdict}".rstrip())
    return kept


def print_table(sessions, hung):
    """Whether every limit is kept."""
    print(f"{f'{len(sessions)} sessions, ms':<44}{'p50':>9}{'p95':>9}{'longest':>9}  {'limit':>9}")
    kept = True
    for title, key, limit in ROWS:
        values = [session[key] for session in sessions]
        kept &= print_row(title, values, LIMITS.get(limit), percentile(values, 95))
    blocked = [session["blocked"] for session in sessions]
    kept &= print_row("main thread blocked", blocked, LIMITS["blocked"], max(blocked))
    print_row("  the machine: observer kept from running",
              [session["machine"] for session in sessions], None, None)
    kept &= print_row(f"main thread blocked, editor hung ({len(hung)} sessions)", hung,
                      LIMITS["blocked, hung"], max(hung))
    return kept


def main():
    program, service, observer_path, *rest = sys.argv[1:]
    runs = int(rest[0]) if rest else 30
    editor = rest[1] if len(rest) > 1 else "mousepad"
    folder = pathlib.Path(os.environ["XDG_RUNTIME_DIR"])
    log = Log(folder / "tavrin.log")
    stage = Stage(program, service, {}, use_model=False, log=log.file)
    observer = Observer(observer_path)
    try:
        bench = Bench(stage, log, observer, editor)
        sessions = [bench.healthy() for _ in range(runs)]
        hung = [bench.hung() for _ in range(max(1, runs // 3))]
    finally:
        observer.close()
        stage.close()
        log.close()
    sys.exit(0 if print_table(sessions, hung) else 1)


if __name__ == "__main__":
    main()
