"""Corrects a delivered text by hand, in real editors and through an input method, and finds the new
name in the dictionary and among the terms that the recogniser is told of.

usage: learning_test.py PROGRAM SERVICE EDITOR
"""

import re
import sys
import time

from editors import EDITORS
from input_methods import COMPOSED, SPELT, IBus
from stage import LEFT_ALT, Stage, wait_until, xdotool
from stand_in import StandIn
from target import Target

# Each its own: a name that is in the dictionary already is no news.
NAMES = {"mousepad": "OstrandSoft", "featherpad": "orla.js", "chromium-textarea": "QX4",
         "libreoffice-writer": "zPhone"}
BEFORE, WRONG, AFTER = "We use ", "open ai", " daily."


class Recogniser(StandIn):
    """A speech server, which remembers the terms that each request favours."""

    def __init__(self):
        self.favoured = []
        super().__init__()

    def answer_to(self, body):
        prompt = re.search(rb'name="prompt"[^\r]*\r\n(?:[^\r]+\r\n)*\r\n(.*?)\r\n--', body, re.S)
        self.favoured.append(prompt[1].decode().split(", ") if prompt else [""])
        return {"text": "hello there"}


def check(condition, *explanation):
    if not condition:
        sys.exit(" ".join(str(part) for part in explanation))


def dictionary(stage):
    return stage.preference("personalDictionary") or []


def correct(name, before=BEFORE, wrong=WRONG):
    """Goes to the wrong words, and types the right one over them as a person does."""
    xdotool("key", "Home")
    xdotool("key", "--repeat", str(len(before)), "Right")
    xdotool("key", "--repeat", str(len(wrong)), "shift+Right")
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


def test_input_method(stage):
    """A Chinese word is composed over the wrong one. It counts with its second correction."""
    method = IBus(stage)
    editor = EDITORS["gedit"](stage)
    before, wrong, after = "客户叫", "世界", "。"
    stage.model.answer = before + wrong + after
    for time_of_correction in ("first", "second"):
        deliver(stage, editor)
        time.sleep(1)
        method.switch_on()
        correct(SPELT + " ", before, wrong)
        wait_until("the composed word", lambda: editor.text() == before + COMPOSED + after, 10)
        if time_of_correction == "first":
            time.sleep(8)
            check(COMPOSED not in dictionary(stage), "learned at once:", dictionary(stage))
            xdotool("key", "ctrl+a", "Delete")
    wait_until(f"{COMPOSED} in the dictionary", lambda: COMPOSED in dictionary(stage), 20)
    print(f"gedit with ibus: {COMPOSED}", flush=True)


def main():
    recogniser = Recogniser()
    stage = Stage(*sys.argv[1:3], {"linuxSpeechEngine": "http", "linuxSpeechHttpUrl": recogniser.url},
                  use_model=True)
    target = None
    try:
        stage.model.answer = BEFORE + WRONG + AFTER
        for editor, name in NAMES.items():
            test_editor(stage, editor, name)
        target = Target(sys.argv[3], "Password", "--password")
        test_password_field(stage, target)
        check(set(NAMES.values()) <= set(recogniser.favoured[-1]), "favoured:", recogniser.favoured)
        check(not set(NAMES.values()) & set(recogniser.favoured[0]), "favoured before they were learned")
        test_input_method(stage)
    finally:
        if target:
            target.close()
        stage.close()
        recogniser.close()


if __name__ == "__main__":
    main()
