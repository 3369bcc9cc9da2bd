"""The observer program, and what it has seen."""

import subprocess
import threading
import time
from typing import NamedTuple

PATIENCE = 30  # Seconds.


class Event(NamedTuple):
    time: float  # Of time.monotonic().
    name: str
    detail: str


class Observer:
    def __init__(self, path):
        self._events = []
        self._news = threading.Condition()
        self._process = subprocess.Popen([path], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                         text=True)
        threading.Thread(target=self._read, daemon=True).start()
        self.wait_for("ready", 0)

    def close(self):
        self._process.stdin.close()
        self._process.wait()

    def _read(self):
        for line in self._process.stdout:
            moment, name, detail = line.rstrip("\n").split(" ", 2)
            with self._news:
                self._events.append(Event(float(moment), name, detail))
                self._news.notify_all()

    def _tell(self, *words):
        print(*words, file=self._process.stdin, flush=True)

    def watch(self, window, x, y):
        self._tell("watch", window, x, y)

    def press(self, *codes):
        """The moment at which the keys went down."""
        asked = time.monotonic()
        self._tell("press", *codes)
        return self.wait_for("pressed", asked).time

    def longest_waits(self):
        """The longest silence of the program, and the longest that the machine kept the observer
        itself from running; in milliseconds, since this was asked last."""
        asked = time.monotonic()
        self._tell("longest")
        return tuple(map(float, self.wait_for("longest", asked).detail.split()))

    def wait_for(self, name, since, matches=lambda detail: True, patience=PATIENCE):
        """The first such event after a moment."""
        def find():
            return next((event for event in self._events if event.time >= since
                         and event.name == name and matches(event.detail)), None)

        with self._news:
            if not self._news.wait_for(find, patience):
                raise AssertionError(f"nothing was {name}")
            return find()

    def last(self, name):
        """The latest such event; None before the first."""
        with self._news:
            return next((event for event in reversed(self._events) if event.name == name), None)
