#pragma once

#include "app/pages/DictionaryContent.h"

#include <QWidget>

#include <array>

namespace tavrin {
class Localization;
} // namespace tavrin

namespace tavrin::ui {

class Badge;
class Button;
class Label;

/// One term of the list with its badge and its buttons. Shows whatever term it is given.
class TermRow final : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize rowSize{536, 66};

    /// @param localization must outlive the row.
    TermRow(QWidget& parent, const Localization& localization);

    void setRow(const DictionaryRow& row);

    [[nodiscard]] const QString& identifier() const { return m_row.identifier; }

    /// Edit and Delete.
    [[nodiscard]] const std::array<Button*, 2>& buttons() const { return m_buttons; }

private:
    void placeButtons();

    const Localization& m_localization;
    DictionaryRow m_row;
    Label* m_term;
    Badge* m_badge;
    std::array<Button*, 2> m_buttons;
};

} // namespace tavrin::ui
