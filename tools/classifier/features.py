"""The log-mel front end of the sound classifier, as the program computes it.

16 kHz mono, frames of 400 samples every 160 (periodic Hann), magnitude of a
512-point FFT, 64 mel bands from 125 to 7500 Hz. Patches are 96 frames; the
network takes ln(mel + 0.001). Until the logarithm is taken the values are
linear, so that sounds can be mixed, scaled and filtered by adding and
multiplying.
"""

import subprocess

import numpy as np

RATE = 16000
FRAME = 400
HOP = 160
FFT = 512
BANDS = 64
PATCH = 96
PATCH_HOP = 48
LOG_OFFSET = 0.001


def mel_matrix():
    """64 x 257 weights: triangles that are linear in mel, with no area norm."""
    def mel(hertz):
        return 1127.0 * np.log1p(hertz / 700.0)

    edges = np.linspace(mel(125.0), mel(7500.0), BANDS + 2)
    bins = mel(np.arange(FFT // 2 + 1) * RATE / FFT)[None]
    rising = (bins - edges[:-2, None]) / (edges[1:-1] - edges[:-2])[:, None]
    falling = (edges[2:, None] - bins) / (edges[2:] - edges[1:-1])[:, None]
    weights = np.maximum(0.0, np.minimum(rising, falling))
    weights[:, 0] = 0.0
    return weights.astype(np.float32)


_MEL = mel_matrix().T.copy()
_WINDOW = (0.5 - 0.5 * np.cos(2.0 * np.pi * np.arange(FRAME) / FRAME)).astype(np.float32)


def linear_mel(samples):
    """Frames x 64 linear mel magnitudes; a short sound is padded to one patch."""
    shortest = FRAME + HOP * (PATCH - 1)
    samples = np.asarray(samples, np.float32)
    if len(samples) < shortest:
        samples = np.pad(samples, (0, shortest - len(samples)))
    count = (len(samples) - FRAME) // HOP + 1
    frames = np.lib.stride_tricks.as_strided(
        samples, (count, FRAME), (samples.strides[0] * HOP, samples.strides[0]))
    return (np.abs(np.fft.rfft(frames * _WINDOW, FFT)).astype(np.float32) @ _MEL)


def decode(path, seconds=12.0):
    """A file (Opus, where it ends in .ogg) as 16 kHz mono, by the program's resampler."""
    # The decoder that the program uses; ffmpeg's own one differs audibly on low rates.
    decoder = ["-c:a", "libopus"] if path.endswith((".ogg", ".opus")) else []
    command = ["ffmpeg", "-v", "error", "-nostdin", "-threads", "1", "-t", str(seconds), *decoder, "-i", path,
               "-map", "0:a:0", "-af", "aresample=16000:resampler=soxr", "-ac", "1", "-f", "f32le", "-"]
    out = subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout
    return np.frombuffer(out, np.float32)


def log_mel(linear):
    return np.log(linear + LOG_OFFSET)
