"""Makes quick networks of wide ones.

  narrow.py SOUNDS WORK

Makes WORK/residual.pt of WORK/residual_wide.pt, and WORK/separable.pt of
WORK/separable_wide.pt, whichever is there. Of a wide map those channels go, one
after another, that the next convolution can best do without once its other
filters are refitted by least squares, over windows of the training sounds (Hassibi
and Stork, "Second order derivatives for network pruning: Optimal Brain Surgeon",
1993). What comes of it may be trained on: train.py --from.
"""

import argparse
import os

import numpy as np
import torch
from torch.nn import functional as F

import network
import train

WINDOWS = 1500  # to refit on
AT_ONCE = 64
RIDGE = 1e-6  # of the mean variance


class Moments:
    """Mean (n) and covariance (n x n) of the rows that were added (any x n)."""

    def __init__(self):
        self.count, self.sum, self.products = 0, 0, 0

    def add(self, rows):
        rows = rows.double()
        self.count += len(rows)
        self.sum = self.sum + rows.sum(0)
        self.products = self.products + rows.T @ rows

    def mean(self):
        return self.sum / self.count

    def covariance(self):
        return self.products / self.count - torch.outer(self.mean(), self.mean())


def inverse(covariance):
    return torch.linalg.inv(covariance + RIDGE * covariance.diagonal().mean() * torch.eye(len(covariance), dtype=torch.float64))


def columns_of(channels, size):
    return torch.tensor([channel * size + i for channel in channels for i in range(size)])


def needed(filters, covariance, keep, size):
    """The channels (of `size` columns each) that the filters need most."""
    left = list(range(filters.shape[1] // size))
    while len(left) > keep:
        columns = columns_of(left, size)
        inverted = inverse(covariance[columns][:, columns])
        fitted = (filters @ covariance[:, columns] @ inverted).view(-1, len(left), size)
        each = torch.arange(len(left))
        own = inverted.view(len(left), size, len(left), size)[each, :, each]
        loss = torch.einsum("ogi,gij,ogj->g", fitted, torch.linalg.inv(own), fitted)
        del left[int(loss.argmin())]
    return left


def refit(filters, moments, keep, size=1, weights=None, centred=False):
    """The channels that stay, the filters for them, and what to add to the bias.
    `weights` say how much each filter counts. Centred filters have zero mean."""
    filters, covariance, mean = filters.double(), moments.covariance(), moments.mean()
    left = needed(filters if weights is None else filters * weights.double()[:, None], covariance, keep, size)
    columns = columns_of(left, size)
    allowed = torch.eye(len(columns), dtype=torch.float64) - (1 / len(columns) if centred else 0)
    inverted = torch.linalg.pinv(allowed @ covariance[columns][:, columns] @ allowed, rcond=1e-9)
    fitted = filters @ covariance[:, columns] @ allowed @ inverted @ allowed
    return torch.tensor(left), fitted.float(), (filters @ mean - fitted @ mean[columns]).float()


def batches(patches):
    for i in range(0, len(patches), AT_ONCE):
        yield network.Student.scaled(torch.from_numpy(patches[i:i + AT_ONCE, None].astype(np.float32)))


def narrow_residual(wide, narrow, patches):
    weights = wide.state_dict()
    blocks = [i for i, layer in enumerate(wide.body) if isinstance(layer, network.Block)]
    between = {i: Moments() for i in blocks}
    for x in batches(patches):
        for i, layer in enumerate(wide.body):
            if i in between:
                between[i].add(torch.relu(layer.mix(layer.spatial(x))).permute(0, 2, 3, 1).flatten(0, 2))
            x = layer(x)
    for i in blocks:
        kept, filters, more = refit(wide.body[i].add.filters().flatten(1), between[i], narrow.body[i].mix.out_channels,
                                    centred=True)
        for name in ("weight", "gain", "bias"):
            weights[f"body.{i}.mix.{name}"] = weights[f"body.{i}.mix.{name}"][kept]
        length = filters.norm(dim=1)
        weights[f"body.{i}.add.weight"] = filters[:, :, None, None]
        weights[f"body.{i}.add.gain"] = (length + network.Conv.TINY)[:, None, None, None]
        weights[f"body.{i}.add.bias"] += more
    return weights


def narrow_separable(wide, narrow, patches):
    weights = wide.state_dict()
    seen = {0: Moments(), 1: Moments()}  # what the convolution after each of these layers gets
    for x in batches(patches):
        for i in seen:
            x = wide.body[i](x)
            tiles = F.unfold(x, 3, padding=1, stride=2).permute(0, 2, 1).flatten(0, 1)
            seen[i].add(tiles[::4])
    for i in (1, 0):
        norm = {name: weights[f"body.{i + 1}.1.{name}"] for name in ("weight", "running_var")}
        scale = norm["weight"] / torch.sqrt(norm["running_var"] + wide.body[i + 1][1].eps)
        kept, filters, more = refit(weights[f"body.{i + 1}.0.weight"].flatten(1), seen[i],
                                    narrow.body[i][0].out_channels, 9, scale)
        weights[f"body.{i + 1}.0.weight"] = filters.view(len(filters), -1, 3, 3)
        weights[f"body.{i + 1}.1.running_mean"] -= more
        for name in ("0.weight", "1.weight", "1.bias", "1.running_mean", "1.running_var"):
            weights[f"body.{i}.{name}"] = weights[f"body.{i}.{name}"][kept]
    return weights


@torch.no_grad()
def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("sounds")
    parser.add_argument("work")
    arguments = parser.parse_args()
    network.use_one_core()
    patches, _, _ = train.Material(arguments.sounds, arguments.work).windows()
    random = np.random.default_rng(1)
    patches = patches[random.choice(len(patches), min(WINDOWS, len(patches)), replace=False)]
    for kind, narrowed in (("residual", narrow_residual), ("separable", narrow_separable)):
        path = os.path.join(arguments.work, f"{kind}_wide.pt")
        if not os.path.exists(path):
            continue
        stored = torch.load(path)
        wide, narrow = (network.Student(len(stored["labels"]), k).eval() for k in (stored["kind"], kind))
        wide.load_state_dict(stored["weights"])
        narrow.load_state_dict(narrowed(wide, narrow, patches))
        torch.save({"weights": narrow.state_dict(), "kind": kind, "labels": stored["labels"]},
                   os.path.join(arguments.work, f"{kind}.pt"))
        count, before = (sum(p.numel() for n, p in model.named_parameters() if not n.startswith("embed"))
                         for model in (narrow, wide))
        print(kind, count, "parameters of", before)


if __name__ == "__main__":
    main()
