#include "dictionary/EditTracking.h"

#include <algorithm>

namespace tavrin {
namespace {

/// What took the place of what, between the parts that two texts have in common.
struct Edit {
    qsizetype position;
    qsizetype removed;
    qsizetype inserted;
};

Edit editBetween(QStringView before, QStringView after)
{
    const qsizetype prefix = commonPrefixLengthBetween(before, after);
    const qsizetype suffix = commonSuffixLengthBetween(before, after, prefix);
    return {prefix, before.size() - prefix - suffix, after.size() - prefix - suffix};
}

bool isInside(const Edit& edit, qint64 start, qint64 end)
{
    if (edit.removed == 0)
        return start < edit.position && edit.position < end;
    return start <= edit.position && edit.position + edit.removed <= end;
}

} // namespace

qsizetype commonPrefixLengthBetween(QStringView a, QStringView b)
{
    const qsizetype shorter = std::min(a.size(), b.size());
    return std::mismatch(a.begin(), a.begin() + shorter, b.begin()).first - a.begin();
}

qsizetype commonSuffixLengthBetween(QStringView a, QStringView b, qsizetype prefix)
{
    const qsizetype shorter = std::min(a.size(), b.size());
    const qsizetype limit = shorter - std::min(shorter, prefix);
    return std::mismatch(a.rbegin(), a.rbegin() + limit, b.rbegin()).first - a.rbegin();
}

EditPlace followEdit(TrackedStretch& stretch, QStringView before, QStringView after)
{
    const Edit edit = editBetween(before, after);
    const qint64 start = stretch.range.location;
    const qint64 end = start + stretch.range.length;
    if (isInside(edit, start, end)) {
        const qint64 offset = edit.position - start;
        if (offset + edit.removed > stretch.text.size())
            return EditPlace::Outside;
        stretch.text.replace(
            offset, edit.removed, after.sliced(edit.position, edit.inserted).toString());
        stretch.range.length = stretch.text.size();
        return EditPlace::Inside;
    }
    if (edit.position + edit.removed <= start) {
        stretch.range.location = std::max<qint64>(start + edit.inserted - edit.removed, 0);
        return EditPlace::Outside;
    }
    return edit.position >= end ? EditPlace::Outside : EditPlace::Across;
}

} // namespace tavrin
