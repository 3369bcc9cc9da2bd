#pragma once

#include "Fields.h"

#include <QAccessibleWidget>

#include <optional>

namespace tavrin::testing {

/// In what a field deceives those who read it.
enum class Lie {
    Stale, ///< Reports for ever what it showed at the start.
    ReadOnly, ///< Reports the truth and refuses to be written to, claiming to allow it.
    Negative, ///< Reports a caret, a selection and a count below zero.
    Counts, ///< Reports a count and a caret far beyond its text.
    Huge, ///< Reports 50 million characters, and answers every question with all of them.
    StuckInsert, ///< Reports the truth; hangs when it is to insert something, and inserts nothing.
    Secret, ///< A password field that would tell its text.
    Terminal, ///< Is called a terminal.
};

/// The lie of that name, as the command line has it; empty when there is none.
[[nodiscard]] std::optional<Lie> lieNamed(const QString& name);

/// What the accessibility bus learns of a lying field.
class LyingAccessible final : public QAccessibleWidget,
                              public QAccessibleTextInterface,
                              public QAccessibleEditableTextInterface {
public:
    LyingAccessible(PlainField& field, Lie lie);

    /// Lets @p field, which must live as long as the program, appear through this class.
    static void disguise(PlainField& field, Lie lie);

    /// How often the text of such a field, its length or its selection has been asked for.
    [[nodiscard]] static int reads();

    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override;
    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;

    void selection(int selectionIndex, int* startOffset, int* endOffset) const override;
    [[nodiscard]] int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int selectionIndex) override;
    void setSelection(int selectionIndex, int startOffset, int endOffset) override;
    [[nodiscard]] int cursorPosition() const override;
    void setCursorPosition(int position) override;
    [[nodiscard]] QString text(int startOffset, int endOffset) const override;
    // NOLINTNEXTLINE(bugprone-virtual-near-miss): the text of a range is another thing
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] int characterCount() const override;
    [[nodiscard]] QRect characterRect(int offset) const override;
    [[nodiscard]] int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    [[nodiscard]] QString attributes(int offset, int* startOffset, int* endOffset) const override;

    void deleteText(int startOffset, int endOffset) override;
    void insertText(int offset, const QString& text) override;
    void replaceText(int startOffset, int endOffset, const QString& text) override;

private:
    PlainField& m_field;
    Lie m_lie;
    QString m_atStart;
};

} // namespace tavrin::testing
