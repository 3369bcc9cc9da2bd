#pragma once

#include "platform/linux/speech/onnx/OnnxSheet.h"

#include <array>

/// The keys that sherpa-onnx 1.13 requires, by what it loads.
namespace tavrin::onnxrequirements {

using enum OnnxRequirement::Value;

inline constexpr std::array firstZipformer{OnnxRequirement{"T", Positive},
    OnnxRequirement{"decode_chunk_len", Positive}, OnnxRequirement{"encoder_dims", Numbers},
    OnnxRequirement{"attention_dims", Numbers}, OnnxRequirement{"num_encoder_layers", Numbers},
    OnnxRequirement{"cnn_module_kernels", Numbers}, OnnxRequirement{"left_context_len", Numbers}};

inline constexpr std::array secondZipformer{OnnxRequirement{"T", Positive},
    OnnxRequirement{"decode_chunk_len", Positive}, OnnxRequirement{"encoder_dims", Numbers},
    OnnxRequirement{"query_head_dims", Numbers}, OnnxRequirement{"value_head_dims", Numbers},
    OnnxRequirement{"num_heads", Numbers}, OnnxRequirement{"num_encoder_layers", Numbers},
    OnnxRequirement{"cnn_module_kernels", Numbers}, OnnxRequirement{"left_context_len", Numbers}};

inline constexpr std::array transducerDecoder{
    OnnxRequirement{"vocab_size", Positive}, OnnxRequirement{"context_size", Positive}};

inline constexpr std::array nemo{OnnxRequirement{"window_size", Positive},
    OnnxRequirement{"chunk_shift", Positive}, OnnxRequirement{"subsampling_factor", Positive},
    OnnxRequirement{"vocab_size", Positive}, OnnxRequirement{"cache_last_channel_dim1", Positive},
    OnnxRequirement{"cache_last_channel_dim2", Positive},
    OnnxRequirement{"cache_last_channel_dim3", Positive},
    OnnxRequirement{"cache_last_time_dim1", Positive},
    OnnxRequirement{"cache_last_time_dim2", Positive},
    OnnxRequirement{"cache_last_time_dim3", Positive}};

/// SenseVoice and Paraformer, which see several frames as one.
inline constexpr std::array stackedFrames{OnnxRequirement{"vocab_size", Positive},
    OnnxRequirement{"lfr_window_size", Positive}, OnnxRequirement{"lfr_window_shift", Positive},
    OnnxRequirement{"neg_mean", Reals}, OnnxRequirement{"inv_stddev", Reals}};

inline constexpr std::array streamingParaformer{OnnxRequirement{"encoder_output_size", Positive},
    OnnxRequirement{"decoder_num_blocks", Positive},
    OnnxRequirement{"decoder_kernel_size", Positive}};

inline constexpr std::array senseVoice{OnnxRequirement{"normalize_samples", Number},
    OnnxRequirement{"with_itn", Number}, OnnxRequirement{"without_itn", Number},
    OnnxRequirement{"lang_auto", Number}, OnnxRequirement{"lang_zh", Number},
    OnnxRequirement{"lang_en", Number}, OnnxRequirement{"lang_ja", Number},
    OnnxRequirement{"lang_ko", Number}, OnnxRequirement{"lang_yue", Number}};

inline constexpr std::array whisper{OnnxRequirement{"n_mels", Positive},
    OnnxRequirement{"n_text_layer", Positive}, OnnxRequirement{"n_text_ctx", Positive},
    OnnxRequirement{"n_text_state", Positive}, OnnxRequirement{"n_vocab", Positive},
    OnnxRequirement{"sot", Number}, OnnxRequirement{"eot", Number},
    OnnxRequirement{"blank_id", Number}, OnnxRequirement{"translate", Number},
    OnnxRequirement{"transcribe", Number}, OnnxRequirement{"is_multilingual", Number},
    OnnxRequirement{"no_timestamps", Number}, OnnxRequirement{"no_speech", Number},
    OnnxRequirement{"sot_sequence", Numbers}};

inline constexpr std::array multilingualWhisper{
    OnnxRequirement{"all_language_tokens", Numbers}, OnnxRequirement{"all_language_codes", Words}};

} // namespace tavrin::onnxrequirements
