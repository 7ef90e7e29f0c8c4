"""Trains the network.

  train.py SOUNDS WORK TEACHER.onnx [--minutes 50] [--small] [--everything]

Round by round: make augmented patches of the training sounds, ask the teacher
for its embedding, ask a small head on that embedding (trained first) for our
labels, and let the network follow all three: embedding, head and true label.
Writes WORK/student.pt, averaged weights, after every round.
"""

import argparse
import json
import os
import time

import numpy as np
import torch
from torch.nn import functional as F

import augment
import labels as label_lists
import network

BATCH = 64


def log(*words):
    print(f"{time.strftime('%H:%M:%S')}", *words, flush=True)


class Pool:
    """Augmented patches with everything that is known of them."""

    def __init__(self):
        self.parts = []

    def add(self, *arrays, keep):
        self.parts.append(arrays)
        self.parts = self.parts[-keep:]

    def __len__(self):
        return sum(len(p[0]) for p in self.parts)

    def batch(self, random, count):
        part = self.parts[random.integers(len(self.parts))]
        rows = np.sort(random.choice(len(part[0]), min(count, len(part[0])), replace=False))
        return [torch.from_numpy(np.ascontiguousarray(a[rows])).float() for a in part]


@torch.no_grad()
def teach(teacher, patches):
    parts = [teacher(torch.from_numpy(patches[i:i + BATCH, None].astype(np.float32)))[0]
             for i in range(0, len(patches), BATCH)]
    return torch.cat(parts).numpy().astype(np.float16)


def train_head(pool, labels, steps, random):
    """A linear layer over the teacher's embedding, on augmented patches."""
    head = torch.nn.Linear(1024, labels)
    optimiser = torch.optim.AdamW(head.parameters(), 2e-3, weight_decay=0.02)
    for step in range(steps):
        _, targets, embedding = pool.batch(random, 512)
        for group in optimiser.param_groups:
            group["lr"] = 2e-3 * (1 - step / steps) + 1e-5
        loss = soft_loss(head(F.dropout(embedding, 0.3)), targets * 0.95 + 0.05 / labels)
        optimiser.zero_grad()
        loss.backward()
        optimiser.step()
    log("head", f"{loss.item():.3f}")
    return head.eval()


def soft_loss(logits, targets):
    return -(targets * F.log_softmax(logits, 1)).sum(1).mean()


def peak_scores(probabilities, windows):
    """For each sound the best of its windows, label by label."""
    ends = np.cumsum(windows)
    return np.stack([probabilities[e - n:e].max(0) for e, n in zip(ends, windows)])


def windows_of(sounds, indices):
    parts = [sounds.patches(i) for i in indices]
    patches = np.log(np.concatenate(parts) + augment.features.LOG_OFFSET).astype(np.float16)
    return patches, [len(p) for p in parts]


@torch.no_grad()
def forward(model, patches, function=None):
    out = []
    for i in range(0, len(patches), 256):
        x = torch.from_numpy(patches[i:i + 256, None].astype(np.float32))
        out.append((function or (lambda v: model(v)[1]))(x))
    return torch.cat(out)


def accuracy(scores, truth):
    order = np.argsort(-scores, 1)
    return (order[:, 0] == truth).mean(), (order[:, :3] == truth[:, None]).any(1).mean()


