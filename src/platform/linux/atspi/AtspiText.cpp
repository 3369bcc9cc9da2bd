#include "platform/linux/atspi/AtspiText.h"

#include "platform/linux/atspi/AtspiFocus.h"
#include "platform/linux/atspi/Libatspi.h"

#include <algorithm>
#include <string>

using namespace std::chrono_literals;

namespace tavrin {

using namespace libatspi;

namespace {

constexpr auto snapshotLifetime = 100ms;

/// A GError slot that frees what it holds.
class ErrorSlot {
public:
    ErrorSlot() = default;

    ~ErrorSlot() { g_clear_error(&m_error); }

    ErrorSlot(const ErrorSlot&) = delete;
    ErrorSlot& operator=(const ErrorSlot&) = delete;

    [[nodiscard]] GError** out() { return &m_error; }

    [[nodiscard]] bool isSet() const { return m_error != nullptr; }

private:
    GError* m_error = nullptr;
};

using TextHandle = GObjectHandle<AtspiText>;
using EditableHandle = GObjectHandle<AtspiEditableText>;

TextHandle textOf(AtspiAccessible* element)
{
    return TextHandle(atspi_accessible_get_text_iface(element));
}

EditableHandle editableOf(AtspiAccessible* element)
{
    return EditableHandle(atspi_accessible_get_editable_text_iface(element));
}

/// The name of the toolkit that the element's program is made with; empty when unknown.
std::string toolkitOf(AtspiAccessible* element)
{
    const GObjectHandle<AtspiAccessible> application(
        atspi_accessible_get_application(element, nullptr));
    const GMemory<char> name(
        application ? atspi_accessible_get_toolkit_name(application.get(), nullptr) : nullptr);
    return name ? name.get() : "";
}

OffsetUnit usualUnit(AtspiAccessible* element)
{
    const std::string toolkit = toolkitOf(element);
    return toolkit == "Qt" || toolkit == "VCL" ? OffsetUnit::Utf16Units : OffsetUnit::CodePoints;
}

/// The editor's own count; empty when it does not answer.
std::optional<int> characterCount(AtspiText* text)
{
    ErrorSlot error;
    const int count = atspi_text_get_character_count(text, error.out());
    if (error.isSet() || count < 0)
        return std::nullopt;
    return count;
}

std::optional<QString> characters(AtspiText* text, int start, int end)
{
    ErrorSlot error;
    const GMemory<char> bytes(atspi_text_get_text(text, start, end, error.out()));
    if (error.isSet() || !bytes)
        return std::nullopt;
    return QString::fromUtf8(bytes.get()).left(AtspiTextReader::mostCharacters);
}

/// Selection or caret as the editor counts; empty when it does not answer.
std::optional<TextRange> editorRange(AtspiText* text)
{
    if (atspi_text_get_n_selections(text, nullptr) > 0) {
        const GMemory<AtspiRange> range(atspi_text_get_selection(text, 0, nullptr));
        if (range && range->start_offset != range->end_offset) {
            const auto [start, end] = std::minmax(range->start_offset, range->end_offset);
            return TextRange{start, qint64(end) - start};
        }
    }
    ErrorSlot error;
    const int caret = atspi_text_get_caret_offset(text, error.out());
    if (error.isSet() || caret < 0)
        return std::nullopt;
    return TextRange{caret, 0};
}

} // namespace

std::optional<QString> AtspiTextReader::value(AtspiAccessible* element)
{
    const Snapshot* const snapshot = read(element);
    return snapshot ? std::optional(snapshot->text) : std::nullopt;
}

std::optional<TextRange> AtspiTextReader::selectedRange(AtspiAccessible* element)
{
    const TextHandle text = textOf(element);
    const std::optional<TextRange> range = text ? editorRange(text.get()) : std::nullopt;
    if (!range)
        return std::nullopt;
    const Snapshot* const snapshot = read(element);
    if (!snapshot)
        return std::nullopt;
    const qint64 start = utf16FromOffset(snapshot->text, range->location, snapshot->unit);
    const qint64 end =
        utf16FromOffset(snapshot->text, range->location + range->length, snapshot->unit);
    return TextRange{start, end - start};
}

std::optional<qint64> AtspiTextReader::numberOfCharacters(AtspiAccessible* element)
{
    const Snapshot* const snapshot = read(element);
    if (!snapshot)
        return std::nullopt;
    return utf16FromOffset(snapshot->text, snapshot->count, snapshot->unit);
}

std::optional<QString> AtspiTextReader::stringForRange(AtspiAccessible* element, TextRange range)
{
    const Snapshot* const snapshot = read(element);
    if (!snapshot || range.location < 0 || range.length < 0
        || range.location > snapshot->text.size()
        || range.length > snapshot->text.size() - range.location)
        return std::nullopt;
    return snapshot->text.mid(range.location, range.length);
}

bool AtspiTextReader::replaceSelection(AtspiAccessible* element, const QString& text)
{
    const TextHandle reader = textOf(element);
    const EditableHandle editor = editableOf(element);
    const std::optional<TextRange> range = reader ? editorRange(reader.get()) : std::nullopt;
    if (!editor || !range)
        return false;
    clear();

    // Behind the selection first: what cannot be inserted must not cost the user what he selected.
    const int start = static_cast<int>(range->location);
    const int end = static_cast<int>(range->location + range->length);
    // How long the text is: Qt takes the number as characters, everybody else as bytes.
    const QByteArray bytes = text.toUtf8();
    const qsizetype length = toolkitOf(element) == "Qt" ? text.size() : bytes.size();
    if (!atspi_editable_text_insert_text(
            editor.get(), end, bytes.constData(), static_cast<int>(length), nullptr))
        return false;
    if (end > start && !atspi_editable_text_delete_text(editor.get(), start, end, nullptr))
        return false;

    const Snapshot* const now = read(element);
    const qint64 caret = start + offsetCount(text, now ? now->unit : usualUnit(element));
    if (editorRange(reader.get()) != TextRange{caret, 0})
        atspi_text_set_caret_offset(reader.get(), static_cast<int>(caret), nullptr);
    return true;
}

bool AtspiTextReader::setSelectedRange(AtspiAccessible* element, TextRange range)
{
    const TextHandle text = textOf(element);
    const Snapshot* const snapshot = text ? read(element) : nullptr;
    if (!snapshot || range.location < 0 || range.length < 0 || range.location > mostCharacters
        || range.length > mostCharacters)
        return false;
    const int start =
        static_cast<int>(offsetFromUtf16(snapshot->text, range.location, snapshot->unit));
    const int end = static_cast<int>(
        offsetFromUtf16(snapshot->text, range.location + range.length, snapshot->unit));
    if (range.length == 0)
        return atspi_text_set_caret_offset(text.get(), start, nullptr);
    return atspi_text_get_n_selections(text.get(), nullptr) > 0
        ? atspi_text_set_selection(text.get(), 0, start, end, nullptr)
        : atspi_text_add_selection(text.get(), start, end, nullptr);
}

bool AtspiTextReader::setValue(AtspiAccessible* element, const QString& text)
{
    const EditableHandle editor = editableOf(element);
    return editor
        && atspi_editable_text_set_text_contents(editor.get(), text.toUtf8().constData(), nullptr);
}

bool AtspiTextReader::isEditable(AtspiAccessible* element)
{
    return editableOf(element) && hasState(element, ATSPI_STATE_EDITABLE);
}

void AtspiTextReader::clear()
{
    m_snapshot.reset();
}

const AtspiTextReader::Snapshot* AtspiTextReader::read(AtspiAccessible* element)
{
    const TextHandle text = textOf(element);
    const std::optional<int> count = text ? characterCount(text.get()) : std::nullopt;
    if (!count) {
        clear();
        return nullptr;
    }
    const auto now = std::chrono::steady_clock::now();
    if (m_snapshot && m_snapshot->element.get() == element && m_snapshot->count == *count
        && now - m_snapshot->readAt < snapshotLifetime)
        return &*m_snapshot;

    clear();
    const int end = static_cast<int>(std::min<qint64>(*count, mostCharacters));
    std::optional<QString> content = characters(text.get(), 0, end);
    if (!content)
        return nullptr;
    const OffsetUnit unit = offsetUnitFor(*content, *count, usualUnit(element));
    // A long text takes its time: the tenth of a second begins behind it.
    const auto readAt = std::chrono::steady_clock::now();
    m_snapshot = Snapshot{retained(element), *std::move(content), *count, unit, readAt};
    return &*m_snapshot;
}

} // namespace tavrin
