"""Writes the trained network as the program loads it.

  export.py WORK RESOURCES GOLDEN.json

Reads WORK/student.pt and, where there is one, WORK/confidence.json; writes
network.onnx (batch norms folded into the convolutions, softmax at the end) and
classifier.json (labels in the order of the outputs; the points by which a score
becomes a confidence). GOLDEN.json gets frames of a test signal and the network's
scores for it, which the program's own tests compare with.
"""

import argparse
import json
import os

import numpy as np
import torch
from torch import nn

import features
import network


class Scores(nn.Module):
    def __init__(self, student):
        super().__init__()
        self.student = student
        first = student.body[0][0]
        # (x - mean) * scale moves into the first convolution where it can: the
        # padding of a convolution is 0 of the shifted patch, so the shift stays.
        first.weight.data *= student.SCALE
        self.register_buffer("shift", torch.full((1, 1, 1, 1), -student.MEAN))

    def forward(self, patch):
        x = self.student.body(patch + self.shift)
        x = nn.functional.adaptive_avg_pool2d(x, 1).flatten(1)
        return torch.softmax(self.student.head(x), 1)


def load(path):
    stored = torch.load(path)
    student = network.Student(len(stored["labels"]), stored["width"])
    student.load_state_dict(stored["weights"])
    return student.eval(), stored["labels"]


def fuse(module):
    """Batch norms into the convolutions before them."""
    for child in module.children():
        fuse(child)
    if isinstance(module, nn.Sequential):
        for i in range(len(module) - 1):
            if isinstance(module[i], nn.Conv2d) and isinstance(module[i + 1], nn.BatchNorm2d):
                module[i] = nn.utils.fusion.fuse_conv_bn_eval(module[i], module[i + 1])
                module[i + 1] = nn.Identity()


def golden(scores):
    """Two sweeps that end in silence; the program's test makes the same."""
    t = np.arange(12000) / features.RATE
    signal = np.zeros(16000)
    signal[:12000] = (0.5 * np.sin(2 * np.pi * (300 + 900 * t) * t)
                      + 0.1 * np.sin(2 * np.pi * (5000 - 2000 * t) * t))
    patch = features.log_mel(features.linear_mel(signal.astype(np.float32))[:features.PATCH])
    with torch.no_grad():
        out = scores(torch.from_numpy(patch)[None, None])[0]
    return {"frames": {str(i): [round(float(v), 6) for v in patch[i]] for i in (0, 11, 40, 73, 90)},
            "scores": [round(float(v), 7) for v in out]}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("work")
    parser.add_argument("resources")
    parser.add_argument("golden")
    arguments = parser.parse_args()
    network.use_one_core()
    student, labels = load(os.path.join(arguments.work, "student.pt"))
    patch = torch.randn(1, 1, 96, 64, generator=torch.Generator().manual_seed(1)) * 2 - 2
    with torch.no_grad():
        before = torch.softmax(student(patch)[1], 1)
    fuse(student)
    scores = Scores(student).eval()
    with torch.no_grad():
        difference = (scores(patch) - before).abs().max().item()
    assert difference < 1e-5, difference
    os.makedirs(arguments.resources, exist_ok=True)
    path = os.path.join(arguments.resources, "network.onnx")
    torch.onnx.export(scores, patch, path, input_names=["mel_patch"], output_names=["scores"], opset_version=11,
                      dynamic_axes={"mel_patch": {0: "batch"}, "scores": {0: "batch"}})
    with open(arguments.golden, "w", encoding="utf-8") as file:
        json.dump(golden(scores), file, indent=0)
        file.write("\n")
    points = [[0, 0], [1, 1]]
    curve = os.path.join(arguments.work, "confidence.json")
    if os.path.exists(curve):
        with open(curve, encoding="utf-8") as file:
            points = json.load(file)["points"]
    with open(os.path.join(arguments.resources, "classifier.json"), "w", encoding="utf-8") as file:
        json.dump({"labels": labels, "confidence": points}, file, indent=1)
        file.write("\n")
    print(os.path.getsize(path), "bytes,", len(labels), "labels, fused within", difference)


if __name__ == "__main__":
    main()
