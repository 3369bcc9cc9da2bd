#!/usr/bin/env python3
"""Makes speech models of a few kilobytes that sherpa-onnx loads, one folder for each kind.

usage: make_models.py FOLDER

Every token is a tone: a model takes one mel bin for the score of one token, and a constant for that
of silence. Tones.h has the frequencies. The graphs do nothing beyond that, but have the inputs,
outputs and metadata that the library asks of their kind.
"""

import base64
import math
import shutil
import sys
from pathlib import Path

import numpy
import onnx
from onnx import TensorProto, helper, numpy_helper

FLOAT, INT32, INT64 = TensorProto.FLOAT, TensorProto.INT32, TensorProto.INT64
MEL_BINS = 80
BLANK, NI, HAO, SHI, JIE, HELLO, WORLD, COMMA, IS = range(9)
TOKENS = ["<blk>", "你", "好", "世", "界", "▁HELLO", "▁WORLD", "，", "是"]
BIN_OF = {NI: 8, HAO: 16, SHI: 24, JIE: 32, HELLO: 40, WORLD: 48, COMMA: 56}
NEVER = -30.0
SILENCE = 1.0  # Above the clicks at the edges of a tone, far below its middle.
LOUDER = 20.8  # What the logarithm of the energy gains where samples have a full scale of 32,768.
END = 1 << 30


class Graph:
    """A graph that grows node by node; inputs may be names, or arrays that become constants."""

    def __init__(self):
        self.nodes = []
        self.constants = []

    def add(self, operator, inputs, output=None, **attributes):
        output = output or f"{operator.lower()}{len(self.nodes)}"
        names = [each if isinstance(each, str) else self.constant(each) for each in inputs]
        self.nodes.append(helper.make_node(operator, names, [output], **attributes))
        return output

    def constant(self, array):
        name = f"constant{len(self.constants)}"
        self.constants.append(numpy_helper.from_array(numpy.asarray(array), name))
        return name

    def slice(self, data, begin, end, axis, step=1):
        return self.add("Slice", [data, *(numpy.array([each], numpy.int64)
                                          for each in (begin, end, axis, step))])

    def save(self, path, inputs, outputs, metadata):
        def describe(values):
            return [helper.make_tensor_value_info(*value) for value in values]

        graph = helper.make_graph(self.nodes, "tones", describe(inputs), describe(outputs),
                                  self.constants)
        model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 13)],
                                  producer_name="make_models")
        model.ir_version = 8
        helper.set_model_props(model, {key: str(value) for key, value in metadata.items()})
        onnx.checker.check_model(model)
        path.parent.mkdir(parents=True, exist_ok=True)
        onnx.save(model, str(path))


def weights(count, silence, bins=None, rivals=None, scale=1.0):
    """Scores of `count` tokens by mel bins. rivals: token that shares the tone of another, with
    the lead it has."""
    matrix = numpy.zeros((MEL_BINS, count), numpy.float32)
    bias = numpy.full((count,), NEVER, numpy.float32)
    bias[BLANK] = silence
    for token, mel_bin in (bins or BIN_OF).items():
        matrix[mel_bin, token] = scale
        bias[token] = 0
    for rival, (token, lead) in (rivals or {}).items():
        matrix[:, rival] = matrix[:, token]
        bias[rival] = lead
    return matrix, bias


def scores(graph, features, matrix, bias, output=None):
    """[N, T, 80] becomes [N, T, tokens]."""
    return graph.add("Add", [graph.add("MatMul", [features, matrix]), bias], output)


def every_fourth(graph, features):
    return graph.slice(features, 0, END, 1, 4)


def onsets(graph, frames):
    """[1, T, tokens] becomes [T]: where a token other than silence begins."""
    tokens = graph.add("Squeeze", [graph.add("ArgMax", [frames], axis=2, keepdims=0),
                                   numpy.array([0], numpy.int64)])
    before = graph.add("Concat", [numpy.array([BLANK], numpy.int64),
                                  graph.slice(tokens, 0, -1, 0)], axis=0)
    changes = graph.add("Not", [graph.add("Equal", [tokens, before])])
    sounds = graph.add("Not", [graph.add("Equal", [tokens, numpy.array(BLANK, numpy.int64)])])
    return graph.add("And", [changes, sounds])


