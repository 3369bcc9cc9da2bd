"""Kills the program at random moments of sessions: the next start finds keyboard, sound, recordings
and history in order, or puts them in order.

usage: kill_test.py PROGRAM SERVICE EDITOR [SEED]
"""

import random
import subprocess
import sys
import time

from display import Display
from stage import LEFT_ALT, PATIENCE, Stage, sound, wait_until, xdotool
from target import Target

KILLS = 16  # Spread over the whole session.
KILLS_WHILE_TYPING = 4
SENTENCE = "hello there"
SETTINGS = {"muteDuringRecording": True, "preferredMicrophoneUID": "usbmic"}
# Swallowed as a paste and typed, all on borrowed keys, which takes a while.
TEXT = "".join(chr(0x4E00 + 7 * number) for number in range(200))


def check(condition, *explanation):
    if not condition:
        sys.exit(" ".join(str(part) for part in explanation))


class Killing:
    def __init__(self, stage, display):
        self.stage = stage
        self._display = display
        self._sound = sound()
        self._keys = display.keyboard_map()
        self._records = {}
        self.found = {"recording": 0, "sound changed": 0, "keys borrowed": 0}

    def session(self):
        """Runs a whole session at its own pace; yields often."""
        latest_end = time.monotonic() + PATIENCE

        def pause(seconds):
            end = time.monotonic() + seconds
            while time.monotonic() < end:
                yield
                time.sleep(min(0.01, max(0, end - time.monotonic())))
            check(end < latest_end, "the session does not end")

        xdotool("key", LEFT_ALT)
        yield from pause(0.6)
        with subprocess.Popen(["paplay", "--device=micfeed2", self.stage.voice(SENTENCE)]) as voice:
            while voice.poll() is None:
                yield from pause(0.05)
        yield from pause(0.3)
        xdotool("key", LEFT_ALT)
        before = len(self._records)
        while len(self.stage.history()) == before:
            yield from pause(0.05)

    def whole_session(self):
        started = time.monotonic()
        for _ in self.session():
            pass
        self._records = self.history()
        return time.monotonic() - started

    def history(self):
        return {record["id"]: record for record in self.stage.history()}

    def keys_are_borrowed(self):
        return self._display.keyboard_map() != self._keys

    def kill(self, moment, begins=lambda: True):
        """Kills the program in a session, so many seconds after `begins` has become true."""
        end = None
        for _ in self.session():
            if end is None and begins():
                end = time.monotonic() + moment
            if end is not None and time.monotonic() >= end:
                break
        self.stage.program.kill()
        self.stage.program.wait()
        self.found["recording"] += bool(list(self.stage.recordings.glob("*.m4a")))
        self.found["sound changed"] += sound() != self._sound
        self.found["keys borrowed"] += self.keys_are_borrowed()

    def restart(self):
        self.stage.start_program()
        self.check_order()

    def check_order(self):
        """That the program, just started, has put everything in order."""
        check(not self._display.pressed_keys(), "pressed:", self._display.pressed_keys())
        wait_until("the keys as they were", lambda: not self.keys_are_borrowed(), 10)
        wait_until("the sound as it was", lambda: sound() == self._sound, 10)
        wait_until("the recordings' end", lambda: not list(self.stage.recordings.glob("*")), 10)
        records = self.history()
        lost = [identifier for identifier, record in self._records.items()
                if records.get(identifier) != record]
        check(not lost, "lost or changed in the history:", lost)
        check(len(records) - len(self._records) in (0, 1), "records that nobody made")
        self._records = records


def main():
    seed = int(sys.argv[4]) if len(sys.argv) > 4 else random.SystemRandom().randrange(10**6)
    print("seed", seed, flush=True)
    moments = random.Random(seed)
    display = Display()
    stage = Stage(*sys.argv[1:3], SETTINGS, use_model=True)
    target = Target(sys.argv[3], "Target", "--swallow-paste")
    try:
        stage.model.answer = TEXT
        killing = Killing(stage, display)
        target.bring_to_front_and_settle()
        length = killing.whole_session()
        for number in range(KILLS):
            # One in every stretch of the session, so that each of its parts is hit.
            target.bring_to_front_and_settle()
            killing.kill((number + moments.random()) / KILLS * length)
            killing.restart()
        for _ in range(KILLS_WHILE_TYPING):
            target.bring_to_front_and_settle()
            killing.kill(0.2 * moments.random(), killing.keys_are_borrowed)
            killing.restart()
        check(all(killing.found.values()), "too little was left behind:", killing.found)
        target.bring_to_front_and_settle()
        killing.whole_session()
        wait_until("the text", lambda: target.text().endswith(TEXT), 10)
        print(f"{KILLS + KILLS_WHILE_TYPING} kills in sessions of {length:.1f} s; found behind them:",
              killing.found)
    finally:
        target.close()
        stage.close()
        display.close()


if __name__ == "__main__":
    main()
