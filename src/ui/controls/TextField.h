#pragma once

#include <QLineEdit>

class QAbstractButton;

namespace tavrin::ui {

/// `TavInsetTextFieldCell`: a field whose text keeps 10 points from either end of its round border
/// (`styleInputField`). It shows by its border that it has the keyboard.
class TextField final : public QLineEdit {
    Q_OBJECT

public:
    enum class Kind {
        Plain,
        Secure, ///< `TavInsetSecureTextFieldCell`: shows dots.
        Search, ///< With a magnifying glass, and a cross that empties it.
        Add, ///< With a plus sign.
    };

    /// @param frame from the bottom left of @p parent.
    TextField(
        QWidget& parent, const QRect& frame, const QString& placeholder, Kind kind = Kind::Plain);

    /// Shown at the right end, quiet: how many were found, say.
    void setNote(const QString& note);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void setMargins();

    Kind m_kind;
    QString m_note;
    QAbstractButton* m_clear = nullptr; ///< Of a search field.
};

} // namespace tavrin::ui
