"""Ends the program during recordings: it goes at once and leaves the sound as it was.

usage: termination_test.py PROGRAM SERVICE EDITOR
"""

import signal
import sys
import time

from stage import LEFT_ALT, PATIENCE, Stage, run, sound, wait_until, xdotool
from target import Target

SETTINGS = {"muteDuringRecording": True, "preferredMicrophoneUID": "usbmic"}


def check(condition, *explanation):
    if not condition:
        sys.exit(" ".join(str(part) for part in explanation))


def sound_is_changed():
    return (run("pactl", "get-default-source").strip() == "usbmic"
            and run("pactl", "get-sink-mute", "@DEFAULT_SINK@").strip() == "Mute: yes")


def start_recording(stage, target):
    target.bring_to_front_and_settle()
    stage.start_recording(LEFT_ALT)
    wait_until("the other microphone and the mute", sound_is_changed)


def ask_whether_to_cancel(stage):
    wait_until("the panel", stage.panel_is_visible)
    xdotool("key", "Escape")
    wait_until("the question", lambda: stage.panel_shows("录音已暂停"))


def check_end(stage, number, before):
    """Sends the signal and checks what the program leaves behind."""
    started = time.monotonic()
    stage.program.send_signal(number)
    status = stage.program.wait(PATIENCE)
    print(f"{signal.Signals(number).name}: gone after {time.monotonic() - started:.2f} s", flush=True)
    check(status == 0, "it ended with", status)
    check(sound() == before, "the sound was", before, "and is", sound())
    left = [file.name for file in stage.recordings.iterdir()]
    check(not left, "left behind:", left)


def main():
    before = sound()
    stage = Stage(*sys.argv[1:3], SETTINGS, use_model=True)
    target = Target(sys.argv[3], "Target")
    try:
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            start_recording(stage, target)
            check_end(stage, number, before)
            stage.start_program()
        start_recording(stage, target)
        ask_whether_to_cancel(stage)
        check_end(stage, signal.SIGTERM, before)
    finally:
        target.close()
        stage.close()
        # Whatever went wrong, the next test finds the desktop as it was.
        run("pactl", "set-default-source", before[0].strip())
        run("pactl", "set-sink-mute", "@DEFAULT_SINK@", "0")


if __name__ == "__main__":
    main()
