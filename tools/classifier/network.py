"""The networks: the teacher, read from its ONNX file, and our own.

Our own keeps to what OpenCV 4.6 can import: padding sits in the convolutions,
no functional padding, no identity on stored values.
"""

import functools
import math

import torch
from torch import nn


class Teacher(nn.Module):
    """The convolutional part of a YAMNet-compatible ONNX file: patches of
    log-mel frames to the embedding (1024) and the logits (521)."""

    def __init__(self, path):
        super().__init__()
        import onnx
        from onnx import numpy_helper
        graph = onnx.load(path).graph
        stored = {i.name: torch.from_numpy(numpy_helper.to_array(i).copy()) for i in graph.initializer}
        layers = []
        for node in graph.node:
            if node.op_type == "Conv":
                settings = {a.name: list(a.ints) or a.i for a in node.attribute}
                weight, bias = stored[node.input[1]], stored[node.input[2]]
                top, left, bottom, right = settings["pads"]
                if (top, left) != (bottom, right):
                    layers.append(nn.ZeroPad2d((left, right, top, bottom)))
                    padding = 0
                else:
                    padding = (top, left)
                conv = nn.Conv2d(weight.shape[1] * settings["group"], weight.shape[0], weight.shape[2:],
                                 settings["strides"], padding, groups=settings["group"])
                conv.weight.data, conv.bias.data = weight, bias
                layers += [conv, nn.ReLU(inplace=True)]
            elif node.op_type == "Gemm":
                self.head = nn.Linear(1024, 521)
                self.head.weight.data, self.head.bias.data = stored[node.input[1]], stored[node.input[2]]
        self.body = nn.Sequential(*layers)

    @torch.no_grad()
    def forward(self, patches):
        embedding = self.body(patches).mean((2, 3))
        return embedding, self.head(embedding)


# The gain by which ReLU loses variance (Brock et al., "Characterizing signal
# propagation to close the performance gap in unnormalized ResNets", 2021).
RELU_GAIN = math.sqrt(2 / (1 - 1 / math.pi))


