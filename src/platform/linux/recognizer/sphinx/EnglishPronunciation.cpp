#include "platform/linux/recognizer/sphinx/EnglishPronunciation.h"

#include <QStringList>

#include <array>
#include <flite/flite.h>

using namespace Qt::StringLiterals;

extern "C" cst_lexicon* cmu_lex_init(void); // NOLINT(readability-identifier-naming): flite's.

namespace tavrin {
namespace {

const std::array digitNames{u"zero"_s, u"one"_s, u"two"_s, u"three"_s, u"four"_s, u"five"_s,
    u"six"_s, u"seven"_s, u"eight"_s, u"nine"_s};

bool isAsciiLetter(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

bool isAsciiDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

bool isCapital(QChar character)
{
    return character >= u'A' && character <= u'Z';
}

/// The term with its accents taken off.
QString withoutMarks(const QString& term)
{
    QString plain;
    for (const QChar character : term.normalized(QString::NormalizationForm_D)) {
        if (!character.isMark())
            plain.append(character);
    }
    return plain;
}

/// The words that are said: "macOS 4" is "mac", "o", "s", "four".
QStringList spokenWords(const QString& term)
{
    QStringList words;
    bool joinsBefore = false; // Whether the next small letter continues the last word.
    for (qsizetype i = 0; i < term.size(); ++i) {
        const QChar character = term[i];
        if (isAsciiDigit(character)) {
            words.append(digitNames[static_cast<std::size_t>(character.unicode() - u'0')]);
            joinsBefore = false;
        } else if (!isAsciiLetter(character)) {
            joinsBefore = joinsBefore && character == u'\'';
        } else if (joinsBefore && !isCapital(character)) {
            words.last().append(character);
        } else {
            words.append(character.toLower());
            const bool startsWord =
                i + 1 < term.size() && isAsciiLetter(term[i + 1]) && !isCapital(term[i + 1]);
            joinsBefore = startsWord || !isCapital(character);
        }
    }
    return words;
}

/// One of flite's phones as the acoustic model names it: without stress, reduced vowels merged.
QString sphinxPhone(QString phone)
{
    while (!phone.isEmpty() && phone.back().isDigit())
        phone.chop(1);
    if (phone == u"ax"_s)
        return u"AH"_s;
    if (phone == u"axr"_s)
        return u"ER"_s;
    return phone.toUpper();
}

} // namespace

EnglishPronunciation::EnglishPronunciation()
    : m_lexicon(cmu_lex_init())
{
}

QString EnglishPronunciation::phonesOf(const QString& term) const
{
    const QString plain = withoutMarks(term);
    for (const QChar character : plain) {
        if (character.isLetterOrNumber() && !isAsciiLetter(character) && !isAsciiDigit(character))
            return {};
    }
    QStringList phones;
    for (const QString& word : spokenWords(plain))
        phones.append(phonesOfWord(word));
    return phones.join(u' ');
}

QString EnglishPronunciation::phonesOfWord(const QString& word) const
{
    if (word == u"a"_s)
        return u"EY"_s; // The letter; the lexicon gives the article.
    QStringList phones;
    cst_val* list = lex_lookup(m_lexicon, word.toLatin1().constData(), nullptr, nullptr);
    for (const cst_val* item = list; item != nullptr; item = val_cdr(item))
        phones.append(sphinxPhone(QString::fromLatin1(val_string(val_car(item)))));
    delete_val(list);
    return phones.join(u' ');
}

} // namespace tavrin
