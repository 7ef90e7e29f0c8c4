"""Sounds made by rule, for labels with few recordings, and espeak-ng speech.

Everything is random within what the name allows, from one seed: the same
sounds come out of every run. Each sound is its own group.
"""

import os
import subprocess
import tempfile

import numpy as np

import features

RATE = features.RATE


def seconds(random, low, high):
    return np.arange(int(random.uniform(low, high) * RATE)) / RATE


def noise(random, count, low, high):
    """Gaussian noise between two frequencies (Hz), peak 1."""
    spectrum = np.fft.rfft(random.standard_normal(count))
    hertz = np.fft.rfftfreq(count, 1 / RATE)
    spectrum *= 1 / (1 + (np.maximum(low, 1e-9) / np.maximum(hertz, 1e-9)) ** 4) ** 0.5
    spectrum *= 1 / (1 + (hertz / high) ** 4) ** 0.5
    out = np.fft.irfft(spectrum, count)
    return out / max(np.abs(out).max(), 1e-9)


def tone(t, hertz, wave):
    phase = np.cumsum(np.broadcast_to(hertz, t.shape)) / RATE
    if wave == "sine":
        return np.sin(2 * np.pi * phase)
    if wave == "square":
        return np.sign(np.sin(2 * np.pi * phase)) * 0.7
    if wave == "triangle":
        return 4 * np.abs(phase % 1 - 0.5) - 1
    return 2 * (phase % 1) - 1


def a_wave(random):
    return random.choice(["sine", "square", "triangle", "saw"])


