#pragma once

#include "platform/linux/recognizer/sphinx/EnglishPronunciation.h"
#include "platform/linux/speech/sphinx/SphinxModel.h"

#include <QHash>
#include <QStringList>

#include <memory>
#include <span>

struct cmd_ln_s;
struct ngram_model_s;
struct ps_decoder_s;

namespace tavrin {

/// PocketSphinx with one model. One thread; one utterance at a time.
///
/// Two searches share the model: the thorough one has three passes and is for finished speech, the
/// quick one has a single pass and is for speech that still goes on.
class SphinxDecoder {
public:
    enum class Search { Thorough, Quick };

    /// Null when the model cannot be loaded; at what it calls a fatal error the library ends the
    /// process. Takes about half a second and 110 MB.
    [[nodiscard]] static std::unique_ptr<SphinxDecoder> open(const SphinxModel& model);

    ~SphinxDecoder();

    SphinxDecoder(const SphinxDecoder&) = delete;
    SphinxDecoder& operator=(const SphinxDecoder&) = delete;

    /// From the next utterance on these terms are more likely. Terms that the model cannot
    /// pronounce are left out; words that were favoured once stay known. An utterance that is under
    /// way ends, unless the terms are the same as before.
    void favour(const QStringList& terms);

    /// Starts an utterance and returns its number; one that is under way ends without an answer.
    qint64 start(Search search);

    /// Whether the utterance of this number still goes on.
    [[nodiscard]] bool isRunning(qint64 utterance) const;

    void process(std::span<const qint16> samples);

    /// Whether the last samples were speech.
    [[nodiscard]] bool inSpeech() const;

    /// What the utterance says so far, or said.
    [[nodiscard]] QString text() const;

    /// Ends the utterance, if there is one; its text stays until the next.
    void end();

    /// What a whole stretch of speech says.
    [[nodiscard]] QString decode(std::span<const qint16> samples);

private:
    struct Free {
        void operator()(cmd_ln_s* config) const;
        void operator()(ngram_model_s* model) const;
        void operator()(ps_decoder_s* decoder) const;
    };

    SphinxDecoder() = default;

    [[nodiscard]] bool load(const SphinxModel& model);
    [[nodiscard]] bool useLanguageModel(ngram_model_s* model);
    [[nodiscard]] QStringList knownWordsFor(const QStringList& terms);
    [[nodiscard]] bool knowsWord(const QString& word) const;
    [[nodiscard]] std::unique_ptr<ngram_model_s, Free> mixedModel(const QStringList& words) const;

    std::unique_ptr<cmd_ln_s, Free> m_config;
    std::unique_ptr<ngram_model_s, Free> m_languageModel;
    std::unique_ptr<ps_decoder_s, Free> m_decoder;
    bool m_isEnglish = false;
    EnglishPronunciation m_pronunciation;
    QStringList m_terms;
    QHash<QString, QString> m_spellings; // Of the words that were added for terms.
    bool m_inUtterance = false;
    qint64 m_utterances = 0;
};

} // namespace tavrin
