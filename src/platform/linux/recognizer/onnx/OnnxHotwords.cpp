#include "platform/linux/recognizer/onnx/OnnxHotwords.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr qsizetype mostTerms = 100;
constexpr qsizetype longestTerm = 64;

/// Parts terms, begins a score, a threshold, another phrase; or is no character at all.
bool isSyntax(QChar character)
{
    constexpr QStringView signs = u"/:#@";
    return signs.contains(character) || character.category() == QChar::Other_Control
        || character.isSurrogate();
}

/// What the library keeps together as a word beside Han characters.
bool isOfWord(QChar character)
{
    const char16_t unit = character.unicode();
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z')
        || (unit >= u'0' && unit <= u'9') || unit == u'\'';
}

bool beginsWithLetter(const QString& word)
{
    return isOfWord(word.front()) && word.front().isLetter();
}

/// The words of @p word as the library parts them: runs of letters and digits, and every other
/// character by itself.
QStringList unitsOf(const QString& word)
{
    QStringList units;
    bool isRun = false;
    for (const QChar character : word) {
        if (isRun && isOfWord(character))
            units.last().append(character);
        else
            units.append(QString(character));
        isRun = isOfWord(character);
    }
    return units;
}

} // namespace

OnnxResult<OnnxHotwords> OnnxHotwords::of(const OnnxModel& model)
{
    OnnxResult<OnnxTokens> tokens = OnnxTokens::read(model.files.tokens);
    if (!tokens)
        return tl::unexpected(tokens.error());
    OnnxHotwords hotwords(*std::move(tokens));
    hotwords.m_cutsCharacters = model.modelingUnit.startsWith("cjkchar");
    if (model.modelingUnit.endsWith("bpe")) {
        hotwords.m_pieces = BpeVocabulary::read(model.files.bpeVocabulary);
        if (!hotwords.m_pieces) // It was there a moment ago.
            return onnxFailure(OnnxFault::Unreadable, model.files.bpeVocabulary);
    }
    return hotwords;
}

QByteArray OnnxHotwords::from(const QStringList& terms) const
{
    QStringList usable;
    for (const QString& term : terms) {
        const QString spelled = asSpelled(term);
        if (usable.size() < mostTerms && isKnown(spelled))
            usable.append(spelled);
    }
    return usable.join(u'/').toUtf8();
}

QString OnnxHotwords::asSpelled(const QString& term) const
{
    const QString plain = term.simplified();
    if (m_tokens.isUpperCase())
        return plain.toUpper();
    return m_tokens.isLowerCase() ? plain.toLower() : plain;
}

bool OnnxHotwords::isKnown(const QString& term) const
{
    if (term.isEmpty() || term.size() > longestTerm || std::ranges::any_of(term, isSyntax))
        return false;
    return std::ranges::all_of(term.split(u' '), [this](const QString& word) {
        return m_cutsCharacters ? isKnownCharacters(word) : isKnownPieces(word);
    });
}

bool OnnxHotwords::isKnownCharacters(const QString& word) const
{
    return std::ranges::all_of(unitsOf(word), [this](const QString& unit) {
        const bool isCut = m_pieces && beginsWithLetter(unit);
        return isCut ? isKnownPieces(unit) : m_tokens.contains(unit.toUtf8());
    });
}

/// Whether every way to cut the word makes tokens: the library chooses the best by its scores.
bool OnnxHotwords::isKnownPieces(const QString& word) const
{
    const QString marked = u'▁' + word;
    bool canBegin = false;
    for (qsizetype begin = 0; begin < marked.size(); ++begin) {
        for (qsizetype length = 1; length <= marked.size() - begin; ++length) {
            const QByteArray piece = marked.mid(begin, length).toUtf8();
            const bool isPiece = m_pieces->contains(piece);
            if (isPiece && !m_tokens.contains(piece))
                return false;
            if (!isPiece && begin > 0 && length == 1)
                return false; // Without this character the library might put "<unk>" in its place.
            canBegin = canBegin || (isPiece && begin == 0);
        }
    }
    return canBegin;
}

} // namespace tavrin
