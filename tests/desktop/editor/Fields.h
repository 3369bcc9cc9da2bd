#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QString>

/// The fields that the test editor shows, and their ways of taking what is put into them.
namespace tavrin::testing {

struct FieldHabits {
    bool swallowsPaste = false;
    bool ignoresKeys = false; ///< The paste shortcut too.
    bool tidiesPaste = false; ///< Trims the lines of what is pasted and makes its quotes curly.
};

/// A text of several lines.
class PlainField final : public QPlainTextEdit {
public:
    PlainField(const QString& text, const FieldHabits& habits);

    /// Positions outside the text count as its ends.
    void select(int anchor, int caret);

protected:
    void insertFromMimeData(const QMimeData* source) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    FieldHabits m_habits;
};

/// Takes keys and pastes like a field, and tells accessibility nothing of its text.
class BareField final : public QWidget {
public:
    explicit BareField(QString text);

    [[nodiscard]] const QString& text() const { return m_text; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};

/// What really stands in a field of whatever kind.
[[nodiscard]] QString textOf(const QWidget& field);

} // namespace tavrin::testing
