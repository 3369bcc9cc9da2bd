#include "platform/linux/speech/engine/TranscriptText.h"

namespace tavrin {
namespace {

/// Characters that are written without spaces around them: CJK punctuation, kana, Han characters,
/// compatibility forms and full-width forms.
bool isWrittenWithoutSpaces(QChar character)
{
    const char16_t unit = character.unicode();
    return (unit >= 0x3000 && unit <= 0x9fff) || (unit >= 0xf900 && unit <= 0xfaff)
        || (unit >= 0xff00 && unit <= 0xffef);
}

} // namespace

QString joinTranscript(const QStringList& pieces)
{
    const QString spaced = pieces.join(u' ').simplified();
    QString text;
    text.reserve(spaced.size());
    for (qsizetype i = 0; i < spaced.size(); ++i) {
        const bool superfluous = spaced[i] == u' ' && isWrittenWithoutSpaces(spaced[i - 1])
            && isWrittenWithoutSpaces(spaced[i + 1]); // Simplified: no space at either end.
        if (!superfluous)
            text.append(spaced[i]);
    }
    return text;
}

} // namespace tavrin
