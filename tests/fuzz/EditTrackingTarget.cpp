#include "dictionary/EditTracking.h"
#include "fuzz/Input.h"
#include "fuzz/Require.h"

#include <algorithm>

// A stretch of a field that takes one value after the other, beside three texts: what stands before
// the stretch, in it and behind it.

namespace tavrin::fuzz {
namespace {

constexpr int mostValues = 24;
constexpr qsizetype longestField = 4096;

struct Field {
    QString before;
    QString stretch;
    QString behind;

    [[nodiscard]] QString value() const { return before + stretch + behind; }
};

/// What was taken out of a value, and put in at its place.
struct Change {
    qsizetype place;
    qsizetype removed;
    QString inserted;
};

/// As much as possible is kept from the beginning, then from the end.
Change changeOf(const QString& value, const QString& next)
{
    qsizetype kept = 0;
    while (kept < value.size() && kept < next.size() && value[kept] == next[kept])
        ++kept;
    QString removed = value.mid(kept);
    QString inserted = next.mid(kept);
    while (!removed.isEmpty() && !inserted.isEmpty() && removed.back() == inserted.back()) {
        removed.chop(1);
        inserted.chop(1);
    }
    return {kept, removed.size(), inserted};
}

/// The field afterwards; whether the change was within the stretch, elsewhere, or over an edge of
/// it.
EditPlace change(Field& field, const Change& change)
{
    const qsizetype start = field.before.size();
    const qsizetype end = start + field.stretch.size();
    const qsizetype last = change.place + change.removed;
    const bool touchesEdge = change.removed == 0 && (change.place == start || change.place == end);
    if (change.place >= start && last <= end && !touchesEdge) {
        field.stretch.replace(change.place - start, change.removed, change.inserted);
        return EditPlace::Inside;
    }
    if (last <= start) {
        field.before.replace(change.place, change.removed, change.inserted);
        return EditPlace::Outside;
    }
    if (change.place >= end) {
        field.behind.replace(change.place - end, change.removed, change.inserted);
        return EditPlace::Outside;
    }
    return EditPlace::Across;
}

qsizetype placeIn(qsizetype length, Input& input)
{
    const qsizetype high = input.byte();
    return (high * 256 + input.byte()) % (length + 1);
}

/// Of few letters, so that a change can be read in more than one way; or of any units.
QString someText(Input& input)
{
    QString text = input.text();
    if (!input.flag())
        return text;
    for (QChar& unit : text)
        unit = QChar(u'a' + unit.unicode() % 2);
    return text;
}

/// Anything, or what becomes of the value when a piece of it is replaced.
QString nextValue(const Field& field, Input& input)
{
    const QString value = field.value();
    switch (input.byte() % 8) {
    case 0:
        return someText(input);
    case 1:
        return value + value.left(longestField - std::min(longestField, value.size()));
    case 2: { // Somewhere about the stretch.
        const qsizetype place = field.before.size() + placeIn(field.stretch.size(), input);
        const qsizetype removed = input.byte() % 3;
        return value.left(place) + someText(input) + value.mid(place + removed);
    }
    default: {
        const qsizetype place = placeIn(value.size(), input);
        const qsizetype removed = placeIn(value.size() - place, input);
        return (value.left(place) + someText(input) + value.mid(place + removed))
            .left(longestField);
    }
    }
}

void requireInside(const TrackedStretch& stretch, const QString& value)
{
    const TextRange& range = stretch.range;
    require(range.location >= 0 && range.length >= 0, "the range has a place");
    require(range.location + range.length <= value.size(), "the range is of the field");
    require(
        value.mid(range.location, range.length) == stretch.text, "the text stands at its range");
}

/// False when the stretch is lost, as it stays.
bool follow(TrackedStretch& stretch, Field& field, const QString& next)
{
    const QString value = field.value();
    const TrackedStretch earlier = stretch;
    const EditPlace expected = change(field, changeOf(value, next));
    require(followEdit(stretch, value, next) == expected, "what was changed where is noticed");
    if (expected == EditPlace::Across) {
        require(stretch == earlier, "a stretch that is lost stays as it was");
        return false;
    }
    require(field.value() == next, "the three texts are the field");
    requireInside(stretch, next);
    require(stretch.text == field.stretch, "the text has become what it should");
    require(stretch.range.location == field.before.size(), "and lies where it should");
    return true;
}

} // namespace
} // namespace tavrin::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tavrin::fuzz;
    Input input(data, size);
    Field field{someText(input), someText(input), someText(input)};
    tavrin::TrackedStretch stretch{field.stretch, {field.before.size(), field.stretch.size()}};
    for (int count = input.byte() % mostValues; count >= 0; --count) {
        const QString next = nextValue(field, input);
        if (next != field.value() && !follow(stretch, field, next))
            break;
    }
    return 0;
}
