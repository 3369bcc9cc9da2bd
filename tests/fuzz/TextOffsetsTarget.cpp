#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "platform/linux/atspi/TextOffsets.h"

// Positions in any text, counted in code points and in UTF-16 units.

namespace tavrin::fuzz {
namespace {

void checkPosition(const QString& text, qint64 number)
{
    constexpr OffsetUnit points = OffsetUnit::CodePoints;
    constexpr OffsetUnit units = OffsetUnit::Utf16Units;
    require(utf16FromOffset(text, number, units) == number, "units stay what they are");
    require(offsetFromUtf16(text, number, units) == number, "units stay what they are");

    const qint64 position = utf16FromOffset(text, number, points);
    const qint64 count = offsetCount(text, points);
    require(count <= text.size() && count >= text.size() / 2, "a code point has one unit or two");
    if (number <= 0) {
        require(position == number, "what lies before the text stays there");
    } else if (number <= count) {
        require(position <= text.size(), "within the text stays within the text");
        require(offsetFromUtf16(text, position, points) == number, "and leads back");
    } else {
        require(position > text.size(), "behind the text stays behind it");
    }
}

} // namespace
} // namespace tavrin::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tavrin::fuzz;
    Input input(data, size);
    const QString text = input.text();
    for (int i = 0; i < 4; ++i)
        checkPosition(text, input.number());
    const qint64 count = input.number();
    static_cast<void>(tavrin::offsetUnitFor(text, count, tavrin::OffsetUnit::CodePoints));
    return 0;
}
