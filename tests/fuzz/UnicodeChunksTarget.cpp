#include "delivery/UnicodeChunks.h"
#include "fuzz/Input.h"
#include "fuzz/Require.h"

// The pieces in which any text is typed: the bytes are its UTF-16 units.

namespace tavrin::fuzz {
namespace {

void checkChunks(const QString& text)
{
    constexpr qsizetype most = 16;
    const QStringList chunks = unicodeChunks(text);
    require(chunks.join(QString()) == text, "the chunks are the text");
    for (qsizetype i = 0; i < chunks.size(); ++i) {
        const QString& chunk = chunks[i];
        require(!chunk.isEmpty() && chunk.size() <= most, "a chunk has 1 to 16 units");
        if (i + 1 == chunks.size())
            break;
        require(!chunk.back().isHighSurrogate() || !chunks[i + 1].front().isLowSurrogate(),
            "no pair is split");
        require(chunk.size() == most || chunks[i + 1].front().isHighSurrogate(),
            "only a surrogate shortens a chunk");
    }
}

} // namespace
} // namespace tavrin::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tavrin::fuzz::checkChunks(tavrin::fuzz::Input(data, size).restAsText());
    tavrin::fuzz::checkChunks(tavrin::fuzz::Input(data, size).text());
    return 0;
}