class Conv(nn.Conv2d):
    """A convolution whose filters are kept at zero mean and unit length, times a
    gain that is learned: so no batch norm is needed, which costs half of the time
    of a training step. With bfloat16 it is trained as a matrix product where that
    is the same (1 x 1, strides of the kernel's size, a single channel)."""

    TINY = 1e-4  # added to the length

    def __init__(self, inputs, outputs, kernel, stride=1, padding=0, groups=1, gain=1.0):
        super().__init__(inputs, outputs, kernel, stride, padding, groups=groups)
        self.gain = nn.Parameter(torch.full((outputs, 1, 1, 1), gain))
        nn.init.zeros_(self.bias)

    def filters(self):
        flat = self.weight.flatten(1)
        flat = flat - flat.mean(1, keepdim=True)
        return (flat / (flat.norm(dim=1, keepdim=True) + self.TINY)).view_as(self.weight) * self.gain

    def plain(self):
        """The same as an ordinary convolution, for good."""
        conv = nn.Conv2d(self.in_channels, self.out_channels, self.kernel_size, self.stride, self.padding,
                         groups=self.groups)
        conv.weight.data, conv.bias.data = self.filters().detach().clone(), self.bias.detach().clone()
        return conv

    def forward(self, x):
        filters, size = self.filters(), self.kernel_size[0]
        if torch.is_autocast_cpu_enabled() and self.groups == 1 and (self.in_channels == 1 or self.stride[0] == size):
            if self.in_channels == 1:
                x = nn.functional.pad(x[:, 0], 2 * self.padding)
                tiles, rows = x.unfold(1, size, self.stride[0]).unfold(2, size, self.stride[0]), filters
            else:
                count, inputs, height, width = x.shape
                tiles = x.permute(0, 2, 3, 1).reshape(count, height // size, size, width // size, size, inputs)
                tiles, rows = tiles.transpose(2, 3), filters.permute(0, 2, 3, 1)
            return nn.functional.linear(tiles.flatten(3), rows.flatten(1), self.bias).permute(0, 3, 1, 2)
        return nn.functional.conv2d(x, filters, self.bias, self.stride, self.padding, 1, self.groups)


class Block(nn.Module):
    """Adds to its input: a 3 x 3 filter per channel, then two mixes of the channels
    with a ReLU between. It starts as hardly more than its input."""

    def __init__(self, channels, between):
        super().__init__()
        self.spatial = Conv(channels, channels, 3, 1, 1, groups=channels)
        self.mix = Conv(channels, between, 1)
        self.add = Conv(between, channels, 1, gain=0.1 * RELU_GAIN)

    def forward(self, x):
        return x + self.add(torch.relu(self.mix(self.spatial(x))))


# The other kind: ordinary convolutions with batch norms.


def dense(inputs, outputs, stride):
    return nn.Sequential(nn.Conv2d(inputs, outputs, 3, stride, 1, bias=False),
                         nn.BatchNorm2d(outputs), nn.ReLU(inplace=True))


class Separable(nn.Module):
    """A 3 x 3 filter per channel, then a mix of the channels; with a shortcut
    where the shape stays."""

    def __init__(self, inputs, outputs, stride=1):
        super().__init__()
        self.spatial = nn.Sequential(nn.Conv2d(inputs, inputs, 3, stride, 1, groups=inputs, bias=False),
                                     nn.BatchNorm2d(inputs), nn.ReLU(inplace=True))
        self.mix = nn.Sequential(nn.Conv2d(inputs, outputs, 1, bias=False), nn.BatchNorm2d(outputs))
        self.shortcut = stride == 1 and inputs == outputs

    def forward(self, x):
        y = self.mix(self.spatial(x))
        return torch.relu(y + x) if self.shortcut else torch.relu(y)


def separable_body(first=16, second=48):
    w = 36
    return nn.Sequential(
        dense(1, first, 2), dense(first, second, 2), dense(second, 4 * w, 2),
        Separable(4 * w, 4 * w), Separable(4 * w, 4 * w),
        Separable(4 * w, 8 * w, 2), *[Separable(8 * w, 8 * w) for _ in range(4)],
        Separable(8 * w, 16 * w)), 16 * w


def residual_body(widening=1):
    layers, before = [Conv(1, 64, 8, 4, 2)], 64
    for channels, blocks in ((64, 1), (128, 3), (256, 3)):
        if channels != before:
            layers.append(Conv(before, channels, 2, 2))
        layers += [Block(channels, widening * channels) for _ in range(blocks)]
        before = channels
    return nn.Sequential(*layers, Conv(before, 512, 1), nn.ReLU()), 512


SHIPPED = ("residual", "separable")
# The wide ones are trained first and narrowed then (narrow.py).
BODIES = {"residual": residual_body, "separable": separable_body,
          "residual_wide": functools.partial(residual_body, widening=2),
          "separable_wide": functools.partial(separable_body, first=18, second=72)}


class Student(nn.Module):
    """Log-mel patches (N x 1 x 96 x 64) to features and to one logit for each of
    our labels. `embed` makes an embedding like the teacher's of the features: it
    is for training alone and is not exported."""

    MEAN, SCALE = -1.8, 0.4  # of ln(mel + 0.001) over the training sounds, roughly

    def __init__(self, labels, kind, embedding=1024):
        super().__init__()
        self.body, features = BODIES[kind]()
        self.embed = nn.Sequential(nn.Linear(features, embedding), nn.ReLU())
        self.head = nn.Linear(features, labels)
        self.drop = nn.Dropout(0.2)

    @classmethod
    def scaled(cls, patches):
        return (patches - cls.MEAN) * cls.SCALE

    def features(self, patches):
        return self.body(self.scaled(patches)).mean((2, 3))

    def forward(self, patches):
        features = self.features(patches)
        return features, self.head(self.drop(features))


def use_one_core():
    torch.set_num_threads(1)
    torch.set_flush_denormal(True)
