#include "delivery/UnicodeChunks.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr qsizetype chunkUnits = 16;

} // namespace

QStringList unicodeChunks(const QString& text)
{
    QStringList chunks;
    for (qsizetype start = 0; start < text.size();) {
        qsizetype length = std::min(chunkUnits, text.size() - start);
        const bool endsBeforeTheText = start + length < text.size();
        if (endsBeforeTheText && text.at(start + length - 1).isHighSurrogate())
            --length;
        chunks.append(text.mid(start, length));
        start += length;
    }
    return chunks;
}

} // namespace tavrin
