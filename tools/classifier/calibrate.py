"""Measures the network on the recordings that were held out, and makes its
scores mean something.

  calibrate.py SOUNDS WORK

Prints the figures of the model card and writes WORK/confidence.json (the points
by which a score becomes a confidence) and WORK/figures.json. The figures at a
confidence are cross-fitted: the points are fitted on one half of the held-out
groups and measured on the other, both ways round. The points that are written
are fitted on both halves.
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
import labels as label_lists
import network
import prepare
import train
from export import load

SURE, PROBABLE, POSSIBLE = 0.75, 0.4, 0.15  # what the program does something at
PRECISION = 0.9  # at SURE; asked of a cautious estimate, because renames follow from it


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


def isotonic(scores, right):
    """Share of right answers as a rising function of the score: (score, share)."""
    order = np.argsort(scores)
    blocks = []
    for i in order:
        blocks.append([float(right[i]), 1.0, scores[i]])
        while len(blocks) > 1 and blocks[-2][0] / blocks[-2][1] >= blocks[-1][0] / blocks[-1][1]:
            total, count, _ = blocks.pop()
            blocks[-1][0] += total
            blocks[-1][1] += count
    return [(score, total / count) for total, count, score in blocks]


def fit(scores, right):
    """Points (score, confidence), rising."""
    shares = isotonic(scores, right)

    def first(share):
        return next((score for score, value in shares if value >= share), 0.999)

    order = np.argsort(-scores)
    # One wrong answer more than was seen (a half of the recordings is few).
    precision = np.cumsum(right[order]) / (np.arange(1, len(order) + 1) + 1)
    enough = [i for i in range(9, len(order)) if precision[i] >= PRECISION]
    # However well a half went, a score below 0.9 is never sure: the fit alone
    # promised 0.92 and kept 0.76 on the other half.
    sure = max(float(scores[order[enough[-1]]]) if enough else 0.98, 0.9)
    possible = min(first(POSSIBLE), 0.9 * sure)
    probable = min(max(first(PROBABLE), possible * 1.05), 0.95 * sure)
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


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("sounds")
    parser.add_argument("work")
    arguments = parser.parse_args()
    network.use_one_core()
    student, names = load(os.path.join(arguments.work, "student.pt"))
    sounds = held_out_sounds(arguments.sounds, arguments.work)
    patches, windows = train.windows_of(sounds, range(len(sounds)))
    scores = train.peak_scores(torch.softmax(train.forward(student, patches), 1).numpy(), windows)
    scores[:, names.index("silence")] = 0  # never an answer
    truth = np.array([names.index(label) for label in sounds.labels])
    top1, top3 = train.accuracy(scores, truth)
    answer, best = scores.argmax(1), scores.max(1)
    right = answer == truth

    half = np.array([int(hashlib.sha256(str(g).encode()).hexdigest()[0:2], 16) % 2 for g in sounds.groups])
    crossed = np.zeros(len(best))
    for side in (0, 1):
        crossed[half == side] = confidence(fit(best[half != side], right[half != side]), best[half == side])
    points = fit(best, right)

    recalls = {}
    for index in sorted(set(truth)):
        of = truth == index
        recalls[names[index]] = (round(float(right[of].mean()), 3), int(of.sum()))
    ranked = sorted(recalls.items(), key=lambda item: (-item[1][0], -item[1][1]))
    wrong = collections.Counter((names[t], names[a]) for t, a, r in zip(truth, answer, right) if not r)
    figures = {"recordings": len(sounds), "groups": len(set(map(str, sounds.groups))), "labels_held_out": len(recalls),
               "labels": len(names), "top1": round(float(top1), 4), "top3": round(float(top3), 4),
               "macro_recall": round(float(np.mean([r for r, _ in recalls.values()])), 4),
               "cross_fitted": at(crossed, right), "fitted_on_all": at(confidence(points, best), right),
               "best_labels": ranked[:10], "worst_labels": ranked[-10:],
               "confused": [[*pair, count] for pair, count in wrong.most_common(10)]}
    print(json.dumps(figures, indent=1))
    for name, value in (("figures", figures), ("confidence", {"points": points})):
        with open(os.path.join(arguments.work, name + ".json"), "w", encoding="utf-8") as file:
            json.dump(value, file, indent=1)


if __name__ == "__main__":
    main()
