#pragma once

#include "platform/linux/speech/onnx/OnnxProblem.h"

#include <QByteArray>
#include <QSet>
#include <QStringList>

namespace tavrin {

/// The table of tokens of a model, tokens.txt: a token and its number to a line. A piece of a word
/// that begins one is written with "▁" before it.
class OnnxTokens {
public:
    /// Refuses what the library would end the program for, and files of more than 16 MiB.
    [[nodiscard]] static OnnxResult<OnnxTokens> read(const QString& path);

    [[nodiscard]] bool contains(const QByteArray& token) const { return m_tokens.contains(token); }

    /// The highest number of a token and one more.
    [[nodiscard]] qint64 size() const { return m_size; }

    /// Whether there are tokens of a single Han character.
    [[nodiscard]] bool hasHanCharacters() const { return m_hanCharacters > 0; }

    /// Whether there are pieces of words in Latin letters, written with "▁".
    [[nodiscard]] bool hasLatinPieces() const { return m_latinPieces > 0; }

    [[nodiscard]] bool hasPunctuation() const;

    /// Whether words in Latin letters stand in capitals, or without any; neither when in both.
    [[nodiscard]] bool isUpperCase() const { return m_upperCase > 0 && m_lowerCase == 0; }

    [[nodiscard]] bool isLowerCase() const { return m_lowerCase > 0 && m_upperCase == 0; }

    /// The languages that the characters tell, as BCP 47 tags: "zh-CN" (Han characters alone),
    /// "ja", "ko", "en" (words in Latin letters without accents).
    [[nodiscard]] QStringList languages() const;

private:
    [[nodiscard]] bool add(const QByteArray& line);
    void look(const QByteArray& token);

    QSet<QByteArray> m_tokens;
    qint64 m_size = 0;
    int m_hanCharacters = 0;
    int m_kana = 0;
    int m_hangul = 0;
    int m_latinWords = 0;
    int m_latinPieces = 0;
    int m_accentedWords = 0;
    int m_upperCase = 0;
    int m_lowerCase = 0;
};

} // namespace tavrin
