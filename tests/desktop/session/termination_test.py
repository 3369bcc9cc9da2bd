"""Ends the program during recordings and deliveries: it goes at once, and leaves sound and keyboard
as they were.

usage: termination_test.py PROGRAM SERVICE EDITOR
"""

import signal
import sys
import time

from display import Display
from editors import clipboard
from stage import LEFT_ALT, PATIENCE, Stage, run, sound, wait_until, xdotool
from target import Target

TEXT = "Bring 3 copies to Zoë, 谢谢"
DELIVERY_GOES_ON = 1  # Seconds; a target that does not answer is waited for much longer.
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


def deliver_to_a_stopped_target(stage, target):
    """Stops the target while its text is made, and waits until the program waits for it."""
    stage.model.answer = TEXT
    stage.model.before_answer = target.stop
    start_recording(stage, target)
    run("paplay", "--device=micfeed2", stage.voice("hello there"))  # Which feeds this microphone.
    time.sleep(0.3)
    xdotool("key", LEFT_ALT)
    wait_until("the text on the clipboard", lambda: clipboard() == TEXT)
    time.sleep(DELIVERY_GOES_ON)
    check(not stage.history(), "the delivery was over too soon:", stage.history())


def check_keyboard_and_clipboard(display, keys):
    check(not display.pressed_keys(), "pressed:", display.pressed_keys())
    check(display.keyboard_map() == keys, "keys are still borrowed")
    # A clipboard manager has the text, or nobody; whoever asks learns that without waiting.
    started = time.monotonic()
    check(clipboard() in ("", TEXT), "the clipboard has", clipboard())
    check(time.monotonic() - started < DELIVERY_GOES_ON, "a question for the clipboard hung")


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
    display = Display()
    keys = display.keyboard_map()
    try:
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            start_recording(stage, target)
            check_end(stage, number, before)
            stage.start_program()
        start_recording(stage, target)
        ask_whether_to_cancel(stage)
        check_end(stage, signal.SIGTERM, before)
        stage.start_program()
        deliver_to_a_stopped_target(stage, target)
        check_end(stage, signal.SIGTERM, before)
        check_keyboard_and_clipboard(display, keys)
    finally:
        target.close()
        stage.close()
        display.close()
        # Whatever went wrong, the next test finds the desktop as it was.
        run("pactl", "set-default-source", before[0].strip())
        run("pactl", "set-sink-mute", "@DEFAULT_SINK@", "0")


if __name__ == "__main__":
    main()
