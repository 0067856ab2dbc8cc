#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Synthesises the two short sounds into resources/sounds (48 kHz, mono, 16 bits)."""

import array
import math
import pathlib
import sys
import wave

RATE = 48000


def decay(time, attack, half_life):
    """Rises within `attack` seconds, then halves every `half_life` seconds."""
    return min(1.0, time / attack) * 0.5 ** (time / half_life)


def pop(time):
    """A drop: a tone that falls from 620 to 330 Hz."""
    phase = 330 * time + (620 - 330) * 0.012 * (1 - math.exp(-time / 0.012))
    return 0.5 * decay(time, 0.002, 0.014) * math.sin(2 * math.pi * phase)


def tink(time):
    """A small glass: three partials, of which the higher ones fade sooner."""
    partials = ((1760, 0.30, 0.028), (4620, 0.12, 0.014), (7340, 0.05, 0.008))
    return sum(
        level * decay(time, 0.001, half_life) * math.sin(2 * math.pi * frequency * time)
        for frequency, level, half_life in partials
    )


def write(path, sound, seconds):
    count = int(RATE * seconds)
    fade = RATE // 100  # the end must not click
    samples = array.array(
        "h",
        (round(32767 * sound(i / RATE) * min(1.0, (count - i) / fade)) for i in range(count)),
    )
    if sys.byteorder == "big":
        samples.byteswap()
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(samples.tobytes())


def main():
    folder = pathlib.Path(__file__).resolve().parent.parent / "resources" / "sounds"
    folder.mkdir(parents=True, exist_ok=True)
    write(folder / "Pop.wav", pop, 0.09)
    write(folder / "Tink.wav", tink, 0.14)


if __name__ == "__main__":
    main()
