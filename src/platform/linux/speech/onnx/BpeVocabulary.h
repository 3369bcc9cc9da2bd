#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

#include <optional>

namespace tavrin {

/// The file bpe.vocab of a model: the pieces that the library cuts words into, a piece and its
/// score to a line. A piece that begins a word is written with "▁" before it.
class BpeVocabulary {
public:
    /// Empty when the file is missing or not as the library needs it: it would end the program.
    [[nodiscard]] static std::optional<BpeVocabulary> read(const QString& path);

    [[nodiscard]] bool contains(const QByteArray& piece) const { return m_pieces.contains(piece); }

private:
    QSet<QByteArray> m_pieces;
};

} // namespace tavrin
