#!/usr/bin/env python3
"""Makes the program's sounds: short bell-like tones, 16 bit mono WAV at 22,050 Hz.

usage: make_sounds.py FOLDER
"""
import math
import pathlib
import struct
import sys
import wave

RATE = 22050

# Name -> (length in seconds, [(start, frequency in Hz, share of the volume)]).
SOUNDS = {
    "Basso": (0.55, [(0.0, 147.0, 0.6), (0.08, 110.0, 0.5)]),
    "Blow": (0.50, [(0.0, 523.3, 0.4), (0.06, 784.0, 0.3)]),
    "Chime": (0.80, [(0.0, 659.3, 0.35), (0.18, 523.3, 0.35)]),
    "Drop": (0.35, [(0.0, 1046.5, 0.35), (0.05, 698.5, 0.3)]),
    "Glass": (0.70, [(0.0, 1318.5, 0.25), (0.0, 1975.5, 0.15)]),
}
DECAY = 7.0  # how fast a tone dies away, per second
OVERTONES = [(1.0, 1.0), (2.0, 0.35), (3.01, 0.12)]  # slightly out of tune, like a bell


def sample(at, tones):
    value = 0.0
    for start, frequency, share in tones:
        age = at - start
        if age < 0:
            continue
        attack = min(age / 0.006, 1.0)  # a click-free beginning
        for multiple, weight in OVERTONES:
            value += (share * weight * attack * math.exp(-DECAY * multiple * age)
                      * math.sin(2 * math.pi * frequency * multiple * age))
    return value


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for name, (length, tones) in SOUNDS.items():
        count = int(length * RATE)
        fade = RATE // 50
        samples = []
        for index in range(count):
            value = sample(index / RATE, tones) * min(1.0, (count - index) / fade)
            samples.append(int(max(-1.0, min(1.0, value)) * 32767))
        with wave.open(str(folder / f"{name}.wav"), "wb") as sound:
            sound.setnchannels(1)
            sound.setsampwidth(2)
            sound.setframerate(RATE)
            sound.writeframes(struct.pack(f"<{count}h", *samples))


if __name__ == "__main__":
    main()
