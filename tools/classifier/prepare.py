"""Turns a folder of labelled sounds into features: once, before training.

  prepare.py SOUNDS WORK [--small] [--synthetic-only]

SOUNDS holds train.csv (file,label,source,author,licence,group) and labels.csv.
WORK gets recordings.npz and synthetic.npz: linear mel frames of all sounds one
after another, with the start, length, label and group of each.
"""

import argparse
import csv
import os
import time

import numpy as np

import features


def pack(path, sounds):
    """sounds: a list of (frames, label, group, name)."""
    lengths = np.array([len(s[0]) for s in sounds])
    np.savez(path,
             frames=np.concatenate([s[0] for s in sounds]).astype(np.float32),
             starts=np.concatenate([[0], np.cumsum(lengths)[:-1]]), lengths=lengths,
             labels=np.array([s[1] for s in sounds]),
             groups=np.array([s[2] for s in sounds]),
             names=np.array([s[3] for s in sounds]))


def recordings(folder, small):
    rows = list(csv.DictReader(open(os.path.join(folder, "train.csv"), encoding="utf-8")))
    if small:
        rows = rows[::16]
    begin, sounds = time.time(), []
    for number, row in enumerate(rows):
        samples = features.decode(os.path.join(folder, row["file"]))
        sounds.append((features.linear_mel(samples), row["label"], row["group"], row["file"]))
        if number % 200 == 0:
            print(f"{number} of {len(rows)}, {time.time() - begin:.0f} s", flush=True)
    return sounds


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("sounds")
    parser.add_argument("work")
    parser.add_argument("--small", action="store_true")
    parser.add_argument("--synthetic-only", action="store_true")
    arguments = parser.parse_args()
    os.makedirs(arguments.work, exist_ok=True)
    if not arguments.synthetic_only:
        pack(os.path.join(arguments.work, "recordings.npz"), recordings(arguments.sounds, arguments.small))
    import synthesis  # here, because recordings alone need no espeak-ng
    made = []
    for label, group, samples in synthesis.everything(small=arguments.small):
        made.append((features.linear_mel(samples), label, group, group))
    pack(os.path.join(arguments.work, "synthetic.npz"), made)
    print(f"{len(made)} synthetic sounds", flush=True)


if __name__ == "__main__":
    main()
