"""Measurements of captured sound. All times in seconds from the beginning of the capture, levels in units of full scale."""

import numpy
import wave

RATE = 44100
SILENCE = 0.005  # below this a sample counts as silent: -46 dB


class Sound:
    """Stereo sound as a float array of shape (frames, 2)."""

    def __init__(self, samples, rate=RATE):
        self.samples, self.rate = samples, rate

    @classmethod
    def from_raw(cls, data, rate=RATE):
        """`data`: bytes of 16-bit stereo."""
        usable = len(data) // 4 * 4
        return cls(numpy.frombuffer(data[:usable], "<i2").reshape(-1, 2) / 32768.0, rate)

    def save(self, path):
        with wave.open(str(path), "wb") as file:
            file.setnchannels(2)
            file.setsampwidth(2)
            file.setframerate(self.rate)
            file.writeframes((numpy.clip(self.samples, -1, 32767 / 32768) * 32768).astype("<i2").tobytes())

    @property
    def length(self):
        return len(self.samples) / self.rate

    def part(self, start, end=None):
        return Sound(self.samples[int(start * self.rate):None if end is None else int(end * self.rate)], self.rate)

    def mono(self):
        return self.samples.mean(axis=1)

    def rms(self):
        return float(numpy.sqrt(numpy.mean(self.samples ** 2))) if len(self.samples) else 0.0

    def _loud(self):
        return numpy.flatnonzero(numpy.abs(self.samples).max(axis=1) > SILENCE) if len(self.samples) else numpy.array([])

    def is_silent(self):
        return len(self._loud()) == 0

    def bounds(self):
        """(first, last) time at which something is heard, or None."""
        loud = self._loud()
        return (loud[0] / self.rate, loud[-1] / self.rate) if len(loud) else None

    def trimmed(self):
        """From the first to the last audible sample."""
        loud = self._loud()
        return Sound(self.samples[loud[0]:loud[-1] + 1] if len(loud) else self.samples[:0], self.rate)

    def pieces(self, gap=0.03):
        """[(start, end)] of the stretches of sound that silences of at least `gap` separate."""
        loud = self._loud()
        if not len(loud):
            return []
        breaks = numpy.flatnonzero(numpy.diff(loud) > gap * self.rate)
        starts = numpy.concatenate(([loud[0]], loud[breaks + 1]))
        ends = numpy.concatenate((loud[breaks], [loud[-1]]))
        return [(a / self.rate, b / self.rate) for a, b in zip(starts, ends)]

    def gaps(self, shortest=0.005):
        """[(time, length)] of silences inside the sound."""
        pieces = self.pieces(shortest)
        return [(a[1], b[0] - a[1]) for a, b in zip(pieces, pieces[1:])]

    def frequency(self):
        """The strongest frequency in Hz, 0 for silence. Exact to about 0.1 Hz over one second of a steady tone."""
        x = self.mono()
        if len(x) < 64 or numpy.abs(x).max() <= SILENCE:
            return 0.0
        spectrum = numpy.abs(numpy.fft.rfft(x * numpy.hanning(len(x))))
        peak = int(spectrum[1:].argmax()) + 1
        if 0 < peak < len(spectrum) - 1:
            # The logarithm of a Hann window's main lobe is close to a parabola.
            a, b, c = numpy.log(spectrum[peak - 1:peak + 2] + 1e-12)
            offset = 0.5 * (a - c) / (a - 2 * b + c)
        else:
            offset = 0.0
        return float((peak + offset) * self.rate / len(x))

    def frequencies(self, window=0.1):
        """[(time, frequency)] of successive windows."""
        size = int(window * self.rate)
        return [(start / self.rate, Sound(self.samples[start:start + size], self.rate).frequency())
                for start in range(0, len(self.samples) - size + 1, size)]

    def level_at(self, frequency):
        """Amplitude of one frequency, which a steady tone of that amplitude gives exactly."""
        x = self.mono()
        window = numpy.hanning(len(x))
        turn = numpy.exp(-2j * numpy.pi * frequency * numpy.arange(len(x)) / self.rate)
        return float(2 * abs(numpy.sum(x * window * turn)) / window.sum())
