#!/usr/bin/env python3
"""Makes the program's five sounds beside itself; commit the results. They are struck bars, like a
small marimba: recording starts upwards and stops downwards, success rings, an error is low and
dull, and a cancelled recording falls away."""

import math
import pathlib
import struct
import wave

RATE = 48000
PEAK = 10 ** (-12 / 20)  # of full scale: the player lowers it further
ATTACK = 0.006  # seconds; shorter ones click
RELEASE = 0.03

# Partials of a bar: frequency as a multiple of the note's, strength, how much faster it dies away.
WARM = [(1, 1.0, 1.0), (2, 0.18, 1.6), (3.93, 0.10, 3.5)]
BRIGHT = [(1, 1.0, 1.0), (2, 0.30, 1.3), (3, 0.12, 1.8), (3.93, 0.14, 3.0)]
DULL = [(1, 1.0, 1.0), (2, 0.10, 2.0)]

# Notes: start in seconds, frequency in hertz, strength, seconds until a third of it is left.
SOUNDS = {
    "start": (0.30, WARM, [(0.00, 659.26, 0.8, 0.07), (0.08, 987.77, 1.0, 0.08)]),
    "stop": (0.30, WARM, [(0.00, 987.77, 0.9, 0.07), (0.08, 659.26, 1.0, 0.08)]),
    "success": (0.55, BRIGHT, [(0.00, 783.99, 0.7, 0.09), (0.08, 1046.50, 0.8, 0.10), (0.16, 1318.51, 1.0, 0.15)]),
    "error": (0.42, DULL, [(0.00, 293.66, 1.0, 0.09), (0.15, 233.08, 1.0, 0.11)]),
    "cancel": (0.26, DULL, [(0.00, 523.25, 0.9, 0.05), (0.055, 440.00, 0.7, 0.05), (0.11, 349.23, 0.5, 0.06)]),
}


def smooth(x):
    """Half a cosine from 0 at 0 to 1 at 1, flat at both ends."""
    return 0.5 - 0.5 * math.cos(math.pi * min(max(x, 0.0), 1.0))


def strike(time, frequency, decay, partials):
    if time < 0:
        return 0.0
    ring = sum(strength * math.exp(-time / decay * haste) * math.sin(2 * math.pi * frequency * multiple * time)
               for multiple, strength, haste in partials)
    return smooth(time / ATTACK) * ring


def samples(length, partials, notes):
    for index in range(int(length * RATE)):
        time = index / RATE
        sound = sum(strength * strike(time - start, frequency, decay, partials)
                    for start, frequency, strength, decay in notes)
        yield sound * smooth((length - time) / RELEASE)


def main():
    for name, (length, partials, notes) in SOUNDS.items():
        values = list(samples(length, partials, notes))
        scale = PEAK * 32767 / max(map(abs, values))
        with wave.open(str(pathlib.Path(__file__).parent / f"{name}.wav"), "wb") as file:
            file.setnchannels(1)
            file.setsampwidth(2)
            file.setframerate(RATE)
            file.writeframes(b"".join(struct.pack("<h", round(value * scale)) for value in values))


if __name__ == "__main__":
    main()
