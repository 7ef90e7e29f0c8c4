"""Trains the network.

  train.py SOUNDS WORK TEACHER.onnx CLASSES.csv [--minutes 80] [--bfloat16] [--small] [--everything] [--kind separable]
           [--from FILE.pt]

A second process makes augmented patches of the training sounds all the while
and asks the teacher for its embedding of each. The network follows that
embedding, the teacher's own scores, a small head on the embedding (guide.py)
and the true label. Writes WORK/KIND.pt, averaged weights, after every round.
"""

import argparse
import json
import multiprocessing
import os
import time

import numpy as np
import torch
from torch.nn import functional as F

import augment
import guide
import labels as label_lists
import network

BATCH = 96
PART = 6000  # patches
KEPT = 64  # parts in memory, 90 MB each
AT_ONCE, PER_PART = 16, 150  # parts made as fast as may be; then one for so many steps
ROUND = 240.0  # seconds


def log(*words):
    print(f"{time.strftime('%H:%M:%S')}", *words, flush=True)


@torch.no_grad()
def teach(teacher, patches, bfloat16=False):
    """The teacher's embedding of log-mel patches."""
    parts = []
    for i in range(0, len(patches), 64):
        with torch.autocast("cpu", torch.bfloat16, enabled=bfloat16):
            parts.append(teacher(torch.from_numpy(patches[i:i + 64, None].astype(np.float32)))[0].float())
    return torch.cat(parts).numpy().astype(np.float16)


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


class Material:
    """The sounds of the work folder and which of them train."""

    def __init__(self, sounds, work, everything=False):
        self.names = label_lists.read(sounds)
        self.recordings = augment.Sounds(os.path.join(work, "recordings.npz"))
        self.synthetic = augment.Sounds(os.path.join(work, "synthetic.npz"))
        for kind in (self.recordings, self.synthetic):
            kind.labels = label_lists.rename(kind.labels)
        away = set() if everything else label_lists.held_out(self.recordings.labels, self.recordings.groups)
        of_all = range(len(self.recordings))
        self.chosen = [i for i in of_all if str(self.recordings.groups[i]) not in away]
        self.apart = [i for i in of_all if str(self.recordings.groups[i]) in away]

    def windows(self):
        """Plain windows of everything that trains, with the label and the weight of each."""
        patches, truth, weights = [], [], []
        for kind, chosen, share in ((self.recordings, self.chosen, 1.0),
                                    (self.synthetic, range(len(self.synthetic)), 0.3)):
            windows = windows_of(kind, chosen)
            patches.append(windows[0])
            truth += np.repeat([self.names.index(kind.labels[i]) for i in chosen], windows[1]).tolist()
            weights += np.repeat(share / np.sqrt(np.array(windows[1])), windows[1]).tolist()
        return np.concatenate(patches), torch.tensor(truth), torch.tensor(weights)


def make_parts(arguments, per_part, queue):
    """The second process: augmented patches, without end."""
    network.use_one_core()
    random = np.random.default_rng(arguments.seed + 100)
    material = Material(arguments.sounds, arguments.work, arguments.everything)
    sampler = augment.Sampler(material.recordings, material.chosen, material.synthetic, material.names)
    teacher = network.Teacher(arguments.teacher).eval()
    while True:
        patches, targets = sampler.draw(per_part, random)
        queue.put((patches, targets.astype(np.float16), teach(teacher, patches, arguments.bfloat16)))


def batch(parts, random):
    part = parts[random.integers(len(parts))]
    rows = np.sort(random.choice(len(part[0]), min(BATCH, len(part[0])), replace=False))
    return [torch.from_numpy(a[rows]).float() for a in part]


def averaged(model, target, rate):
    with torch.no_grad():
        for name, value in model.state_dict().items():
            if value.dtype.is_floating_point:
                target[name].lerp_(value, 1 - rate)
            else:
                target[name].copy_(value)


