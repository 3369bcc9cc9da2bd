"""Corrects a delivered text by hand, in real editors, and finds the new name in the dictionary.

usage: learning_test.py PROGRAM SERVICE EDITOR
"""

import sys
import time

from editors import EDITORS
from stage import LEFT_ALT, Stage, wait_until, xdotool
from target import Target

# Each its own: a name that is in the dictionary already is no news.
NAMES = {"mousepad": "OpenAI", "featherpad": "node.js", "chromium-textarea": "GPT4"}
BEFORE, WRONG, AFTER = "We use ", "open ai", " daily."


def check(condition, *explanation):
    if not condition:
        sys.exit(" ".join(str(part) for part in explanation))


def dictionary(stage):
    return stage.preference("personalDictionary") or []


def correct(name):
    """Goes to the wrong words, and types the right one over them as a person does."""
    xdotool("key", "Home")
    xdotool("key", "--repeat", str(len(BEFORE)), "Right")
    xdotool("key", "--repeat", str(len(WRONG)), "shift+Right")
    xdotool("type", "--delay", "60", name)


def deliver(stage, window):
    window.bring_to_front()
    time.sleep(2)  # Until it has told accessibility of its focus.
    record = stage.dictate(LEFT_ALT, "hello there")
    check(record["delivery"] == "自动输入已完成", "delivered as", record["delivery"])


def test_editor(stage, editor_name, name):
    editor = EDITORS[editor_name](stage)
    deliver(stage, editor)
    time.sleep(1)
    correct(name)
    wait_until(f"{name} in the dictionary, from {editor_name}", lambda: name in dictionary(stage), 20)
    text = editor.text()
    check(text == BEFORE + name + AFTER, editor_name, "holds", repr(text))
    print(f"{editor_name}: {name}", flush=True)


def test_password_field(stage, target):
    """What is typed there is nobody's word."""
    before = dictionary(stage)
    deliver(stage, target)
    correct("S3cret")
    time.sleep(8)
    check(dictionary(stage) == before, "learned", dictionary(stage))


def main():
    stage = Stage(*sys.argv[1:3], {}, use_model=True)
    target = None
    try:
        stage.model.answer = BEFORE + WRONG + AFTER
        for editor, name in NAMES.items():
            test_editor(stage, editor, name)
        target = Target(sys.argv[3], "Password", "--password")
        test_password_field(stage, target)
    finally:
        if target:
            target.close()
        stage.close()


if __name__ == "__main__":
    main()
