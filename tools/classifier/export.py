"""Writes the trained network as the program loads it.

  export.py WORK RESOURCES GOLDEN.json

Reads the networks of WORK (residual.pt, separable.pt: the scores are their mean)
and, where there is one, WORK/confidence.json; writes
network.onnx (filters as bytes, softmax at the end) and
classifier.json (labels in the order of the outputs; the points by which a score
becomes a confidence). GOLDEN.json gets frames of a test signal and the network's
scores for it, which the program's own tests compare with.
"""

import argparse
import json
import os

import numpy as np
import onnx
import torch
from onnx import helper, numpy_helper, shape_inference
from torch import nn

import features
import network


STEPS = 127  # of a filter's bytes to each side of zero
SMALL = 2000  # weights that aren't worth it
COLUMNS = 18  # of a map; with fewer, OpenCV 4.6 is slow with a filter per channel


def coarse(weights):
    """The weights of a convolution as bytes, and the step of each filter."""
    flat = weights.reshape(len(weights), -1)
    step = np.maximum(np.abs(flat).max(1), 1e-12) / STEPS
    return np.round(flat / step[:, None]).astype(np.int8).reshape(weights.shape), step.astype(np.float32)


def fuse(module):
    """Batch norms into the convolutions before them."""
    for child in module.children():
        fuse(child)
    if isinstance(module, nn.Sequential):
        for i in range(len(module) - 1):
            if isinstance(module[i], nn.Conv2d) and isinstance(module[i + 1], nn.BatchNorm2d):
                module[i] = nn.utils.fusion.fuse_conv_bn_eval(module[i], module[i + 1])
                module[i + 1] = nn.Identity()


def turned(conv):
    """The same convolution with the time as columns, of which there are more than bands."""
    out = nn.Conv2d(conv.in_channels, conv.out_channels, conv.kernel_size, conv.stride, conv.padding, groups=conv.groups)
    out.weight.data, out.bias.data = conv.weight.data.transpose(2, 3).contiguous(), conv.bias.data
    return out


def plain(module):
    """Ordinary convolutions, with the filters that the stored bytes give."""
    for name, child in module.named_children():
        plain(child)
        if isinstance(child, nn.Conv2d):
            conv = turned(child.plain() if isinstance(child, network.Conv) else child)
            weights = conv.weight.data.numpy()
            if weights.size >= SMALL:
                values, step = coarse(weights)
                weights[:] = values * step.reshape(-1, 1, 1, 1)
            setattr(module, name, conv)


class Together(nn.Module):
    """What the program loads: scores of log-mel patches, the mean of the students'."""

    def __init__(self, students):
        super().__init__()
        self.heads = nn.ModuleList(student.head for student in students)
        self.bodies = nn.ModuleList()
        for student in students:
            # (x - mean) * scale moves into the first convolution where it can: the
            # padding of a convolution is 0 of the shifted patch, so the shift stays.
            first = student.body[0][0] if isinstance(student.body[0], nn.Sequential) else student.body[0]
            first.weight.data *= student.SCALE
            self.bodies.append(student.body)
        self.register_buffer("shift", torch.full((1, 1, 1, 1), -network.Student.MEAN))

    def forward(self, patch):
        x = (patch + self.shift).transpose(2, 3)
        scores = [torch.softmax(head(nn.functional.adaptive_avg_pool2d(body(x), 1).flatten(1)), 1)
                  for body, head in zip(self.bodies, self.heads)]
        return sum(scores) / len(scores) if len(scores) > 1 else scores[0]


@torch.no_grad()
def load(work):
    """The students of a work folder as they ship, and their labels."""
    students, labels = [], None
    for kind in network.SHIPPED:
        path = os.path.join(work, f"{kind}.pt")
        if os.path.exists(path):
            stored = torch.load(path)
            student = network.Student(len(stored["labels"]), stored["kind"]).eval()
            student.load_state_dict(stored["weights"])
            assert labels in (None, stored["labels"])
            labels = stored["labels"]
            fuse(student)
            plain(student)
            students.append(student.eval())
    return Together(students).eval(), labels


