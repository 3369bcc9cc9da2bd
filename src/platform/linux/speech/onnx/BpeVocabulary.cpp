#include "platform/linux/speech/onnx/BpeVocabulary.h"

#include "platform/linux/speech/onnx/RegularFile.h"

#include <cmath>

namespace tavrin {
namespace {

constexpr qint64 largestFile = 4LL * 1024 * 1024;

/// The piece of a line; empty when the line is not "PIECE SCORE".
QByteArray pieceOf(const QByteArray& line)
{
    const QList<QByteArray> columns = line.simplified().split(' ');
    if (columns.size() != 2)
        return {};
    bool isNumber = false;
    const float score = columns[1].toFloat(&isNumber);
    return isNumber && std::isfinite(score) ? columns[0] : QByteArray{};
}

} // namespace

std::optional<BpeVocabulary> BpeVocabulary::read(const QString& path)
{
    QFile file;
    if (path.isEmpty() || !openRegularFile(path, file) || file.size() > largestFile)
        return std::nullopt;
    QList<QByteArray> lines = file.read(largestFile).split('\n');
    if (lines.last().isEmpty())
        lines.removeLast(); // What stands after the last line end is no line.
    BpeVocabulary vocabulary;
    for (const QByteArray& line : lines) {
        const QByteArray piece = pieceOf(line);
        // Twice the same piece cannot be looked up.
        if (piece.isEmpty() || vocabulary.m_pieces.contains(piece))
            return std::nullopt;
        vocabulary.m_pieces.insert(piece);
    }
    if (vocabulary.m_pieces.isEmpty())
        return std::nullopt;
    return vocabulary;
}

} // namespace tavrin