def fade(x, random):
    edge = min(len(x) // 2, int(random.uniform(0.002, 0.02) * RATE))
    if edge:
        x[:edge] *= np.linspace(0, 1, edge)
        x[-edge:] *= np.linspace(1, 0, edge)
    return x


def silence(random):
    t = seconds(random, 1, 3)
    if random.random() < 0.5:
        return np.zeros(len(t))
    return noise(random, len(t), 20, random.uniform(500, 8000)) * 10 ** random.uniform(-6, -3.6)


def beep(random):
    parts = []
    hertz, wave = random.uniform(400, 3500), random.choice(["sine", "sine", "square", "triangle"])
    for _ in range(random.integers(1, 4)):
        t = seconds(random, 0.06, 0.5)
        parts += [fade(tone(t, hertz, wave), random), np.zeros(int(random.uniform(0.04, 0.4) * RATE))]
    return np.concatenate(parts)


def alarm(random):
    t = seconds(random, 2, 4)
    low, rate = random.uniform(600, 2500), random.uniform(2, 8)
    gate = (t * rate) % 1 < random.uniform(0.4, 0.7)
    two = np.where((t * rate / 2) % 1 < 0.5, low, low * random.choice([1.0, 1.0, 1.25, 0.8]))
    return tone(t, two, random.choice(["square", "saw", "sine"])) * gate


def siren(random):
    t = seconds(random, 2.5, 5)
    low, high = random.uniform(350, 800), random.uniform(900, 1700)
    rate = random.choice([random.uniform(0.15, 0.5), random.uniform(2, 4)])
    shape = random.choice(["sweep", "sweep", "two"])
    wave = 0.5 - 0.5 * np.cos(2 * np.pi * rate * t) if shape == "sweep" else ((t * rate * 2) % 1 < 0.5)
    return tone(t, low + (high - low) * wave, random.choice(["saw", "triangle", "square"]))


def whoosh(random):
    t = seconds(random, 0.25, 1.4)
    place = random.uniform(0.3, 0.7)
    x = np.linspace(0, 1, len(t))
    envelope = np.exp(-((x - place) / random.uniform(0.1, 0.25)) ** 2)
    low = noise(random, len(t), 150, random.uniform(500, 1200))
    high = noise(random, len(t), 800, random.uniform(2500, 6000))
    return envelope * (low + envelope * high * random.uniform(0.5, 1.5))


def zap(random):
    t = seconds(random, 0.15, 0.6)
    x = t / t[-1]
    hertz = random.uniform(1500, 5000) * np.exp(-x * random.uniform(2, 5)) + 60
    return tone(t, hertz, random.choice(["saw", "square", "sine"])) * np.exp(-x * random.uniform(1, 4))


def thump(random):
    t = seconds(random, 0.2, 0.6)
    hertz = random.uniform(45, 110) * (1 + random.uniform(0.5, 2) * np.exp(-t * 40))
    body = tone(t, hertz, "sine") * np.exp(-t * random.uniform(10, 25))
    return body + 0.3 * noise(random, len(t), 40, random.uniform(300, 900)) * np.exp(-t * 60)


def heartbeat(random):
    rate, total = random.uniform(0.9, 1.8), random.uniform(2, 4)
    out = np.zeros(int(total * RATE))
    first, second = random.uniform(40, 80), random.uniform(45, 95)
    for beat in np.arange(0, total, 1 / rate):
        for shift, hertz, level in ((0, first, 1.0), (0.28 / rate ** 0.5, second, random.uniform(0.5, 0.9))):
            start = int((beat + shift) * RATE)
            t = np.arange(min(int(0.2 * RATE), max(len(out) - start, 0))) / RATE
            out[start:start + len(t)] += level * np.sin(2 * np.pi * hertz * t) * np.exp(-t * 28)
    return out + noise(random, len(out), 30, 400) * random.uniform(0, 0.02)


def applause(random):
    total = random.uniform(2, 5)
    out = np.zeros(int(total * RATE))
    for _ in range(int(total * random.uniform(60, 400))):
        start = random.integers(0, len(out))
        count = min(int(0.02 * RATE), len(out) - start)
        centre = random.uniform(700, 2600)
        out[start:start + count] += (random.uniform(0.1, 1) * random.standard_normal(count)
                                     * np.exp(-np.arange(count) / RATE * 220)
                                     * np.cos(2 * np.pi * centre * np.arange(count) / RATE))
    return out


def clapping(random):
    out = np.zeros(int(random.uniform(2, 4) * RATE))
    rate = random.uniform(1.5, 4.5)
    for beat in np.arange(0.05, len(out) / RATE - 0.1, 1 / rate):
        start = int((beat + random.normal(0, 0.012)) * RATE)
        t = np.arange(min(int(0.08 * RATE), len(out) - start)) / RATE
        clap = noise(random, len(t), 600, random.uniform(2000, 5000)) if len(t) > 64 else np.zeros(len(t))
        out[max(start, 0):max(start, 0) + len(t)] += clap * np.exp(-t * random.uniform(60, 140))
    return out


def rain(random):
    t = seconds(random, 2, 4)
    out = noise(random, len(t), 300, 8000) * random.uniform(0.05, 0.5)
    for _ in range(int(t[-1] * random.uniform(30, 300))):
        start = random.integers(0, len(out) - 200)
        hertz = random.uniform(1500, 6500)
        drop = np.arange(160) / RATE
        out[start:start + 160] += random.uniform(0.02, 0.5) * np.sin(2 * np.pi * hertz * drop) * np.exp(-drop * 500)
    return out


def wind(random):
    t = seconds(random, 2.5, 5)
    gusts = np.interp(t, np.linspace(0, t[-1], 9), random.uniform(0.15, 1, 9))
    out = noise(random, len(t), 40, random.uniform(200, 700)) * gusts
    if random.random() < 0.5:
        centre = random.uniform(400, 1000)
        out += 0.5 * noise(random, len(t), centre * 0.9, centre * 1.1) * gusts ** 2
    return out


def dial(random):
    rows, columns = (697, 770, 852, 941), (1209, 1336, 1477)
    parts = []
    for _ in range(random.integers(3, 9)):
        t = seconds(random, 0.08, 0.2)
        pair = np.sin(2 * np.pi * random.choice(rows) * t) + np.sin(2 * np.pi * random.choice(columns) * t)
        parts += [fade(pair, random), np.zeros(int(random.uniform(0.05, 0.15) * RATE))]
    return np.concatenate(parts)


def ring(random):
    t = seconds(random, 2, 4)
    gate = (t % random.uniform(1.2, 2.5)) < random.uniform(0.6, 1.1)
    trill = np.where((t * random.uniform(14, 25)) % 1 < 0.5, 1.0, random.uniform(1.15, 1.4))
    return tone(t, random.uniform(450, 1300) * trill, random.choice(["sine", "square", "triangle"])) * gate


def ticks(random):
    out = np.zeros(int(random.uniform(2.5, 5) * RATE))
    period, hertz = random.choice([0.5, 1.0, random.uniform(0.2, 0.6)]), random.uniform(1500, 5000)
    for number, start in enumerate(np.arange(0.02, len(out) / RATE - 0.05, period)):
        t = np.arange(int(0.03 * RATE)) / RATE
        at = int(start * RATE)
        out[at:at + len(t)] += np.sin(2 * np.pi * hertz * (1 + 0.15 * (number % 2)) * t) * np.exp(-t * 300)
    return out


def hiss(random):
    t = seconds(random, 0.8, 3)
    return noise(random, len(t), random.uniform(1500, 4000), 8000) * np.exp(-t * random.uniform(0, 1))


def buzz(random):
    t = seconds(random, 1.5, 3)
    wander = 1 + 0.03 * np.interp(t, np.linspace(0, t[-1], 12), random.standard_normal(12))
    return tone(t, random.uniform(140, 350) * wander, "saw") * (1 + 0.3 * np.sin(2 * np.pi * 9 * t))


def whistle(random):
    t = seconds(random, 0.5, 2)
    bend = np.interp(t, np.linspace(0, t[-1], 5), random.uniform(0.8, 1.3, 5))
    return tone(t, random.uniform(900, 2600) * bend, "sine") + 0.02 * random.standard_normal(len(t))


MADE = {
    "silence": (silence, 60), "beep_bleep": (beep, 50), "alarm": (alarm, 30), "siren": (siren, 30),
    "whoosh_swoosh_swish": (whoosh, 40), "sound_effect": (zap, 30), "thump_thud": (thump, 30),
    "heart_sounds_heartbeat": (heartbeat, 30), "applause": (applause, 25), "clapping": (clapping, 15),
    "rain": (rain, 15), "wind": (wind, 30), "tick_tock": (ticks, 15), "hiss": (hiss, 10),
    "insect": (buzz, 8), "whistling_whistle": (whistle, 20),
}
TELEPHONE = ((dial, 15), (ring, 15))

SENTENCES = (
    "The quick brown fox jumps over the lazy dog.", "Please leave your message after the tone.",
    "I never said that we should go there tomorrow.", "Ladies and gentlemen, welcome on board.",
    "Seven, eight, nine, ten.", "What a beautiful morning it is today!", "Could you pass me the salt?",
    "The train on platform four departs in five minutes.", "Well, that was unexpected.", "No, no, no. Stop it.",
)
VOICES = ("en-us", "en-gb", "de", "fr", "es", "it", "ar", "pl", "pt", "en-us+f3", "en-gb+f2", "en-us+m5", "de+f4")


def speech(random, count):
    for number in range(count):
        voice = VOICES[number % len(VOICES)]
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "speech.wav")
            subprocess.run(["espeak-ng", "-v", voice, "-s", str(random.integers(120, 210)),
                            "-p", str(random.integers(20, 80)), "-w", path,
                            SENTENCES[random.integers(len(SENTENCES))]], check=True,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            yield features.decode(path, 6.0)


def everything(small=False):
    """Yields (label, group, samples)."""
    random = np.random.default_rng(20240131)
    table = [(label, maker, count) for label, (maker, count) in MADE.items()]
    table += [("telephone", maker, count) for maker, count in TELEPHONE]
    for label, maker, count in table:
        for number in range(max(2, count // 10) if small else count):
            samples = np.asarray(maker(random), np.float64)
            peak = np.abs(samples).max()
            if label != "silence" and peak > 0:
                samples = samples / peak * 10 ** (random.uniform(-20, 0) / 20)
            yield label, f"made_{maker.__name__}_{number}", samples.astype(np.float32)
    for number, samples in enumerate(speech(random, 3 if small else 40)):
        yield "speech", f"espeak_{number}", samples
