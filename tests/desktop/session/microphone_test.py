"""Press, speak, press on a machine without a microphone, and once one is plugged in.

usage: microphone_test.py PROGRAM SERVICE EDITOR
"""

import subprocess
import sys

from stage import LEFT_ALT, Stage, accessible_texts, run, wait_until, xdotool
from target import Target

SENTENCE = "hello there"
REASON = "没有可用的麦克风。"


def check(condition, *explanation):
    if not condition:
        sys.exit(" ".join(str(part) for part in explanation))


def microphones():
    """What is needed to plug the desktop's microphones in again."""
    return [line.split("\t")[2] for line in run("pactl", "list", "short", "modules").splitlines()
            if "\tmodule-remap-source\t" in line]


def unplug_all():
    run("pactl", "unload-module", "module-remap-source")
    wait_until("the end of the microphones", lambda: not microphones())


def plug_in(arguments):
    for each in arguments:
        run("pactl", "load-module", "module-remap-source", *each.split())
    run("pactl", "set-default-source", "virtmic")


def test_without_a_microphone(stage):
    """What the loudspeakers play meanwhile is nobody's dictation."""
    with subprocess.Popen(["paplay", "--device=speakers", stage.voice(SENTENCE)]):
        xdotool("key", LEFT_ALT)
        wait_until("the reason", lambda: any(REASON in text for text in
                                             accessible_texts(stage.program.pid)))
    check(not stage.panel_is_visible(), "the panel shows a recording")
    check(not list(stage.recordings.iterdir()), "something has been recorded")
    xdotool("key", "Return")
    wait_until("the end of the alert", lambda: not any(
        REASON in text for text in accessible_texts(stage.program.pid)))
    check(not stage.model.requests, "something was sent")


def main():
    plugged = microphones()
    stage = Stage(*sys.argv[1:3], {}, use_model=True)
    target = Target(sys.argv[3], "Target")
    try:
        stage.model.answer = "Hello there."
        unplug_all()
        target.bring_to_front_and_settle()
        test_without_a_microphone(stage)
        plug_in(plugged)
        target.bring_to_front_and_settle()
        stage.dictate(LEFT_ALT, SENTENCE)
        check(target.text() == stage.model.answer, "the editor holds", repr(target.text()))
    finally:
        target.close()
        stage.close()
        if not microphones():  # The next test finds the desktop as it was.
            plug_in(plugged)


if __name__ == "__main__":
    main()