def roomy(graph, shapes):
    """Gives narrow maps empty columns before a filter per channel, and takes them
    away after it and its ReLU: that is half of the time."""
    nodes, cuts = [], {}

    def constant(name, values):
        graph.initializer.append(numpy_helper.from_array(np.array(values, np.int64), name))
        return name

    for node, following in zip(graph.node, [*graph.node[1:], None]):
        settings = {a.name: helper.get_attribute_value(a) for a in node.attribute}
        is_per_channel = node.op_type == "Conv" and settings["group"] > 1 and settings["strides"] == [1, 1]
        width = shapes[node.input[0]][3] if is_per_channel else COLUMNS
        if width < COLUMNS:
            last = following if following.op_type == "Relu" else node  # the two are one in OpenCV
            source, out = node.input[0], last.output[0]
            node.input[0], last.output[0] = out + ".roomy", out + ".wide"
            columns = constant(out + ".columns", [0] * 7 + [COLUMNS - width])
            bounds = [constant(f"{out}.{name}", [value]) for name, value in (("from", 0), ("to", width), ("axis", 3))]
            nodes.append(helper.make_node("Pad", [source, columns], [out + ".roomy"], out + ".pad"))
            cuts[out + ".wide"] = helper.make_node("Slice", [out + ".wide", *bounds], [out], out + ".slice")
        nodes.append(node)
        if node.output[0] in cuts:
            nodes.append(cuts[node.output[0]])
    del graph.node[:]
    graph.node.extend(nodes)


def pack(path):
    """Stores the filters of an ONNX file as bytes: a convolution with whole
    numbers, then the step of each filter and its bias. OpenCV makes floats of
    them when it loads, and one convolution of the three."""
    model = onnx.load(path)
    graph = model.graph
    shapes = shape_inference.infer_shapes(model).graph.value_info
    roomy(graph, {value.name: [d.dim_value for d in value.type.tensor_type.shape.dim] for value in shapes})
    stored = {i.name: i for i in graph.initializer}
    nodes = []
    for node in graph.node:
        weights = numpy_helper.to_array(stored[node.input[1]]) if node.op_type == "Conv" else np.zeros(0)
        if weights.size < SMALL:
            nodes.append(node)
            continue
        (source, filters, bias), (out,) = node.input, node.output
        values, step = coarse(weights)
        offset = numpy_helper.to_array(stored[bias])
        for name in (filters, bias):
            graph.initializer.remove(stored[name])
        for name, array in ((filters, values), (out + ".step", step.reshape(1, -1, 1, 1)),
                            (bias, offset.reshape(1, -1, 1, 1))):
            graph.initializer.append(numpy_helper.from_array(array, name))
        conv = helper.make_node("Conv", [source, filters + ".float"], [out + ".steps"], out + ".conv")
        conv.attribute.extend(node.attribute)
        nodes += [helper.make_node("Cast", [filters], [filters + ".float"], filters + ".cast", to=onnx.TensorProto.FLOAT),
                  conv,
                  helper.make_node("Mul", [out + ".steps", out + ".step"], [out + ".scaled"], out + ".mul"),
                  helper.make_node("Add", [out + ".scaled", bias], [out], out + ".add")]
    del graph.node[:]
    graph.node.extend(nodes)
    onnx.checker.check_model(model)
    onnx.save(model, path)


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
    scores, labels = load(arguments.work)
    patch = torch.randn(1, 1, 96, 64, generator=torch.Generator().manual_seed(1)) * 2 - 2
    os.makedirs(arguments.resources, exist_ok=True)
    path = os.path.join(arguments.resources, "network.onnx")
    torch.onnx.export(scores, patch, path, input_names=["mel_patch"], output_names=["scores"], opset_version=11,
                      dynamic_axes={"mel_patch": {0: "batch"}, "scores": {0: "batch"}})
    pack(path)
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
    print(os.path.getsize(path), "bytes,", len(labels), "labels")


if __name__ == "__main__":
    main()