def averaged(model, target, rate):
    with torch.no_grad():
        for name, value in model.state_dict().items():
            if value.dtype.is_floating_point:
                target[name].lerp_(value, 1 - rate)
            else:
                target[name].copy_(value)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("sounds")
    parser.add_argument("work")
    parser.add_argument("teacher")
    parser.add_argument("--minutes", type=float, default=50)
    parser.add_argument("--small", action="store_true", help="a run of a minute, to see that it runs")
    parser.add_argument("--everything", action="store_true", help="hold nothing out: for a last network")
    parser.add_argument("--width", type=int, default=32)
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    network.use_one_core()
    torch.manual_seed(arguments.seed)
    random = np.random.default_rng(arguments.seed)

    names = label_lists.read(arguments.sounds)
    recordings = augment.Sounds(os.path.join(arguments.work, "recordings.npz"))
    synthetic = augment.Sounds(os.path.join(arguments.work, "synthetic.npz"))
    for sounds in (recordings, synthetic):
        sounds.labels = label_lists.rename(sounds.labels)
    away = set() if arguments.everything else label_lists.held_out(recordings.labels, recordings.groups)
    chosen = [i for i in range(len(recordings)) if str(recordings.groups[i]) not in away]
    apart = [i for i in range(len(recordings)) if str(recordings.groups[i]) in away]
    log(len(names), "labels,", len(chosen), "to train,", len(apart), "held out")
    sampler = augment.Sampler(recordings, chosen, synthetic, names)

    teacher = network.Teacher(arguments.teacher).eval()
    model = network.Student(len(names), arguments.width)
    path = os.path.join(arguments.work, "student.pt")
    average = {name: value.clone() for name, value in model.state_dict().items()}
    checker = network.Student(len(names), arguments.width).eval()
    log(sum(p.numel() for p in model.parameters()), "parameters")

    held = windows_of(recordings, apart) if apart else None
    truth = np.array([names.index(recordings.labels[i]) for i in apart])
    per_round = 300 if arguments.small else 6000
    minutes = 0.5 if arguments.small else arguments.minutes
    begin, used, round_number, step = time.time(), 0.0, 0, 0
    pool, head = Pool(), None
    optimiser = torch.optim.AdamW(model.parameters(), 3e-3, weight_decay=0.02)

    while used < 1.0:
        if round_number < 16 and used < 0.7:
            patches, targets = sampler.draw(per_round * (2 if round_number == 0 else 1), random)
            pool.add(patches, targets, teach(teacher, patches), keep=16)
        if round_number in (0, 4, 8):
            head = train_head(pool, len(names), 50 if arguments.small else 600, random)
            if held and round_number in (0, 8):
                scores = forward(None, held[0], lambda x: torch.softmax(head(teacher(x)[0]), 1)).numpy()
                log("teacher + linear: top-1 %.3f top-3 %.3f" % accuracy(peak_scores(scores, held[1]), truth))
                torch.save(head.state_dict(), os.path.join(arguments.work, "head.pt"))
        model.train()
        sums = np.zeros(3)
        steps = max(1, int(3 * per_round / BATCH))
        for _ in range(steps):
            used = (time.time() - begin) / 60 / minutes
            rate = 3e-3 * min(1.0, (step + 1) / 100) * (0.5 + 0.5 * np.cos(np.pi * min(used, 1.0))) + 1e-5
            for group in optimiser.param_groups:
                group["lr"] = rate
            x, targets, embedding = pool.batch(random, BATCH)
            with torch.no_grad():
                wish = torch.softmax(head(embedding), 1)
            mine, logits = model(x[:, None])
            near = 1 - F.cosine_similarity(mine, embedding, 1).mean() + 0.5 * F.smooth_l1_loss(mine, embedding)
            taught = soft_loss(logits, wish)
            told = soft_loss(logits, targets * 0.95 + 0.05 / len(names))
            share = 0.3 + 0.4 * used  # the true label gains weight as the teacher has been heard
            loss = 2 * (1 - 0.5 * used) * near + (1 - share) * taught + share * told
            optimiser.zero_grad()
            loss.backward()
            torch.nn.utils.clip_grad_norm_(model.parameters(), 2.0)
            optimiser.step()
            step += 1
            averaged(model, average, min(0.998, step / (step + 20)))
            sums += [near.item(), taught.item(), told.item()]
            if used >= 1.0:
                break
        round_number += 1
        torch.save({"weights": average, "width": arguments.width, "labels": names}, path + ".part")
        os.replace(path + ".part", path)
        line = f"round {round_number} used {used:.2f} rate {rate:.5f} losses {np.round(sums / steps, 3)}"
        if held and (round_number % 4 == 0 or used >= 1.0):
            checker.load_state_dict(average)
            scores = torch.softmax(forward(checker, held[0]), 1).numpy()
            line += " held out top-1 %.3f top-3 %.3f" % accuracy(peak_scores(scores, held[1]), truth)
        log(line)
    with open(os.path.join(arguments.work, "run.json"), "w", encoding="utf-8") as file:
        json.dump({"steps": step, "minutes": minutes, "rounds": round_number}, file)


if __name__ == "__main__":
    main()
