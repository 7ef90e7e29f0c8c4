"""Measures the network on the recordings that were held out, and makes its
scores mean something.

  calibrate.py SOUNDS WORK [--teacher TEACHER.onnx CLASSES.csv]

Prints the figures of the model card and writes WORK/confidence.json (the points
by which a score becomes a confidence) and WORK/figures.json. The figures at a
confidence are cross-fitted: the held-out groups are dealt into ten parts, and
each is measured by points that were fitted on the other nine. The points that
are written are fitted on all. With a teacher its own rows are printed as well: a
linear layer on its embedding, and the guide of the training.
"""

import argparse
import collections
import hashlib
import json
import os

import numpy as np
import torch

import augment
import features
import guide
import labels as label_lists
import network
import prepare
import train
from export import load

SURE, PROBABLE, POSSIBLE = 0.75, 0.4, 0.15  # what the program does something at
PRECISION = 0.92  # asked at SURE, for 0.9 that must be kept: renames follow from it
PARTS = 10


def held_out_sounds(folder, work):
    """Decoded as the program does; the features of training need not be."""
    path = os.path.join(work, "heldout.npz")
    if not os.path.exists(path):
        all_sounds = np.load(os.path.join(work, "recordings.npz"))
        away = label_lists.held_out(label_lists.rename(all_sounds["labels"]), all_sounds["groups"])
        prepare.pack(path, [(features.linear_mel(features.decode(os.path.join(folder, str(n)))), l, g, n)
                            for l, g, n in zip(all_sounds["labels"], all_sounds["groups"], all_sounds["names"])
                            if str(g) in away])
    sounds = augment.Sounds(path)
    sounds.labels = label_lists.rename(sounds.labels)
    return sounds


def logit(scores):
    clipped = np.clip(scores, 1e-4, 1 - 1e-4)
    return np.log(clipped / (1 - clipped))


def chance_of(scores, right):
    """How likely an answer of a score is right: two numbers, so that a few
    hundred recordings are enough to fit them. Gives slope and offset of a
    logistic curve over the logit of the score."""
    x = np.stack([logit(scores), np.ones(len(scores))], 1)
    known = np.zeros(2)
    for _ in range(50):
        chance = 1 / (1 + np.exp(-x @ known))
        pull = x.T @ (right - chance) - 0.1 * known
        stiffness = (x * (chance * (1 - chance))[:, None]).T @ x + 0.1 * np.eye(2)
        known += np.linalg.solve(stiffness, pull)
    return known


def fit(scores, right):
    """Points (score, confidence), rising."""
    slope, offset = chance_of(scores, right)

    def score_of(chance):
        return 1 / (1 + np.exp((offset - np.log(chance / (1 - chance))) / slope))

    # Sure is as far down as nine in ten of all answers above are right; where the
    # curve says so, not a count of the few that there are.
    falling = np.sort(scores)[::-1]
    chances = 1 / (1 + np.exp(-(slope * logit(falling) + offset)))
    share = np.cumsum(chances) / np.arange(1, len(falling) + 1)
    enough = np.flatnonzero(share >= PRECISION)
    sure = float(falling[enough[-1]]) if len(enough) else 0.98
    possible = min(score_of(POSSIBLE), 0.9 * sure)
    probable = min(max(score_of(PROBABLE), possible * 1.05), 0.95 * sure)
    known = ((possible, POSSIBLE), (probable, PROBABLE), (sure, SURE))
    return [[0.0, 0.0], *([round(float(score), 4), share] for score, share in known), [1.0, 0.99]]


def confidence(points, scores):
    return np.interp(scores, [p[0] for p in points], [p[1] for p in points])


def at(confidences, right):
    rows = {}
    for bar in (SURE, PROBABLE, POSSIBLE):
        above = confidences >= bar
        rows[str(bar)] = {"answers": int(above.sum()), "coverage": round(float(above.mean()), 4),
                          "precision": round(float(right[above].mean()), 4) if above.any() else None}
    return rows


def recalls_of(answer, truth, names):
    out = {}
    for index in sorted(set(truth)):
        of = truth == index
        out[names[index]] = (round(float((answer[of] == index).mean()), 3), int(of.sum()))
    return out


def row(scores, truth, names):
    top1, top3 = train.accuracy(scores, truth)
    recalls = recalls_of(scores.argmax(1), truth, names)
    return {"top1": round(float(top1), 4), "top3": round(float(top3), 4),
            "macro_recall": round(float(np.mean([r for r, _ in recalls.values()])), 4)}


def teacher_rows(arguments, names, patches, windows, truth):
    teacher = network.Teacher(arguments.teacher[0]).eval().requires_grad_(False)
    material = train.Material(arguments.sounds, arguments.work)
    plain, labels, weights = material.windows()
    known = torch.from_numpy(train.teach(teacher, plain)).float()
    held = torch.from_numpy(train.teach(teacher, patches)).float()
    rows = {}
    for name, classes in (("teacher_linear", [[] for _ in names]),
                          ("teacher_guide", guide.classes_of(arguments.sounds, arguments.teacher[1], names))):
        torch.manual_seed(1)
        head = guide.train(teacher, classes, known, labels, weights, 800)
        with torch.no_grad():
            scores = train.peak_scores(torch.softmax(head(held), 1).numpy(), windows)
        rows[name] = row(scores, truth, names)
    return rows


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("sounds")
    parser.add_argument("work")
    parser.add_argument("--teacher", nargs=2, metavar=("TEACHER", "CLASSES"))
    arguments = parser.parse_args()
    network.use_one_core()
    scorer, names = load(arguments.work)
    sounds = held_out_sounds(arguments.sounds, arguments.work)
    patches, windows = train.windows_of(sounds, range(len(sounds)))
    scores = train.peak_scores(train.forward(scorer, patches, scorer).numpy(), windows)
    scores[:, names.index("silence")] = 0  # never an answer
    truth = np.array([names.index(label) for label in sounds.labels])
    answer, best = scores.argmax(1), scores.max(1)
    right = answer == truth

    part = np.array([int(hashlib.sha256(str(g).encode()).hexdigest()[0:4], 16) % PARTS for g in sounds.groups])
    crossed = np.zeros(len(best))
    for side in range(PARTS):
        crossed[part == side] = confidence(fit(best[part != side], right[part != side]), best[part == side])
    points = fit(best, right)

    recalls = recalls_of(answer, truth, names)
    ranked = sorted(recalls.items(), key=lambda item: (-item[1][0], -item[1][1]))
    wrong = collections.Counter((names[t], names[a]) for t, a, r in zip(truth, answer, right) if not r)
    figures = {"recordings": len(sounds), "groups": len(set(map(str, sounds.groups))), "labels_held_out": len(recalls),
               "labels": len(names), **row(scores, truth, names),
               "cross_fitted": at(crossed, right), "fitted_on_all": at(confidence(points, best), right),
               "best_labels": ranked[:10], "worst_labels": ranked[-10:],
               "confused": [[*pair, count] for pair, count in wrong.most_common(10)]}
    if arguments.teacher:
        figures.update(teacher_rows(arguments, names, patches, windows, truth))
    print(json.dumps(figures, indent=1))
    for name, value in (("figures", figures), ("confidence", {"points": points})):
        with open(os.path.join(arguments.work, name + ".json"), "w", encoding="utf-8") as file:
            json.dump(value, file, indent=1)


if __name__ == "__main__":
    main()
