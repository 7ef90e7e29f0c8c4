"""Random changes of linear mel patches (96 x 64), as the world would make them."""

import numpy as np

import features

PATCH, BANDS = features.PATCH, features.BANDS


class Sounds:
    """The frames of many sounds, with their labels, and patches drawn from them."""

    def __init__(self, path):
        stored = np.load(path)
        self.frames = stored["frames"]
        self.starts, self.lengths = stored["starts"], stored["lengths"]
        self.labels, self.groups, self.names = stored["labels"], stored["groups"], stored["names"]

    def __len__(self):
        return len(self.starts)

    def sound(self, index):
        return self.frames[self.starts[index]:self.starts[index] + self.lengths[index]]

    def patches(self, index):
        """The windows that the program hears: every half patch, and the end."""
        frames = self.sound(index)
        last = len(frames) - PATCH
        begins = list(range(0, last + 1, features.PATCH_HOP))
        if last - begins[-1] >= features.PATCH_HOP // 2:
            begins.append(last)
        return np.stack([frames[b:b + PATCH] for b in begins])


def cut(frames, random, spread=0.1):
    """A stretched patch that holds something of the sound."""
    speed = np.exp(random.normal(0, spread))
    want = int(PATCH * speed) + 2
    if len(frames) > want:
        energy = np.add.reduceat((frames ** 2).sum(1), np.arange(0, len(frames), 8))
        for _ in range(4):
            begin = random.integers(0, len(frames) - want)
            if energy[begin // 8:(begin + want) // 8].max() > 0.05 * energy.max():
                break
        piece = frames[begin:begin + want]
    else:
        piece = np.zeros((want, BANDS), np.float32)
        part = frames[:want]
        loud = np.flatnonzero((part ** 2).sum(1) > 0)
        slack = want - (loud[-1] + 1 if len(loud) else 0)
        begin = random.integers(0, slack + 1) if slack > 0 and random.random() < 0.5 else 0
        piece[begin:begin + len(part)] = part[:want - begin]
    places = np.minimum(np.arange(PATCH) * speed, want - 1.001)
    low = places.astype(int)
    share = (places - low)[:, None].astype(np.float32)
    return piece[low] * (1 - share) + piece[low + 1] * share


def change(patch, random):
    """Level, tilt, pitch."""
    decibels = random.normal(0, 7) + random.normal(0, 3) * np.linspace(-1, 1, BANDS)
    if random.random() < 0.3:
        decibels = decibels + np.interp(np.arange(BANDS), np.linspace(0, BANDS, 7), random.normal(0, 4, 7))
    patch = patch * (10 ** (decibels / 20)).astype(np.float32)
    if random.random() < 0.6:
        shift = random.normal(0, 1.2)
        places = np.clip(np.arange(BANDS) - shift, 0, BANDS - 1.001)
        low = places.astype(int)
        share = (places - low).astype(np.float32)
        patch = patch[:, low] * (1 - share) + patch[:, low + 1] * share
    return patch


def wild(first, second, third, random):
    """Something that has no label any more, only a teacher who hears something
    in it: far shifts, two sounds one after the other, three at once."""
    parts = []
    for patch in (first, second, third):
        patch = change(patch, random)
        if random.random() < 0.5:
            patch = np.roll(patch, random.integers(-8, 9), 1)
        parts.append(patch)
    out = mix(parts[0], parts[1], random)[0] if random.random() < 0.6 else parts[0]
    if random.random() < 0.4:
        out = mix(out, parts[2], random)[0]
    if random.random() < 0.4:
        out = np.concatenate([out[:(at := random.integers(16, PATCH - 16))], parts[1][at:]])
    return out


def add_noise(patch, random):
    level = np.sqrt((patch ** 2).mean()) * 10 ** (-random.uniform(8, 45) / 20)
    colour = np.exp(np.interp(np.arange(BANDS), np.linspace(0, BANDS, 5), random.normal(0, 1, 5)))
    hum = random.rayleigh(0.8, (PATCH, BANDS)) * colour / colour.mean() * level
    return np.sqrt(patch ** 2 + (hum ** 2).astype(np.float32))


def mask(patch, random):
    patch = patch.copy()
    for axis, widest in ((0, 16), (1, 8)):
        if random.random() < 0.4:
            width = random.integers(2, widest)
            begin = random.integers(0, patch.shape[axis] - width)
            if axis == 0:
                patch[begin:begin + width] *= 0.02
            else:
                patch[:, begin:begin + width] *= 0.02
    return patch


def mix(first, second, random):
    """Both, the second quieter; gives also the second's share of the label."""
    below = random.uniform(0, 18)
    power = np.sqrt((first ** 2).mean() / max((second ** 2).mean(), 1e-12)) * 10 ** (-below / 20)
    return np.sqrt(first ** 2 + (second * power) ** 2), 0.5 / (1 + below / 3)


class Sampler:
    """Draws labelled, augmented log-mel patches. Labels with many groups come
    more often, but by the square root only. Some patches stay as they are: what
    people drop into the program is seldom as bad as what `change` makes."""

    def __init__(self, recordings, chosen, synthetic, labels, synthetic_share=0.12, plain_share=0.3,
                 wild_share=0.25):
        self.recordings, self.synthetic, self.labels = recordings, synthetic, labels
        self.share, self.plain_share, self.wild_share = synthetic_share, plain_share, wild_share
        self.tables = []
        for sounds, indices in ((recordings, chosen), (synthetic, range(len(synthetic)))):
            groups = {}
            for index in indices:
                label = str(sounds.labels[index])
                groups.setdefault(label, {}).setdefault(str(sounds.groups[index]), []).append(index)
            names = sorted(groups)
            weights = np.array([len(groups[n]) ** 0.5 for n in names])
            self.tables.append((names, weights / weights.sum(), [list(groups[n].values()) for n in names]))

    def one(self, random, spread=0.1):
        made = random.random() < self.share
        sounds = self.synthetic if made else self.recordings
        names, weights, groups = self.tables[int(made)]
        label = random.choice(len(names), p=weights)
        group = groups[label][random.integers(len(groups[label]))]
        return cut(sounds.sound(group[random.integers(len(group))]), random, spread), self.labels.index(names[label])

    def draw(self, count, random):
        """count x 96 x 64 log-mel (float16) and count x labels targets: none for what
        is wild."""
        patches = np.empty((count, PATCH, BANDS), np.float16)
        targets = np.zeros((count, len(self.labels)), np.float32)
        quiet = self.labels.index("silence")
        for number in range(count):
            if random.random() < self.wild_share:
                patch = wild(*(self.one(random, 0.25)[0] for _ in range(3)), random)
                patches[number] = features.log_mel(add_noise(patch, random) if random.random() < 0.5 else patch)
                continue
            plain = random.random() < self.plain_share
            patch, label = self.one(random, 0.0 if plain else 0.1)
            share, other = 0.0, label
            if label != quiet and not plain:
                patch = change(patch, random)
                if random.random() < 0.3:
                    second, other = self.one(random)
                    if other != quiet:
                        patch, share = mix(patch, change(second, random), random)
                if random.random() < 0.5:
                    patch = add_noise(patch, random)
                if random.random() < 0.5:
                    patch = mask(patch, random)
            targets[number, label] += 1 - share
            targets[number, other] += share
            patches[number] = features.log_mel(patch)
        return patches, targets
