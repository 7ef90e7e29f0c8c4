"""Makes the small networks of the tests (python3-onnx)."""

import os

import numpy as np
import onnx
from onnx import TensorProto, helper, numpy_helper

FOLDER = os.path.dirname(os.path.abspath(__file__))


def save(name, frames, last, bias):
    """Scores that depend on nothing but the mean of the patch."""
    weight = np.array([[0.5], [-0.5], [0.0]], np.float32)
    nodes = [helper.make_node("GlobalAveragePool", ["mel_patch"], ["mean"]),
             helper.make_node("Flatten", ["mean"], ["flat"], axis=1),
             helper.make_node("Gemm", ["flat", "weight", "bias"], ["logits"], transB=1),
             helper.make_node(last, ["logits"], ["scores"])]
    if frames != 96:  # a layer that only patches of another length fit
        nodes[0] = helper.make_node("Reshape", ["mel_patch", "shape"], ["mean"])
    stored = [numpy_helper.from_array(weight, "weight"),
              numpy_helper.from_array(np.array(bias, np.float32), "bias")]
    if frames != 96:
        stored[0] = numpy_helper.from_array(np.zeros((3, frames * 64), np.float32), "weight")
        stored.append(numpy_helper.from_array(np.array([-1, frames * 64, 1, 1], np.int64), "shape"))
    graph = helper.make_graph(
        nodes, "test", [helper.make_tensor_value_info("mel_patch", TensorProto.FLOAT, ["n", 1, frames, 64])],
        [helper.make_tensor_value_info("scores", TensorProto.FLOAT, ["n", 3])], stored)
    model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 11)], producer_name="")
    model.ir_version = 6
    onnx.save(model, os.path.join(FOLDER, name))


save("loudness.onnx", 96, "Sigmoid", [3.0, -3.0, 0.1])
save("long_patches.onnx", 97, "Sigmoid", [0.0, 0.0, 0.0])
save("logits.onnx", 96, "Relu", [3.0, 50.0, 7.0])