def step_losses(model, teacher, head, x, targets, embedding, bfloat16):
    """How far from the teacher's embedding, its scores, the head, the truth."""
    with torch.autocast("cpu", torch.bfloat16, enabled=bfloat16):
        with torch.no_grad():
            wish, scores = head(embedding), teacher.head(embedding)
        features, logits = model(x[:, None].contiguous(memory_format=torch.channels_last))
        mine = model.embed(features)
        classes = teacher.head(mine)
    wish, scores = torch.softmax(wish.float(), 1), torch.sigmoid(scores.float())
    mine, logits, classes = mine.float(), logits.float(), classes.float()
    near = 1 - F.cosine_similarity(mine, embedding, 1).mean() + 0.5 * F.smooth_l1_loss(mine, embedding)
    heard = F.binary_cross_entropy_with_logits(classes, scores, reduction="sum") / len(x)
    told = soft_loss(logits, targets * 0.9 + targets.sum(1, keepdim=True) * 0.1 / targets.shape[1])
    return near, heard, soft_loss(logits, wish), told


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("sounds")
    parser.add_argument("work")
    parser.add_argument("teacher")
    parser.add_argument("classes", help="the teacher's class map")
    parser.add_argument("--minutes", type=float, default=80)
    parser.add_argument("--bfloat16", action="store_true", help="twice as fast where the processor knows it")
    parser.add_argument("--small", action="store_true", help="a run of a minute, to see that it runs")
    parser.add_argument("--everything", action="store_true", help="hold nothing out: for a last network")
    parser.add_argument("--kind", choices=network.BODIES, default="residual")
    parser.add_argument("--from", dest="start", metavar="FILE.pt", help="go on from these weights")
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    network.use_one_core()
    torch.manual_seed(arguments.seed)
    random = np.random.default_rng(arguments.seed)

    parts, queue = [], multiprocessing.get_context("spawn").Queue(2)
    maker = multiprocessing.get_context("spawn").Process(
        target=make_parts, args=(arguments, 300 if arguments.small else PART, queue), daemon=True)
    maker.start()

    material = Material(arguments.sounds, arguments.work, arguments.everything)
    names, apart = material.names, material.apart
    log(len(names), "labels,", len(material.chosen), "to train,", len(apart), "held out")
    teacher = network.Teacher(arguments.teacher).eval().requires_grad_(False)
    patches, plain_truth, weights = material.windows()
    head = guide.train(teacher, guide.classes_of(arguments.sounds, arguments.classes, names),
                       torch.from_numpy(teach(teacher, patches, arguments.bfloat16)).float(), plain_truth, weights,
                       50 if arguments.small else 800)
    del patches
    held = windows_of(material.recordings, apart) if apart else None
    truth = np.array([names.index(material.recordings.labels[i]) for i in apart])
    if held:
        heard = torch.from_numpy(teach(teacher, held[0])).float()
        with torch.no_grad():
            scores = torch.softmax(head(heard), 1).numpy()
        log("guide: top-1 %.3f top-3 %.3f" % accuracy(peak_scores(scores, held[1]), truth))

    model = network.Student(len(names), arguments.kind).to(memory_format=torch.channels_last)
    if arguments.start:
        model.load_state_dict(torch.load(arguments.start)["weights"])
    checker = network.Student(len(names), arguments.kind).eval()
    average = {name: value.clone() for name, value in model.state_dict().items()}
    log(sum(p.numel() for n, p in model.named_parameters() if not n.startswith("embed")), "parameters")
    path = os.path.join(arguments.work, f"{arguments.kind}.pt")
    minutes = 0.5 if arguments.small else arguments.minutes
    peak = 2e-3 if arguments.start else 3e-3
    optimiser = torch.optim.AdamW(model.parameters(), 3e-3, weight_decay=0.02)
    model.train()
    parts.append(queue.get())
    begin, used, step, rounds, made = time.time(), 0.0, 0, 0, 1
    while used < 1.0:
        sums, steps, until = np.zeros(4), 0, time.time() + ROUND
        while used < 1.0 and time.time() < until:
            if (made < AT_ONCE or step > PER_PART * made) and not queue.empty():
                parts = [*parts, queue.get()][-KEPT:]
                made += 1
            used = (time.time() - begin) / 60 / minutes
            rate = peak * min(1.0, (step + 1) / 200) * (0.5 + 0.5 * np.cos(np.pi * min(used, 1.0))) + 1e-5
            for group in optimiser.param_groups:
                group["lr"] = rate
            near, heard, taught, told = step_losses(model, teacher, head, *batch(parts, random), arguments.bfloat16)
            # What is right for these few sounds comes second to what the teacher hears in all of them.
            loss = 2 * near + 0.1 * heard + 0.6 * taught + (0.2 + 0.2 * used) * told
            optimiser.zero_grad()
            loss.backward()
            torch.nn.utils.clip_grad_norm_(model.parameters(), 2.0)
            optimiser.step()
            step += 1
            steps += 1
            averaged(model, average, min(0.999, step / (step + 20)))
            sums += [near.item(), heard.item(), taught.item(), told.item()]
        rounds += 1
        torch.save({"weights": average, "kind": arguments.kind, "labels": names}, path + ".part")
        os.replace(path + ".part", path)
        line = (f"round {rounds} step {step} of {used:.2f} parts {made} rate {rate:.5f} "
                f"losses {np.round(sums / steps, 3)}")
        if held:
            checker.load_state_dict(average)
            scores = torch.softmax(forward(checker, held[0]), 1).numpy()
            line += " held out top-1 %.3f top-3 %.3f" % accuracy(peak_scores(scores, held[1]), truth)
        log(line)
    maker.terminate()
    with open(os.path.join(arguments.work, "run.json"), "w", encoding="utf-8") as file:
        json.dump({"steps": step, "minutes": minutes, "parts": made}, file)


if __name__ == "__main__":
    main()
