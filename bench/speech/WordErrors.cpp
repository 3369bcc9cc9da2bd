#include "WordErrors.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace tavrin::bench {

QStringList comparedWords(const QString& text)
{
    QString plain;
    for (const QChar character : text.toLower()) {
        const bool counts = character.isLetterOrNumber() || character == u'\'';
        plain.append(counts ? character : QChar(u' '));
    }
    return plain.split(u' ', Qt::SkipEmptyParts);
}

int wordErrors(const QStringList& said, const QStringList& understood)
{
    std::vector<int> distances(static_cast<std::size_t>(understood.size()) + 1);
    std::iota(distances.begin(), distances.end(), 0);
    for (const QString& word : said) {
        int diagonal = distances[0]++;
        for (std::size_t i = 1; i < distances.size(); ++i) {
            const bool same = word == understood[static_cast<qsizetype>(i) - 1];
            const int best =
                std::min({distances[i] + 1, distances[i - 1] + 1, diagonal + (same ? 0 : 1)});
            diagonal = std::exchange(distances[i], best);
        }
    }
    return distances.back();
}

} // namespace tavrin::bench
