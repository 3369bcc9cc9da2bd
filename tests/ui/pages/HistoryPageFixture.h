#pragma once

#include "app/pages/history/HistoryControllerFixture.h"
#include "ui/controls/Label.h"
#include "ui/pages/HistoryList.h"
#include "ui/pages/HistoryPage.h"
#include "ui/pages/Keyboard.h"
#include "ui/style/BrandStyle.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QScrollBar>
#include <QShortcut>

#include <optional>

namespace tavrin::testing {

// Places in RecordCard::controls().
inline constexpr std::size_t copyButton = 1;
inline constexpr std::size_t toggleButton = 2;
inline constexpr std::size_t deleteButton = 3;
inline constexpr std::size_t chevronButton = 4;

/// A text of more than two lines.
inline QByteArray longText()
{
    return QByteArray("some words that go on ").repeated(30);
}

/// The history page over a history that the test writes.
class HistoryPageFixture : public HistoryControllerFixture {
protected:
    QWidget window;
    std::optional<ui::HistoryPage> page;

    /// Shows the page over these records, with the keyboard in its window.
    void open(const QByteArrayList& records)
    {
        window.resize(820, 640);
        brand::applyBrandControlStylesInView(window);
        page.emplace(window, controller, localization);
        page->show();
        show(records);
        window.show();
        window.activateWindow();
        QApplication::processEvents();
        ASSERT_TRUE(window.isActiveWindow());
    }

    void openThree()
    {
        open({});
        showThree();
    }

    /// "result 0", "result 1", … from the top, of one line each.
    static QByteArrayList numbered(int count)
    {
        QByteArrayList records;
        for (int i = 0; i < count; ++i) {
            const QByteArray number = QByteArray::number(i);
            records.append(R"({"id":"R)" + number + R"(","mode":"chat","transcript":"original )"
                + number + R"(","finalText":"result )" + number + R"("})");
        }
        return records;
    }

    [[nodiscard]] ui::HistoryList& list() const { return *page->findChild<ui::HistoryList*>(); }

    [[nodiscard]] QScrollBar& bar() const { return *list().verticalScrollBar(); }

    [[nodiscard]] ui::RecordCard& card(std::size_t place) const
    {
        return *list().cards().at(place);
    }

    [[nodiscard]] QAbstractButton& button(std::size_t place, std::size_t which) const
    {
        return dynamic_cast<QAbstractButton&>(*card(place).controls().at(which));
    }

    /// The texts of the cards that are at least partly in sight.
    [[nodiscard]] QStringList inSight() const
    {
        QStringList texts;
        for (const ui::RecordCard* const one : list().cards()) {
            if (one->isVisible() && one->y() < list().height())
                texts.append(one->content().row.text);
        }
        return texts;
    }

    [[nodiscard]] QLineEdit& findField() const
    {
        return *page->findChild<QLineEdit*>(QStringLiteral("historySearchField"));
    }

    [[nodiscard]] QString labelText(const char* name) const
    {
        return page->findChild<ui::Label*>(QString::fromLatin1(name))->fullText();
    }

    void pressFindShortcut() const { Q_EMIT page->findChild<QShortcut*>()->activated(); }

    [[nodiscard]] static QString focused()
    {
        const QWidget* const widget = QApplication::focusWidget();
        if (const auto* const record = dynamic_cast<const ui::RecordCard*>(widget))
            return record->content().row.text;
        return widget ? widget->accessibleName() : QString();
    }
};

} // namespace tavrin::testing