def frames_of_onsets(graph, frames):
    """[1, T, tokens] becomes [1, K, tokens]: a frame for each token that is said."""
    places = graph.add("Reshape", [graph.add("NonZero", [onsets(graph, frames)]),
                                   numpy.array([-1], numpy.int64)])
    return graph.add("Gather", [frames, places], axis=1)


def write_tokens(folder, tokens, name="tokens.txt"):
    folder.mkdir(parents=True, exist_ok=True)
    lines = (f"{token} {number}\n" for number, token in enumerate(tokens))
    (folder / name).write_text("".join(lines), encoding="utf-8")


def make_zipformer_ctc(folder):
    count = len(TOKENS)
    graph = Graph()
    scored = scores(graph, every_fourth(graph, "x"), *weights(count, SILENCE))
    graph.add("LogSoftmax", [scored], "log_probs", axis=2)
    more = graph.add("Add", ["x_lens", numpy.array([3], numpy.int64)])
    graph.add("Div", [more, numpy.array([4], numpy.int64)], "log_probs_len")
    graph.save(folder / "model.onnx", [("x", FLOAT, ["N", "T", MEL_BINS]), ("x_lens", INT64, ["N"])],
               [("log_probs", FLOAT, ["N", "U", count]), ("log_probs_len", INT64, ["N"])], {})
    write_tokens(folder, TOKENS)


ZIPFORMER = {"model_type": "zipformer2", "encoder_dims": 4, "query_head_dims": 2,
             "value_head_dims": 2, "num_heads": 2, "num_encoder_layers": 1, "cnn_module_kernels": 3,
             "left_context_len": 2, "T": 16, "decode_chunk_len": 16}
ZIPFORMER_STATES = [
    ("cached_key_0", FLOAT, [2, "N", 4]), ("cached_nonlin_attn_0", FLOAT, [1, "N", 2, 3]),
    ("cached_val1_0", FLOAT, [2, "N", 4]), ("cached_val2_0", FLOAT, [2, "N", 4]),
    ("cached_conv1_0", FLOAT, ["N", 4, 1]), ("cached_conv2_0", FLOAT, ["N", 4, 1]),
    ("embed_states", FLOAT, ["N", 128, 3, 19]), ("processed_lens", INT64, ["N"])]


def pass_states_on(graph, states):
    for name, _, _ in states:
        graph.add("Identity", [name], "new_" + name)
    return [("new_" + name, kind, shape) for name, kind, shape in states]


def make_streaming_zipformer_ctc(folder, metadata):
    count = len(TOKENS)
    graph = Graph()
    scored = scores(graph, every_fourth(graph, "x"), *weights(count, SILENCE))
    graph.add("LogSoftmax", [scored], "log_probs", axis=2)
    states = pass_states_on(graph, ZIPFORMER_STATES)
    graph.save(folder / "model.onnx", [("x", FLOAT, ["N", 16, MEL_BINS]), *ZIPFORMER_STATES],
               [("log_probs", FLOAT, ["N", 4, count]), *states], metadata)
    write_tokens(folder, TOKENS)


def make_transducer(folder, tokens, rivals):
    count = len(tokens)
    graph = Graph()
    scores(graph, every_fourth(graph, "x"), *weights(count, SILENCE, rivals=rivals), "encoder_out")
    states = pass_states_on(graph, ZIPFORMER_STATES)
    graph.save(folder / "encoder.onnx", [("x", FLOAT, ["N", 16, MEL_BINS]), *ZIPFORMER_STATES],
               [("encoder_out", FLOAT, ["N", 4, count]), *states], ZIPFORMER)

    # What was just said is not said again, neither by the token that shares its tone.
    again = numpy.diag([0.0] + [-60.0] * (count - 1)).astype(numpy.float32)
    for rival, (token, _) in rivals.items():
        again[rival, token] = again[token, rival] = -60
    graph = Graph()
    last = graph.add("Gather", ["y", numpy.array(1, numpy.int64)], axis=1)
    graph.add("Gather", [again, last], "decoder_out", axis=0)
    graph.save(folder / "decoder.onnx", [("y", INT64, ["N", 2])],
               [("decoder_out", FLOAT, ["N", count])], {"context_size": 2, "vocab_size": count})

    graph = Graph()
    graph.add("Add", ["encoder_out", "decoder_out"], "logit")
    graph.save(folder / "joiner.onnx",
               [("encoder_out", FLOAT, ["N", count]), ("decoder_out", FLOAT, ["N", count])],
               [("logit", FLOAT, ["N", count])], {"joiner_dim": count})
    write_tokens(folder, tokens)


