#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// What passes between sherpa-onnx's C library and this program, as it lies in memory in the
/// versions that SherpaLibrary accepts. The structures tell no size and grow between versions.
/// Zero stands for the library's default everywhere.
namespace tavrin::sherpa {

struct OnlineRecognizer;
struct OnlineStream;
struct OfflineRecognizer;
struct OfflineStream;

struct Features {
    std::int32_t sampleRate = 0;
    std::int32_t dimension = 0;
};

struct Homophones {
    const char* folder = nullptr;
    const char* lexicon = nullptr;
    const char* rules = nullptr;
};

struct OnlineModel {
    const char* transducerEncoder = nullptr;
    const char* transducerDecoder = nullptr;
    const char* transducerJoiner = nullptr;
    const char* paraformerEncoder = nullptr;
    const char* paraformerDecoder = nullptr;
    const char* zipformerCtc = nullptr;
    const char* tokens = nullptr;
    std::int32_t threads = 0;
    const char* provider = nullptr;
    std::int32_t debug = 0;
    const char* type = nullptr;
    const char* modelingUnit = nullptr;
    const char* bpeVocabulary = nullptr;
    const char* tokenBuffer = nullptr;
    std::int32_t tokenBufferSize = 0;
    const char* nemoCtc = nullptr;
    const char* toneCtc = nullptr;
};

struct OnlineConfiguration {
    Features features;
    OnlineModel model;
    const char* decodingMethod = nullptr;
    std::int32_t activePaths = 0;
    std::int32_t findsEndpoints = 0;
    float silenceWithoutSpeech = 0; ///< Seconds.
    float silenceAfterSpeech = 0; ///< Seconds.
    float longestUtterance = 0; ///< Seconds.
    const char* hotwordsFile = nullptr;
    float hotwordsScore = 0;
    const char* graph = nullptr;
    std::int32_t graphActive = 0;
    const char* ruleFsts = nullptr;
    const char* ruleFars = nullptr;
    float blankPenalty = 0;
    const char* hotwordsBuffer = nullptr;
    std::int32_t hotwordsBufferSize = 0;
    Homophones homophones;
};

struct OfflineModel {
    const char* transducerEncoder = nullptr;
    const char* transducerDecoder = nullptr;
    const char* transducerJoiner = nullptr;
    const char* paraformer = nullptr;
    const char* nemoCtc = nullptr;
    const char* whisperEncoder = nullptr;
    const char* whisperDecoder = nullptr;
    const char* whisperLanguage = nullptr; ///< Empty: the model finds out.
    const char* whisperTask = nullptr;
    std::int32_t whisperTailPaddings = 0;
    std::int32_t whisperTokenTimes = 0;
    std::int32_t whisperSegmentTimes = 0;
    const char* tdnn = nullptr;
    const char* tokens = nullptr;
    std::int32_t threads = 0;
    std::int32_t debug = 0;
    const char* provider = nullptr;
    const char* type = nullptr;
    const char* modelingUnit = nullptr;
    const char* bpeVocabulary = nullptr;
    const char* telespeechCtc = nullptr;
    const char* senseVoice = nullptr;
    const char* senseVoiceLanguage = nullptr;
    std::int32_t senseVoiceUsesItn = 0; ///< Not 0: with punctuation, and numbers as digits.
    std::array<const char*, 8> otherKinds{};
    const char* zipformerCtc = nullptr;
    std::array<std::byte, 256> furtherKinds{};
};

struct OfflineConfiguration {
    Features features;
    OfflineModel model;
    const char* languageModel = nullptr;
    float languageModelScale = 0;
    const char* decodingMethod = nullptr;
    std::int32_t activePaths = 0;
    const char* hotwordsFile = nullptr;
    float hotwordsScore = 0;
    const char* ruleFsts = nullptr;
    const char* ruleFars = nullptr;
    float blankPenalty = 0;
    Homophones homophones;
};

/// More stands behind the text; it is the library's, and only looked at.
struct Result {
    const char* text = nullptr;
};

static_assert(sizeof(OnlineModel) == 136);
static_assert(sizeof(OnlineConfiguration) == 272);
static_assert(offsetof(OnlineConfiguration, decodingMethod) == 144);
static_assert(offsetof(OnlineConfiguration, hotwordsFile) == 176);
static_assert(offsetof(OnlineConfiguration, homophones) == 248);
static_assert(offsetof(OfflineModel, tokens) == 96);
static_assert(offsetof(OfflineModel, senseVoice) == 152);
static_assert(offsetof(OfflineModel, zipformerCtc) == 240);
static_assert(sizeof(OfflineModel) == 504);
static_assert(sizeof(OfflineConfiguration) == 608);
static_assert(offsetof(OfflineConfiguration, decodingMethod) == 528);
static_assert(offsetof(OfflineConfiguration, homophones) == 584);

/// A configuration at the front of a block of zeros: a version that reads further finds defaults.
template <class Configuration>
struct Padded {
    static constexpr std::size_t blockSize = 4096;

    Configuration configuration;
    std::array<std::byte, blockSize - sizeof(Configuration)> zeros{};
};

} // namespace tavrin::sherpa
