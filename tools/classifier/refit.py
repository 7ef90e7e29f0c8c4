"""Fits the last layer once more, on the training sounds as they are.

  refit.py SOUNDS WORK

The network learned from changed and mixed patches, which teaches it to listen
but not how often each label is right for a plain recording. Changes
WORK/student.pt; the one before is kept as WORK/student-before.pt.
"""

import argparse
import os
import shutil

import numpy as np
import torch
from torch.nn import functional as F

import augment
import labels as label_lists
import network
import train
from export import load

STEPS = 500


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("sounds")
    parser.add_argument("work")
    arguments = parser.parse_args()
    network.use_one_core()
    torch.manual_seed(1)
    path = os.path.join(arguments.work, "student.pt")
    student, names = load(path)
    embeddings, targets, weights = [], [], []
    for file in ("recordings.npz", "synthetic.npz"):
        sounds = augment.Sounds(os.path.join(arguments.work, file))
        sounds.labels = label_lists.rename(sounds.labels)
        away = label_lists.held_out(sounds.labels, sounds.groups) if file == "recordings.npz" else set()
        chosen = [i for i in range(len(sounds)) if str(sounds.groups[i]) not in away]
        patches, windows = train.windows_of(sounds, chosen)
        embeddings.append(train.forward(student, patches, lambda x: student(x)[0]))
        targets += np.repeat([names.index(sounds.labels[i]) for i in chosen], windows).tolist()
        share = 1.0 if file == "recordings.npz" else 0.3
        weights += np.repeat(share / np.sqrt(np.array(windows)), windows).tolist()
    embeddings, targets, weights = torch.cat(embeddings), torch.tensor(targets), torch.tensor(weights)
    optimiser = torch.optim.AdamW(student.head.parameters(), 5e-4, weight_decay=0.05)
    for step in range(STEPS):
        for group in optimiser.param_groups:
            group["lr"] = 5e-4 * (1 - step / STEPS) + 1e-6
        rows = torch.multinomial(weights, 256)
        loss = F.cross_entropy(student.head(F.dropout(embeddings[rows], 0.5)), targets[rows], label_smoothing=0.1)
        optimiser.zero_grad()
        loss.backward()
        optimiser.step()
    train.log("refitted", f"{loss.item():.3f}")
    stored = torch.load(path)
    shutil.copy(path, os.path.join(arguments.work, "student-before.pt"))
    stored["weights"] = student.state_dict()
    torch.save(stored, path)


if __name__ == "__main__":
    main()
