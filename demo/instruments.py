"""The instruments of the demonstration tune. Notes are MIDI numbers, lengths seconds; each gives a mono float array."""

import numpy as np

RATE = 44100


def frequency(note):
    return 440.0 * 2 ** ((note - 69) / 12)


def _time(seconds):
    return np.arange(int(seconds * RATE)) / RATE


def _envelope(t, attack, release):
    """Raised-cosine attack and release around a sustained middle."""
    rise = np.clip(t / attack, 0, 1)
    fall = np.clip((t[-1] - t) / release, 0, 1)
    return (1 - np.cos(np.pi * rise)) / 2 * (1 - np.cos(np.pi * fall)) / 2


def add(mix, at, sound, gain, pan):
    """Mixes a mono sound in at a time; pan 0 is left, 1 right, with constant power."""
    start = int(at * RATE)
    sound = sound[:max(0, len(mix) - start)] * gain
    angle = pan * np.pi / 2
    mix[start:start + len(sound), 0] += sound * np.cos(angle) * 1.414
    mix[start:start + len(sound), 1] += sound * np.sin(angle) * 1.414


def electric_piano(note, seconds, force):
    """Two-operator frequency modulation: a round body and a short metallic tine."""
    t, f = _time(seconds), frequency(note)
    body = np.sin(2 * np.pi * f * t + 1.3 * force * np.exp(-2.5 * t) * np.sin(2 * np.pi * f * t))
    tine = np.sin(2 * np.pi * f * t + 0.7 * np.exp(-16 * t) * np.sin(2 * np.pi * 14 * f * t)) * np.exp(-7 * t)
    return force * (body * np.exp(-2.2 * t) + 0.35 * tine) * _envelope(t, 0.004, 0.08)


def pad(note, seconds):
    """Slow strings: three slightly detuned voices with few harmonics."""
    t, f = _time(seconds), frequency(note)
    voices = sum(np.sin(2 * np.pi * f * detune * h * t + phase * h) / h ** 1.7
                 for detune, phase in ((0.9975, 0.0), (1.0, 2.1), (1.0028, 4.2)) for h in range(1, 7))
    return voices * _envelope(t, 0.5, 0.6) / 3


def bass(note, seconds):
    t, f = _time(seconds), frequency(note)
    tone = np.sin(2 * np.pi * f * t) + 0.45 * np.exp(-3 * t) * np.sin(4 * np.pi * f * t)
    return (tone + 0.2 * np.exp(-9 * t) * np.sin(6 * np.pi * f * t)) * np.exp(-0.9 * t) * _envelope(t, 0.008, 0.07)


def flute(note, seconds, rng):
    """A soft wind voice: vibrato that comes in late, a little breath at the beginning."""
    t, f = _time(seconds), frequency(note)
    vibrato = 0.0045 * np.clip((t - 0.25) / 0.4, 0, 1) * np.sin(2 * np.pi * 5.2 * t)
    phase = 2 * np.pi * np.cumsum(f * (1 + vibrato)) / RATE
    tone = np.sin(phase) + 0.22 * np.sin(2 * phase) + 0.10 * np.sin(3 * phase) + 0.03 * np.sin(4 * phase)
    breath = _low_pass(rng.standard_normal(len(t)), 8) * (0.02 + 0.12 * np.exp(-18 * t))
    swell = 0.85 + 0.15 * np.clip(t / 0.4, 0, 1)
    return (tone + breath) * swell * _envelope(t, 0.045, 0.09)


def bell(note, seconds):
    t, f = _time(seconds), frequency(note)
    partials = ((1.0, 1.0, 1.6), (2.76, 0.4, 3.0), (5.40, 0.2, 5.5))
    return sum(a * np.exp(-d * t) * np.sin(2 * np.pi * f * r * t) for r, a, d in partials) * _envelope(t, 0.002, 0.1)


def brush(rng, accent):
    """A brush on a snare drum: noise without its low part."""
    t = _time(0.25 if accent else 0.12)
    noise = rng.standard_normal(len(t))
    return (noise - _low_pass(noise, 12)) * np.exp(-(14 if accent else 38) * t) * _envelope(t, 0.004, 0.03)


def kick():
    t = _time(0.3)
    phase = 2 * np.pi * np.cumsum(48 + 75 * np.exp(-28 * t)) / RATE
    return np.sin(phase) * np.exp(-11 * t) * _envelope(t, 0.002, 0.05)


def _low_pass(x, width):
    """Moving average over `width` samples."""
    return np.convolve(x, np.ones(width) / width, "same")


def reverb(sound, seconds):
    """A small hall: convolution with decaying noise, different on both sides, the treble dying first."""
    rng = np.random.default_rng(11)
    t = _time(seconds)
    size = 1 << (len(sound) + len(t)).bit_length()
    out = np.empty_like(sound)
    for side in range(2):
        noise = rng.standard_normal(len(t))
        tail = (noise * np.exp(-9 * t) + 2 * _low_pass(noise, 6) * np.exp(-3.2 * t)) * np.clip(t / 0.012, 0, 1)
        tail /= np.sqrt(np.sum(tail ** 2))
        out[:, side] = np.fft.irfft(np.fft.rfft(sound[:, side], size) * np.fft.rfft(tail, size), size)[:len(sound)]
    return out