def make_transducer_with_pieces(folder):
    """One that says HALLO for HELLO unless told otherwise, and cuts words into pieces."""
    letters = sorted(set("HELLOWORLD"))
    tokens = [*TOKENS, "▁HALLO", "▁", *letters]
    make_transducer(folder, tokens, {IS: (SHI, 0.3), len(TOKENS): (HELLO, 0.3)})
    pieces = ["▁HELLO", "▁WORLD", "▁", *letters]
    (folder / "bpe.vocab").write_text(
        "".join(f"{piece}\t-{rank}\n" for rank, piece in enumerate(pieces, 1)), encoding="utf-8")


def make_nemo_ctc(folder):
    count = len(TOKENS)
    states = [("cache_last_channel", FLOAT, ["N", 1, 2, 3]), ("cache_last_time", FLOAT, ["N", 1, 3, 2]),
              ("cache_last_channel_len", INT64, ["N"])]
    graph = Graph()
    features = graph.add("Transpose", ["audio_signal"], perm=[0, 2, 1])
    scored = scores(graph, every_fourth(graph, features), *weights(count, SILENCE))
    graph.add("LogSoftmax", [scored], "logprobs", axis=2)
    graph.add("Div", ["length", numpy.array([4], numpy.int64)], "encoded_lengths")
    new_states = pass_states_on(graph, states)
    graph.save(folder / "model.onnx",
               [("audio_signal", FLOAT, ["N", MEL_BINS, "T"]), ("length", INT64, ["N"]), *states],
               [("logprobs", FLOAT, ["N", "U", count]), ("encoded_lengths", INT64, ["N"]), *new_states],
               {"window_size": 16, "chunk_shift": 16, "subsampling_factor": 4,
                "vocab_size": count - 1, "cache_last_channel_dim1": 1, "cache_last_channel_dim2": 2,
                "cache_last_channel_dim3": 3, "cache_last_time_dim1": 1, "cache_last_time_dim2": 3,
                "cache_last_time_dim3": 2})
    write_tokens(folder, TOKENS)


STACKED = {"lfr_window_size": 7, "lfr_window_shift": 6, "neg_mean": ",".join(["0"] * 560),
           "inv_stddev": ",".join(["1"] * 560)}


def middle_frame(graph, stacked):
    """Seven frames are seen as one: the one in the middle."""
    return graph.slice(stacked, 3 * MEL_BINS, 4 * MEL_BINS, 2)


def make_sense_voice(folder):
    tokens = [*TOKENS, "<|zh|>", "<|NEUTRAL|>", "<|Speech|>", "<|withitn|>", "<|woitn|>"]
    count = len(tokens)
    prefix = numpy.full((1, 4, count), NEVER, numpy.float32)
    for place in range(4):
        prefix[0, place, len(TOKENS) + place] = -NEVER
    graph = Graph()
    scored = scores(graph, middle_frame(graph, "x"), *weights(count, SILENCE + LOUDER))
    graph.add("Concat", [prefix, scored], "logits", axis=1)
    graph.save(folder / "model.onnx",
               [("x", FLOAT, ["N", "T", 560]), ("x_length", INT32, ["N"]), ("language", INT32, ["N"]),
                ("text_norm", INT32, ["N"])], [("logits", FLOAT, ["N", "U", count])],
               {**STACKED, "model_type": "sense_voice_ctc", "vocab_size": count,
                "normalize_samples": 0, "with_itn": 14, "without_itn": 15, "lang_auto": 0,
                "lang_zh": 3, "lang_en": 4, "lang_yue": 7, "lang_ja": 11, "lang_ko": 12})
    write_tokens(folder, tokens)


PARAFORMER_TOKENS = ["<blank>", "你", "好", "世", "界", "hello", "world", "，", "是", "</s>"]


