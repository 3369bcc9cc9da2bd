"""Sessions while the machine has no time, and into an editor that stops again and again: a text
stands in the editor once or is said to be on the clipboard, never twice and never in part unsaid.

usage: endurance_test.py PROGRAM SERVICE EDITOR ROUNDS [SEED]

ROUNDS sessions in each of four editors while every processor and the disk are busy, and as many into
the test editor, which hangs for 0.3 to 3 s at a random moment of each.
"""

import contextlib
import os
import random
import sys
import tempfile
import threading
import time

from editors import EDITORS, clipboard
from stage import LEFT_ALT, Stage, wait_until
from target import Target

SENTENCE = "hello there"
DELIVERED = "自动输入已完成"
BROKEN_OFF = "保存在剪贴板 · 逐字输入被打断，文字不完整"
BUSY_EDITORS = ("mousepad", "gnome-text-editor", "featherpad", "chromium-textarea")
LATE = 3  # Seconds; a second copy would have arrived by then.


def check(condition, *explanation):
    if not condition:
        raise AssertionError(" ".join(str(part) for part in explanation))


def answer_for(name, turn):
    return f"Sitzung {turn} in {name}: 会议改到 10:00 — “Zoë” 🎉"


@contextlib.contextmanager
def busy_machine(stage):
    """Every processor counts, and the disk writes, until the end."""
    file = stage.folder("load") / "written"
    loads = [["sh", "-c", "while :; do :; done"] for _ in range(os.cpu_count())]
    loads.append(["sh", "-c", "while dd if=/dev/zero of=\"$0\" bs=1M count=64 conv=fsync 2>/dev/null; "
                  "do :; done", str(file)])
    processes = [stage.start(*load) for load in loads]
    try:
        yield
    finally:
        for process in processes:
            process.kill()
            process.wait()


def sessions_on_a_busy_machine(stage, name, rounds):
    editor = EDITORS[name](stage)
    editor.bring_to_front()
    with busy_machine(stage):
        for turn in range(rounds):
            stage.model.answer = answer_for(name, turn)
            record = stage.dictate(LEFT_ALT, SENTENCE)
            check(record["delivery"] == DELIVERED, name, turn, "delivered as", record["delivery"])
            time.sleep(LATE / 2)
            # What is copied stays selected, and the next text takes its place.
            text = editor.text()
            check(text == stage.model.answer, name, turn, "the editor holds", repr(text))
    editor.process.kill()
    print(f"{name}: {rounds} texts, each once", flush=True)


def sessions_into_a_hanging_editor(stage, test_editor, rounds, chance):
    for turn in range(rounds):
        habits = chance.choice(([], [], ["--swallow-paste"], ["--bare"]))
        begins, lasts = chance.uniform(0, 4), chance.uniform(0.3, 3)
        name = f"the test editor {habits}, hanging after {begins:.2f} s for {lasts:.2f} s"
        stage.model.answer = answer_for("an editor that hangs", turn)
        target = Target(test_editor, "Target", *habits)
        hang = threading.Timer(begins, target.stop)
        wake = threading.Timer(begins + lasts, target.resume)
        try:
            target.bring_to_front_and_settle()
            hang.start()
            wake.start()
            record = stage.dictate(LEFT_ALT, SENTENCE)
            wake.join()
            check_once(name, stage.model.answer, record["delivery"], target)
        finally:
            wake.join()
            target.close()
        print(f"{name}: {record['delivery']}", flush=True)


def check_once(name, answer, delivery, target):
    """The text stands there once when that is announced, and otherwise not in whole."""
    if delivery == DELIVERED:
        wait_until(f"the text in {name}", lambda: target.text() == answer, 10)
    time.sleep(LATE)
    text = target.text()
    if delivery == DELIVERED:
        check(text == answer, name, "holds", repr(text))
    elif delivery == BROKEN_OFF:
        check(text != answer and answer.startswith(text), name, "holds", repr(text))
    else:
        check(text == "", name, "is said to hold nothing, and holds", repr(text))
        check(clipboard() == answer, "the clipboard holds", repr(clipboard()))


def main():
    program, service, test_editor, rounds = sys.argv[1:5]
    seed = int(sys.argv[5]) if len(sys.argv) > 5 else random.randrange(1_000_000)
    print(f"seed {seed}", flush=True)
    with tempfile.NamedTemporaryFile("w+") as log:
        stage = Stage(program, service, {}, use_model=True, log=log)
        try:
            for name in BUSY_EDITORS:
                sessions_on_a_busy_machine(stage, name, int(rounds))
            sessions_into_a_hanging_editor(stage, test_editor, int(rounds), random.Random(seed))
        except BaseException:
            log.seek(0)
            sys.stderr.writelines(log.readlines()[-60:])
            raise
        finally:
            stage.close()


if __name__ == "__main__":
    main()
