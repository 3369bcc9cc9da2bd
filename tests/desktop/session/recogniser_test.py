"""Takes the recogniser's process away in the middle of sessions: no recording is lost, and none hangs.

usage: recogniser_test.py PROGRAM SERVICE EDITOR MODELS LIBRARY

MODELS and LIBRARY are the folders of make_models.py's models and of sherpa-onnx.
"""

import os
import pathlib
import signal
import subprocess
import sys
import time

from stage import LEFT_ALT, Stage, run, wait_until, xdotool
from target import Target

SENTENCE = "please send the report to the office before friday"
ANSWER = "Please send the report to the office before Friday."
IDLE_SECONDS = 4
NEURAL = "你好，世界 HELLO WORLD"
TONES = [244.7, 502.7, 3322.4, 831.2, 1249.4, 1781.8, 2459.5]  # Hertz, in the order of NEURAL.


def check(condition, *explanation):
    if not condition:
        sys.exit(" ".join(str(part) for part in explanation))


def recognisers(program):
    """The recogniser's processes of this program, by number."""
    found = subprocess.run(["pgrep", "--parent", str(program), "--full", "tavrin-recognizer"],
                           capture_output=True, text=True, check=False).stdout
    return [int(number) for number in found.split()]


def has_ended(process):
    try:
        return ") Z " in pathlib.Path(f"/proc/{process}/stat").read_text()
    except OSError:
        return True


class Session:
    """A session into a field, with whatever happens to the recogniser meanwhile."""

    def __init__(self, stage, target):
        self._stage = stage
        self._target = target
        self._sent = 0

    def take(self, while_speaking=lambda: None, while_finishing=lambda: None):
        stage = self._stage
        self._target.bring_to_front_and_settle()
        before = len(stage.history())
        stage.start_recording(LEFT_ALT)
        time.sleep(0.5)  # People breathe in first.
        with subprocess.Popen(["paplay", "--device=micfeed", stage.voice(SENTENCE)]):
            time.sleep(1)
            while_speaking()
        time.sleep(0.3)
        xdotool("key", LEFT_ALT)
        while_finishing()
        wait_until("the result", lambda: len(stage.history()) > before)
        wait_until("the panel's end", lambda: not stage.panel_is_visible())
        heard = stage.history()[0]["transcript"]
        check(heard == SENTENCE, "understood:", heard)
        self._sent += 1
        wait_until("the text", lambda: self._target.text() == ANSWER * self._sent)


def kill(stage):
    for process in recognisers(stage.program.pid):
        os.kill(process, signal.SIGKILL)
        wait_until("its end", lambda process=process: has_ended(process))


def test_sessions(stage, target):
    session = Session(stage, target)
    wait_until("the recogniser", lambda: recognisers(stage.program.pid))
    session.take()
    first = recognisers(stage.program.pid)
    check(len(first) == 1, "recognisers:", first)

    session.take(while_speaking=lambda: kill(stage))
    check(recognisers(stage.program.pid) != first, "no fresh recogniser")
    session.take(while_finishing=lambda: kill(stage))

    kill(stage)
    session.take()


def test_rest(stage, target):
    """At rest there is none; the press starts one, and the first words are not lost."""
    wait_until("the rest", lambda: not recognisers(stage.program.pid), IDLE_SECONDS + 30)
    Session(stage, target).take()


def test_end(stage):
    """However the program ends, none stays behind."""
    wait_until("the recogniser", lambda: recognisers(stage.program.pid))
    left = recognisers(stage.program.pid)
    stage.program.kill()
    stage.program.wait()
    wait_until("the recogniser's end", lambda: all(has_ended(process) for process in left), 10)


def tones(stage):
    """A sound file that the models hear as NEURAL: a tone for each of its seven tokens."""
    file = stage.folder("tones") / "greeting.wav"
    parts = []
    for number, hertz in enumerate(TONES):
        part = file.with_name(f"{number}.wav")
        run("sox", "-n", "-r", "16000", "-b", "16", "-c", "1", part, "synth", "0.2", "sine", str(hertz),
            "gain", "-10", "pad", "0", "0.08")
        parts.append(part)
    run("sox", *parts, file, "pad", "0.2", "0.5")
    return file


def test_neural(program, service, editor, models, library):
    """Chinese and English with a comma between."""
    settings = {"linuxSpeechOnnxModel": f"{models}/streaming-zipformer-ctc",
                "linuxSpeechOnnxLibrary": library}
    target = Target(editor, "Target")
    stage = Stage(program, service, settings, use_model=True)
    stage.model.answer = NEURAL
    try:
        wait_until("the recogniser", lambda: recognisers(stage.program.pid))
        target.bring_to_front_and_settle()
        stage.start_recording(LEFT_ALT)
        time.sleep(0.5)
        run("paplay", "--device=micfeed", tones(stage))
        xdotool("key", LEFT_ALT)
        wait_until("the result", stage.history)
        check(stage.history()[0]["transcript"] == NEURAL, "heard:", stage.history()[0]["transcript"])
        wait_until("the text", lambda: target.text() == NEURAL)
    finally:
        target.close()
        stage.close()


def main():
    target = Target(sys.argv[3], "Target")
    stage = Stage(*sys.argv[1:3], {"linuxSpeechIdleMinutes": 0}, use_model=True)
    stage.model.answer = ANSWER
    try:
        test_sessions(stage, target)
        test_end(stage)
    finally:
        target.close()
        stage.close()
    target = Target(sys.argv[3], "Target")
    stage = Stage(*sys.argv[1:3], {"linuxSpeechIdleMinutes": IDLE_SECONDS / 60}, use_model=True)
    stage.model.answer = ANSWER
    try:
        test_rest(stage, target)
    finally:
        target.close()
        stage.close()
    test_neural(*sys.argv[1:])


if __name__ == "__main__":
    main()
