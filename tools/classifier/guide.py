"""A head on the teacher's embedding that tells our labels: it guides training.

It starts from what the teacher says of the classes that a label stands for
(labels.csv), times a factor that is learned, and adds a linear layer. With only
a few recordings of many labels that beats the linear layer alone by two points.
"""

import csv
import os

import torch
from torch.nn import functional as F

import labels as label_lists


def classes_of(folder, class_map, names):
    """For each label the teacher's outputs that mean it."""
    with open(class_map, encoding="utf-8") as file:
        places = {row["display_name"]: int(row["index"]) for row in csv.DictReader(file)}
    out = [[] for _ in names]
    with open(os.path.join(folder, "labels.csv"), encoding="utf-8") as file:
        for row in csv.DictReader(file):
            mine = names.index(label_lists.rename([row["label"]])[0])
            out[mine] = [places[c.strip()] for c in row["audioset_classes"].split(";") if c.strip() in places]
    return out


class Guide(torch.nn.Module):
    def __init__(self, teacher, classes):
        super().__init__()
        self.linear = torch.nn.Linear(1024, len(classes))
        torch.nn.init.zeros_(self.linear.weight)
        torch.nn.init.zeros_(self.linear.bias)
        self.factor = torch.nn.Parameter(torch.tensor(0.4 if any(classes) else 0.0))
        self.classes = classes
        self.scores = teacher.head

    def known(self, embedding):
        with torch.no_grad():
            scores = self.scores(embedding)
            return torch.stack([scores[:, c].max(1)[0] if c else torch.full((len(scores),), -9.0)
                                for c in self.classes], 1)

    def forward(self, embedding, known=None):
        known = self.known(embedding) if known is None else known
        return self.linear(F.dropout(embedding, 0.5, self.training)) + self.factor * known


def train(teacher, classes, embedding, truth, weights, steps):
    """`embedding`, `truth` and `weights` are of plain windows. Without any
    `classes` it is the linear layer alone."""
    guide = Guide(teacher, classes)
    known = guide.known(embedding)
    if not any(classes):
        guide.factor.requires_grad_(False)
    optimiser = torch.optim.AdamW(
        [{"params": guide.linear.parameters(), "weight_decay": 0.2},
         {"params": [guide.factor], "weight_decay": 0.0}], 2e-3)
    for step in range(steps):
        for group in optimiser.param_groups:
            group["lr"] = 2e-3 * (1 - step / steps) + 1e-5
        rows = torch.multinomial(weights, 256)
        loss = F.cross_entropy(guide(embedding[rows], known[rows]), truth[rows], label_smoothing=0.05)
        optimiser.zero_grad()
        loss.backward()
        optimiser.step()
    return guide.eval().requires_grad_(False)
