"""Which labels there are, what they are called in the program, and the split."""

import csv
import hashlib
import os

# Folder names of the training sounds that the program spells otherwise.
RENAMED = {"splash_splatter": "liquid_splashing"}
HELD_OUT = 0.2


def read(folder):
    """The program's labels, sorted: they are the network's outputs in order."""
    with open(os.path.join(folder, "labels.csv"), encoding="utf-8") as file:
        return sorted(RENAMED.get(row["label"], row["label"]) for row in csv.DictReader(file))


def rename(names):
    return [RENAMED.get(str(name), str(name)) for name in names]


def held_out(labels, groups):
    """Groups that training never sees: a fifth of each label's groups by the
    order of their hash, none of a label with fewer than three."""
    of_label = {}
    seen = set()
    for label, group in zip(labels, groups):
        if str(group) not in seen:
            seen.add(str(group))
            of_label.setdefault(str(label), []).append(str(group))
    out = set()
    for names in of_label.values():
        names.sort(key=lambda name: hashlib.sha256(name.encode()).hexdigest())
        if len(names) >= 3:
            out.update(names[:max(1, round(len(names) * HELD_OUT))])
    return out
