"""Press, speak, press: whole sessions on a real desktop.

usage: session_test.py PROGRAM SERVICE CASE     CASE: dictation, chat, defaults, or an editor's name
"""

import os
import sys
import tempfile
import time

from editors import EDITORS
from stage import LEFT_ALT, RIGHT_ALT, Stage, run, sound

SENTENCE = "please send the report to the office before friday"
MIXED = ("会议改到 Thursday 10:00 🎉，请把 report-v2.pdf 发给张小明。\"Fine\", she said — naïve café, "
         "¿verdad? 数字 ３４５ 与 £99，繁體字「測試」, emoji 👩‍💻🚀, tab-free {code: [1, 2]} & <b>tags</b>; "
         "最后一句：明天见！")
MIXED = (MIXED * 3)[:300].strip()


def check(condition, *explanation):
    if not condition:
        sys.exit(" ".join(str(part) for part in explanation))


def check_outcome(stage, record, editor, mode):
    text = editor.text()
    check(text == record["finalText"], "the editor holds", repr(text), "and not",
          repr(record["finalText"]))
    check(record["mode"] == mode, "recorded as", record["mode"])
    check(record["delivery"] == "自动输入已完成", "delivered as", record["delivery"])
    check(not list(stage.recordings.glob("tavrin-*")), "the recording is still there")
    print(f"{mode}: {record['audioSeconds']:.2f} s spoken, {record['processingSeconds']:.2f} s "
          f"from the second press to the text, {len(text)} characters")


def test_dictation(stage):
    """A sentence, polished by the service's rules, with other sound muted meanwhile."""
    before = sound()
    editor = EDITORS["mousepad"](stage)
    editor.bring_to_front()
    record = stage.dictate(RIGHT_ALT, SENTENCE)
    check_outcome(stage, record, editor, "dictation")
    heard = set(record["transcript"].lower().split())
    check(len(heard & set(SENTENCE.split())) >= 6, "heard", repr(record["transcript"]))
    check(record["finalText"][0].isupper() and record["finalText"].endswith("."),
          "not polished:", repr(record["finalText"]))
    check(sound() == before, "the sound settings have changed:", before, sound())


def test_editor(stage, name):
    """A text of every kind of character, as a translation, into the editor."""
    stage.model.answer = MIXED
    editor = EDITORS[name](stage)
    editor.bring_to_front()
    record = stage.dictate(LEFT_ALT, SENTENCE)
    check(record["finalText"] == MIXED, "the service answered", repr(record["finalText"]))
    check(record.get("targetLanguage") == "english", "translated into", record.get("targetLanguage"))
    check_outcome(stage, record, editor, "translation")


def test_chat(stage):
    stage.model.answer = "The office opens at nine."
    editor = EDITORS["mousepad"](stage)
    editor.bring_to_front()
    record = stage.dictate("ctrl+alt+space", "when does the office open")
    check_outcome(stage, record, editor, "chat")


def test_defaults(stage):
    """The keys of a fresh installation, under a window manager that has Alt+Space for its menus."""
    editor = EDITORS["mousepad"](stage)
    editor.bring_to_front()
    everything = ""
    for key, mode in ((RIGHT_ALT, "dictation"), ("ctrl+alt+space", "translation"),
                      ("shift+super+space", "chat")):
        stage.model.answer = f"This is the {mode}."
        record = stage.dictate(key, SENTENCE)
        check(record["mode"] == mode, key, "started", record["mode"])
        everything += stage.model.answer
    # A program may write a space of its own at a press of the space bar with Shift and Super.
    check(editor.text().replace(" ", "") == everything.replace(" ", ""), "the editor holds",
          repr(editor.text()))
    check(stage.preference("translationShortcutIdentifiers") == ["controlOptionSpace"],
          "translation has", stage.preference("translationShortcutIdentifiers"))


def main():
    program, service, case = sys.argv[1:]
    dictation = case == "dictation"
    settings = {
        "dictation": {"muteDuringRecording": True, "preferredMicrophoneUID": "virtmic"},
        "defaults": {"translationShortcutIdentifiers": None, "chatShortcutIdentifiers": None},
    }.get(case, {})
    started = time.monotonic()
    stage = Stage(program, service, settings, use_model=not dictation)
    try:
        if dictation:
            test_dictation(stage)
        elif case == "chat":
            test_chat(stage)
        elif case == "defaults":
            test_defaults(stage)
        else:
            test_editor(stage, case)
    except BaseException:
        # What a person would have seen, for whoever looks into it.
        run("import", "-window", "root", os.path.join(tempfile.gettempdir(), f"tavrin-{case}.png"))
        raise
    finally:
        stage.close()
    print(f"{case}: {time.monotonic() - started:.1f} s in all")


if __name__ == "__main__":
    main()
