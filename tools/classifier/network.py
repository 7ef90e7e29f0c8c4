"""The networks: the teacher, read from its ONNX file, and our own.

Our own keeps to what OpenCV 4.6 can import: padding sits in the convolutions,
no functional padding, no identity on stored values.
"""

import numpy as np
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


class Student(nn.Module):
    """Log-mel patches (N x 1 x 96 x 64) to features and to one logit for each of
    our labels. `embed` makes an embedding like the teacher's of the features: it
    is for training alone and is not exported."""

    MEAN, SCALE = -1.8, 0.4  # of ln(mel + 0.001) over the training sounds, roughly

    def __init__(self, labels, width=36, embedding=1024):
        super().__init__()
        w = width
        self.body = nn.Sequential(
            dense(1, w // 2, 2), dense(w // 2, 2 * w, 2), dense(2 * w, 4 * w, 2),
            Separable(4 * w, 4 * w), Separable(4 * w, 4 * w),
            Separable(4 * w, 8 * w, 2), *[Separable(8 * w, 8 * w) for _ in range(4)],
            Separable(8 * w, 16 * w))
        self.embed = nn.Sequential(nn.Linear(16 * w, embedding), nn.ReLU())
        self.head = nn.Linear(16 * w, labels)
        self.drop = nn.Dropout(0.2)

    def features(self, patches):
        return self.body((patches - self.MEAN) * self.SCALE).mean((2, 3))

    def forward(self, patches):
        features = self.features(patches)
        return features, self.head(self.drop(features))


def use_one_core():
    torch.set_num_threads(1)
    torch.set_flush_denormal(True)
