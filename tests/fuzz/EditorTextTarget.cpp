#include "delivery/EditorText.h"
#include "fuzz/Input.h"
#include "fuzz/Require.h"

// What is concluded from any two observations of an editor, beside the same rules in arithmetic
// that cannot overflow.

namespace tavrin::fuzz {
namespace {

__extension__ using Wide = __int128;

EditorObservation observation(Input& input)
{
    EditorObservation seen;
    seen.text = input.maybe(&Input::text);
    seen.range = input.maybe(&Input::range);
    seen.count = input.maybe(&Input::number);
    return seen;
}

void checkExpectedValue(const std::optional<QString>& value, TextRange range, const QString& text)
{
    const std::optional<QString> expected = expectedValueFrom(value, range, text);
    const bool fits = value && range.location >= 0 && range.length >= 0
        && Wide{range.location} + range.length <= value->size();
    require(expected.has_value() == fits, "exactly a range within the value can be replaced");
    if (!expected)
        return;
    require(
        *expected == value->left(range.location) + text + value->mid(range.location + range.length),
        "the range is replaced and nothing else");
}

void checkConclusions(
    const EditorObservation& before, const EditorObservation& after, qint64 inserted)
{
    bool matches = before.range && after.range && after.range->length == 0
        && Wide{before.range->location} + inserted == after.range->location;
    if (matches && before.count && after.count)
        matches = Wide{*before.count} - before.range->length + inserted == *after.count;
    require(caretAndCountMatch(before, after, inserted) == matches, "caret and count add up");

    require(hasVisibleChange(before, after) == hasVisibleChange(after, before),
        "a change is one both ways");
    require(!hasVisibleChange(before, before), "what stays the same shows no change");
    if (isObservationComplete(before, after))
        require(hasVisibleChange(before, after) != (before == after),
            "where everything is seen, any difference is a change");
}

void checkNormalizing(const std::optional<QString>& text)
{
    QString plain;
    const QString source = text.value_or(QString());
    for (qsizetype i = 0; i < source.size(); ++i) {
        const bool followsReturn = i > 0 && source[i - 1] == u'\r';
        if (source[i] == u'\r')
            plain.append(u'\n');
        else if (source[i] != u'\n' || !followsReturn)
            plain.append(source[i]);
    }
    require(normalizedEditorText(text) == plain, "every line end is one line feed");
}

} // namespace
} // namespace tavrin::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tavrin::fuzz;
    Input input(data, size);
    const auto before = observation(input);
    const auto after = observation(input);
    const QString text = input.text();
    checkExpectedValue(before.text, before.range.value_or(tavrin::TextRange()), text);
    checkConclusions(before, after, text.size());
    checkConclusions(before, after, input.number());
    checkNormalizing(before.text);
    checkNormalizing(text);
    return 0;
}
