#include "platform/linux/speech/onnx/OnnxTokens.h"

#include "platform/linux/speech/onnx/RegularFile.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr qint64 largestFile = 16LL * 1024 * 1024; // Whisper's, the largest known, has one.
constexpr qsizetype longestLine = 1024;
constexpr qint64 highestToken = 10'000'000;

/// Where words are cut: as the library's C++ streams do it.
bool isSpace(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

QList<QByteArray> columnsOf(const QByteArray& line)
{
    QList<QByteArray> columns;
    auto begin = line.begin();
    while (true) {
        begin = std::find_if_not(begin, line.end(), isSpace);
        if (begin == line.end())
            return columns;
        const auto end = std::find_if(begin, line.end(), isSpace);
        columns.append(QByteArray(begin, end - begin));
        begin = end;
    }
}

bool isLatin(QChar character)
{
    return character.script() == QChar::Script_Latin;
}

bool isUpper(QChar character)
{
    return character.isUpper();
}

bool isLower(QChar character)
{
    return character.isLower();
}

bool isAscii(QChar character)
{
    return character.unicode() < 0x80;
}

} // namespace

OnnxResult<OnnxTokens> OnnxTokens::read(const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    QFile file;
    if (!openRegularFile(path, file))
        return onnxFailure(OnnxFault::Unreadable, path);
    if (file.size() > largestFile)
        return onnxFailure(OnnxFault::TokensMalformed, name);
    const QList<QByteArray> lines = file.read(largestFile).split('\n');
    OnnxTokens tokens;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (!tokens.add(lines[i]))
            return onnxFailure(
                OnnxFault::TokensMalformed, u"%1:%2"_s.arg(name, QString::number(i + 1)));
    }
    if (tokens.m_tokens.isEmpty())
        return onnxFailure(OnnxFault::TokensMalformed, name);
    return tokens;
}

bool OnnxTokens::hasPunctuation() const
{
    static const QList<QByteArray> marks{"，", "。", "？", ",", ".", "?"};
    const auto stands = [this](const QByteArray& mark) {
        return m_tokens.contains(mark) || m_tokens.contains("▁" + mark);
    };
    return std::ranges::any_of(marks, stands);
}

QStringList OnnxTokens::languages() const
{
    constexpr int sometimes = 100; // A few foreign words make no language.
    const auto isFrequent = [this](int count) { return count > 0 && count >= m_size / sometimes; };
    QStringList languages;
    if (isFrequent(m_kana))
        languages.append(u"ja"_s);
    else if (isFrequent(m_hanCharacters))
        languages.append(u"zh-CN"_s);
    if (isFrequent(m_hangul))
        languages.append(u"ko"_s);
    if (isFrequent(m_latinWords) && !isFrequent(m_accentedWords))
        languages.append(u"en"_s);
    return languages;
}

bool OnnxTokens::add(const QByteArray& line)
{
    if (line.size() > longestLine)
        return false;
    const QList<QByteArray> columns = columnsOf(line);
    if (columns.isEmpty())
        return true;
    if (columns.size() > 2)
        return false;
    bool isNumber = false;
    const qint64 number = columns.last().toLongLong(&isNumber);
    if (!isNumber || number < 0 || number > highestToken)
        return false;
    m_size = std::max(m_size, number + 1);
    const QByteArray token = columns.size() == 2 ? columns.first() : QByteArray(" ");
    m_tokens.insert(token);
    look(token);
    return true;
}

void OnnxTokens::look(const QByteArray& token)
{
    if (token.startsWith('<'))
        return;
    QString text = QString::fromUtf8(token);
    const bool beginsWord = text.startsWith(u'▁');
    if (beginsWord)
        text.remove(0, 1);
    if (text.endsWith("@@"_L1)) // A word that goes on.
        text.chop(2);
    if (text.isEmpty())
        return;
    const QChar first = text.front();
    m_hanCharacters += text.size() == 1 && first.script() == QChar::Script_Han ? 1 : 0;
    m_kana += first.script() == QChar::Script_Hiragana || first.script() == QChar::Script_Katakana;
    m_hangul += first.script() == QChar::Script_Hangul ? 1 : 0;
    if (!std::ranges::all_of(text, isLatin))
        return;
    m_upperCase += std::ranges::any_of(text, isUpper) ? 1 : 0;
    m_lowerCase += std::ranges::any_of(text, isLower) ? 1 : 0;
    m_latinPieces += beginsWord ? 1 : 0;
    m_latinWords += beginsWord || text.size() > 1 ? 1 : 0;
    m_accentedWords += std::ranges::all_of(text, isAscii) ? 0 : 1;
}

} // namespace tavrin