def make_paraformer(folder):
    count = len(PARAFORMER_TOKENS)
    graph = Graph()
    scored = scores(graph, middle_frame(graph, "speech"), *weights(count, SILENCE + LOUDER))
    said = graph.add("Identity", [frames_of_onsets(graph, scored)], "logits")
    size = graph.slice(graph.add("Shape", [said]), 1, 2, 0)
    graph.add("Cast", [size], "token_num", to=INT32)
    graph.save(folder / "model.onnx",
               [("speech", FLOAT, ["N", "T", 560]), ("speech_lengths", INT32, ["N"])],
               [("logits", FLOAT, ["N", "K", count]), ("token_num", INT32, ["N"])],
               {**STACKED, "model_type": "paraformer", "vocab_size": count})
    write_tokens(folder, PARAFORMER_TOKENS)


def make_streaming_paraformer(folder):
    count = len(PARAFORMER_TOKENS)
    loudness = math.sqrt(count)  # The library multiplies by the root of the encoder's size.
    graph = Graph()
    scored = scores(graph, middle_frame(graph, "speech"), *weights(count, (SILENCE + LOUDER) * loudness), "enc")
    graph.add("Identity", ["speech_lengths"], "enc_len")
    starts = graph.add("Cast", [onsets(graph, scored)], to=FLOAT)
    graph.add("Unsqueeze", [starts, numpy.array([0], numpy.int64)], "alphas")
    graph.save(folder / "encoder.onnx",
               [("speech", FLOAT, ["N", "T", 560]), ("speech_lengths", INT32, ["N"])],
               [("enc", FLOAT, ["N", "T", count]), ("enc_len", INT32, ["N"]), ("alphas", FLOAT, ["N", "T"])],
               {**STACKED, "model_type": "paraformer", "vocab_size": count,
                "encoder_output_size": count, "decoder_num_blocks": 1, "decoder_kernel_size": 2})

    graph = Graph()
    graph.add("Identity", ["acoustic_embeds"], "logits")
    graph.add("ArgMax", ["acoustic_embeds"], "sample_ids", axis=2, keepdims=0)
    graph.add("Identity", ["in_cache_0"], "out_cache_0")
    graph.save(folder / "decoder.onnx",
               [("enc", FLOAT, ["N", "T", count]), ("enc_len", INT32, ["N"]),
                ("acoustic_embeds", FLOAT, ["N", "K", count]), ("acoustic_embeds_len", INT32, ["N"]),
                ("in_cache_0", FLOAT, ["N", count, 1])],
               [("logits", FLOAT, ["N", "K", count]), ("sample_ids", INT64, ["N", "K"]),
                ("out_cache_0", FLOAT, ["N", count, 1])], {})
    write_tokens(folder, PARAFORMER_TOKENS)


# Of Whisper: what ends the text, what begins it, two languages, the tasks, no speech, no times.
EOT, SOT, ZH, EN, TRANSLATE, TRANSCRIBE, NO_SPEECH, NO_TIMES = range(len(TOKENS), len(TOKENS) + 8)
WHISPER_COUNT = NO_TIMES + 1
STARTING_TOKENS = 4
# The bins of Whisper's own mel scale (80 up to 8 kHz, linear below 1 kHz) with the same tones.
WHISPER_BIN_OF = {NI: 6, HAO: 12, SHI: 21, JIE: 32, HELLO: 41, WORLD: 49, COMMA: 57}


