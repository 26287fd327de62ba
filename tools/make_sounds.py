#!/usr/bin/env python3
"""Makes the alert sounds by additive synthesis: tools/make_sounds.py FOLDER writes Glass.wav and Ping.wav.

48 kHz, 16 bit, mono. Every sound begins and ends at zero, so that neither end clicks.
"""
import array
import math
import pathlib
import sys
import wave

RATE = 48000
ATTACK = 0.004  # seconds; shorter would click
RELEASE = 0.06
PEAK = 0.5  # of full scale: loud enough beside music, never harsh

# A sound is its length in seconds and its partials: (frequency in Hz, loudness, seconds until it has faded to 1/e).
# A struck glass rings in partials that are no multiples of one another; a close pair beats slowly and sounds alive.
GLASS = (1.6, [(1174.7, 1.0, 0.42), (1178.3, 0.55, 0.38), (2793.8, 0.34, 0.2), (4698.6, 0.16, 0.11),
               (6950.0, 0.06, 0.06), (587.3, 0.12, 0.3)])
PING = (0.9, [(1760.0, 1.0, 0.2), (1763.0, 0.4, 0.18), (3520.0, 0.22, 0.1), (5280.0, 0.08, 0.06)])


def samples(length, partials):
    loudest = sum(loudness for _, loudness, _ in partials)
    for index in range(int(length * RATE)):
        time = index / RATE
        value = sum(loudness * math.exp(-time / fade) * math.sin(2 * math.pi * frequency * time)
                    for frequency, loudness, fade in partials) / loudest
        begin = min(time / ATTACK, 1.0)
        end = min((length - time) / RELEASE, 1.0)
        yield value * math.sin(begin * math.pi / 2) ** 2 * math.sin(end * math.pi / 2) ** 2


def write(path, sound):
    values = list(samples(*sound))
    scale = PEAK * 32767 / max(abs(value) for value in values)
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(array.array("h", [round(value * scale) for value in values]).tobytes())


if __name__ == "__main__":
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    write(folder / "Glass.wav", GLASS)
    write(folder / "Ping.wav", PING)
