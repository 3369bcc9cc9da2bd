#include "platform/linux/recognizer/sphinx/SphinxDecoder.h"

#include "base/Log.h"
#include "platform/linux/recognizer/sphinx/TermLanguageModel.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <pocketsphinx/pocketsphinx.h>
#include <sphinxbase/err.h>
#include <sphinxbase/ngram_model.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {

namespace {

constexpr const char* thoroughSearch = "thorough";
constexpr const char* quickSearch = "quick";

/// How much the terms weigh against the language as such.
constexpr float termsWeight = 0.05F;

constexpr qsizetype longestTerm = 64;

/// The one word that stands for the term in dictionary and language model; empty when it cannot be
/// one there.
QString wordFor(const QString& term)
{
    const QString word = term.simplified().toLower().replace(u' ', u'_');
    const bool usable = !word.isEmpty() && word.size() <= longestTerm
        && std::all_of(word.begin(), word.end(), [](QChar character) {
               // Brackets mark fillers and further pronunciations.
               return character.isPrint() && !u"()<>[]{}#"_s.contains(character);
           });
    return usable ? word : QString{};
}

} // namespace

void SphinxDecoder::Free::operator()(cmd_ln_s* config) const
{
    cmd_ln_free_r(config);
}

void SphinxDecoder::Free::operator()(ngram_model_s* model) const
{
    ngram_model_free(model);
}

void SphinxDecoder::Free::operator()(ps_decoder_s* decoder) const
{
    ps_free(decoder);
}

std::unique_ptr<SphinxDecoder> SphinxDecoder::open(const SphinxModel& model)
{
    // Its log holds what was said.
    err_set_logfp(nullptr);
    err_set_callback(nullptr, nullptr);
    std::unique_ptr<SphinxDecoder> decoder(new SphinxDecoder);
    return decoder->load(model) ? std::move(decoder) : nullptr;
}

SphinxDecoder::~SphinxDecoder()
{
    end();
}

bool SphinxDecoder::load(const SphinxModel& model)
{
    m_isEnglish = model.language.startsWith(u"en"_s);
    const QByteArray acousticModel = QFile::encodeName(model.acousticModel);
    const QByteArray dictionary = QFile::encodeName(model.dictionary);
    const QByteArray languageModel = QFile::encodeName(model.languageModel);
    m_config.reset(cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", acousticModel.constData(), "-dict",
        dictionary.constData(), nullptr));
    if (m_config)
        m_decoder.reset(ps_init(m_config.get()));
    if (!m_decoder)
        return false;
    m_languageModel.reset(ngram_model_read(
        m_config.get(), languageModel.constData(), NGRAM_AUTO, ps_get_logmath(m_decoder.get())));
    return m_languageModel && useLanguageModel(m_languageModel.get());
}

bool SphinxDecoder::useLanguageModel(ngram_model_s* model)
{
    const auto setSearch = [&](const char* name, bool thorough) {
        cmd_ln_set_boolean_r(m_config.get(), "-fwdflat", thorough);
        cmd_ln_set_boolean_r(m_config.get(), "-bestpath", thorough);
        return ps_set_lm(m_decoder.get(), name, model) == 0;
    };
    return setSearch(thoroughSearch, true) && setSearch(quickSearch, false);
}

void SphinxDecoder::favour(const QStringList& terms)
{
    if (terms == m_terms)
        return;
    m_terms = terms;
    end();
    // A search would add new words to its language model too, and the packed models that are read
    // from files do not survive that: reading past their words crashes.
    ps_unset_search(m_decoder.get(), thoroughSearch);
    ps_unset_search(m_decoder.get(), quickSearch);
    const auto mixed = mixedModel(knownWordsFor(terms));
    if (mixed && useLanguageModel(mixed.get()))
        return;
    qCWarning(log::speech, "the terms cannot be favoured");
    if (!useLanguageModel(m_languageModel.get()))
        qCWarning(log::speech, "the language model cannot be put back");
}

QStringList SphinxDecoder::knownWordsFor(const QStringList& terms)
{
    QStringList words;
    for (const QString& term : terms) {
        const QString word = wordFor(term);
        if (word.isEmpty() || words.contains(word))
            continue;
        if (!knowsWord(word)) {
            const QString phones = m_isEnglish ? m_pronunciation.phonesOf(term) : QString{};
            constexpr int updateLater = 0; // The searches are built anew afterwards.
            if (phones.isEmpty()
                || ps_add_word(m_decoder.get(), word.toUtf8().constData(),
                       phones.toLatin1().constData(), updateLater)
                    < 0)
                continue;
            m_spellings.insert(word, term.simplified());
        }
        words.append(word);
    }
    return words;
}

bool SphinxDecoder::knowsWord(const QString& word) const
{
    char* phones = ps_lookup_word(m_decoder.get(), word.toUtf8().constData());
    ckd_free(phones);
    return phones != nullptr;
}

std::unique_ptr<ngram_model_s, SphinxDecoder::Free> SphinxDecoder::mixedModel(
    const QStringList& words) const
{
    const TermLanguageModel file(words);
    std::unique_ptr<ngram_model_s, Free> terms(ngram_model_read(
        m_config.get(), file.path().constData(), NGRAM_ARPA, ps_get_logmath(m_decoder.get())));
    if (!terms)
        return nullptr;
    std::array<ngram_model_s*, 2> models{m_languageModel.get(), terms.get()};
    std::array<const char*, 2> names{"language", "terms"};
    const std::array<float32, 2> weights{1 - termsWeight, termsWeight};
    std::unique_ptr<ngram_model_s, Free> mixed(ngram_model_set_init(m_config.get(), models.data(),
        const_cast<char**>(names.data()), weights.data(), static_cast<int32>(models.size())));
    if (mixed)
        ngram_model_set_interp(mixed.get(), names.data(), weights.data());
    return mixed;
}

qint64 SphinxDecoder::start(Search search)
{
    end();
    ps_set_search(m_decoder.get(), search == Search::Thorough ? thoroughSearch : quickSearch);
    m_inUtterance = ps_start_utt(m_decoder.get()) == 0;
    return ++m_utterances;
}

bool SphinxDecoder::isRunning(qint64 utterance) const
{
    return m_inUtterance && utterance == m_utterances;
}

void SphinxDecoder::process(std::span<const qint16> samples)
{
    if (m_inUtterance)
        ps_process_raw(m_decoder.get(), samples.data(), samples.size(), FALSE, FALSE);
}

bool SphinxDecoder::inSpeech() const
{
    return ps_get_in_speech(m_decoder.get()) != 0;
}

QString SphinxDecoder::text() const
{
    int32 score = 0;
    const char* hypothesis = ps_get_hyp(m_decoder.get(), &score);
    QStringList words = QString::fromUtf8(hypothesis).split(u' ', Qt::SkipEmptyParts);
    for (QString& word : words)
        word = m_spellings.value(word, word);
    return words.join(u' ');
}

void SphinxDecoder::end()
{
    if (std::exchange(m_inUtterance, false))
        ps_end_utt(m_decoder.get());
}

QString SphinxDecoder::decode(std::span<const qint16> samples)
{
    if (!isRunning(start(Search::Thorough)))
        return {};
    ps_process_raw(m_decoder.get(), samples.data(), samples.size(), FALSE, TRUE);
    end();
    return text();
}

} // namespace tavrin