def make_whisper(folder):
    silence = 0.9  # Features reach from the loudest, somewhat above 1, down by 2.
    scale = 10
    matrix, bias = weights(WHISPER_COUNT, silence * scale, WHISPER_BIN_OF, scale=scale)
    bias[ZH] = NEVER / 2
    end = numpy.full((1, 1, WHISPER_COUNT), NEVER, numpy.float32)
    end[0, 0, EOT] = -NEVER
    end[0, 0, ZH] = NEVER / 2
    state = [1, 1, "C", WHISPER_COUNT]

    graph = Graph()
    frames = every_fourth(graph, graph.add("Transpose", ["mel"], perm=[0, 2, 1]))
    said = frames_of_onsets(graph, scores(graph, frames, matrix, bias))
    rows = graph.add("Concat", [said, end], axis=1)
    graph.add("Unsqueeze", [rows, numpy.array([0], numpy.int64)], "n_layer_cross_k")
    graph.add("Identity", ["n_layer_cross_k"], "n_layer_cross_v")
    graph.save(folder / "tiny-encoder.onnx", [("mel", FLOAT, ["N", MEL_BINS, "T"])],
               [("n_layer_cross_k", FLOAT, [1, 1, "K", WHISPER_COUNT]),
                ("n_layer_cross_v", FLOAT, [1, 1, "K", WHISPER_COUNT])],
               {"model_type": "whisper-tiny", "n_mels": MEL_BINS, "n_text_layer": 1,
                "n_text_ctx": 448, "n_text_state": WHISPER_COUNT, "n_vocab": WHISPER_COUNT,
                "sot": SOT, "eot": EOT, "blank_id": BLANK, "translate": TRANSLATE,
                "transcribe": TRANSCRIBE, "no_timestamps": NO_TIMES, "no_speech": NO_SPEECH,
                "is_multilingual": 1, "sot_sequence": f"{SOT},{ZH},{TRANSCRIBE}",
                "all_language_tokens": f"{EN},{ZH}", "all_language_codes": "en,zh"})

    # The next token is the row of the encoder that follows those already said.
    def number(value):
        return numpy.array([value], numpy.int64)

    graph = Graph()
    length = graph.slice(graph.add("Shape", ["tokens"]), 1, 2, 0)
    row = graph.add("Sub", [graph.add("Add", ["offset", length]), number(STARTING_TOKENS)])
    rows = graph.slice(graph.add("Shape", ["n_layer_cross_k"]), 2, 3, 0)
    row = graph.add("Max", [row, number(0)])
    row = graph.add("Min", [row, graph.add("Sub", [rows, number(1)])])
    table = graph.add("Squeeze", ["n_layer_cross_k", numpy.array([0, 1], numpy.int64)])
    chosen = graph.add("Unsqueeze", [graph.add("Gather", [table, row], axis=0), number(0)])
    shape = graph.add("Concat", [number(1), length, number(WHISPER_COUNT)], axis=0)
    graph.add("Expand", [chosen, shape], "logits")
    graph.add("Identity", ["in_n_layer_self_k_cache"], "out_n_layer_self_k_cache")
    graph.add("Identity", ["in_n_layer_self_v_cache"], "out_n_layer_self_v_cache")
    graph.save(folder / "tiny-decoder.onnx",
               [("tokens", INT64, ["N", "L"]), ("in_n_layer_self_k_cache", FLOAT, state),
                ("in_n_layer_self_v_cache", FLOAT, state),
                ("n_layer_cross_k", FLOAT, [1, 1, "K", WHISPER_COUNT]),
                ("n_layer_cross_v", FLOAT, [1, 1, "K", WHISPER_COUNT]), ("offset", INT64, [1])],
               [("logits", FLOAT, ["N", "L", WHISPER_COUNT]),
                ("out_n_layer_self_k_cache", FLOAT, state), ("out_n_layer_self_v_cache", FLOAT, state)],
               {})
    written = (token.replace("▁", " ").encode() for token in TOKENS)
    write_tokens(folder, [base64.b64encode(token).decode() for token in written], "tiny-tokens.txt")


def make_all(folder):
    make_zipformer_ctc(folder / "zipformer-ctc")
    make_streaming_zipformer_ctc(folder / "streaming-zipformer-ctc", ZIPFORMER)
    make_streaming_zipformer_ctc(folder / "broken-shapes", {**ZIPFORMER, "T": 20})
    make_transducer(folder / "streaming-transducer", TOKENS, {IS: (SHI, 0.3)})
    make_transducer_with_pieces(folder / "streaming-transducer-pieces")
    make_nemo_ctc(folder / "streaming-nemo-ctc")
    make_sense_voice(folder / "sense-voice")
    make_paraformer(folder / "paraformer")
    make_streaming_paraformer(folder / "streaming-paraformer")
    make_whisper(folder / "whisper")


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = Path(sys.argv[1])
    shutil.rmtree(folder, ignore_errors=True)
    make_all(folder)
    models = sorted(folder.glob("*/*.onnx"))
    print("\n".join(f"{path.relative_to(folder)} {path.stat().st_size} bytes" for path in models))


if __name__ == "__main__":
    main()
