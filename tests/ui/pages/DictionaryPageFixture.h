#pragma once

#include "app/pages/DictionaryController.h"
#include "ui/controls/Button.h"
#include "ui/controls/Label.h"
#include "ui/pages/DictionaryList.h"
#include "ui/pages/DictionaryPage.h"
#include "ui/pages/PageFixture.h"
#include "ui/pages/TermRow.h"

#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>

#include <optional>

namespace tavrin::testing {

/// Buttons of a row.
inline constexpr std::size_t editButton = 0;
inline constexpr std::size_t deleteButton = 1;

/// The dictionary page over a dictionary that the test writes.
class DictionaryPageFixture : public PageFixture {
protected:
    QStringList calls;
    DictionaryController controller{{
        .alerts = alerts,
        .clock = time,
        .localization = localization,
        .preferences = preferences,
        .playSound = [this](const QString& name) { calls.append(name); },
        .endCorrectionWatch = [] {},
        .showPersonalizationWindow = [this] { calls.append(QStringLiteral("personalization")); },
    }};
    std::optional<ui::DictionaryPage> page;

    static QVariantMap entry(const QString& term, const QString& source = QStringLiteral("manual"))
    {
        return {{QStringLiteral("id"), QStringLiteral("id of ") + term},
            {QStringLiteral("term"), term}, {QStringLiteral("source"), source}};
    }

    void store(const QVariantList& entries)
    {
        preferences.setValue(keys::personalDictionaryEntries, entries);
    }

    /// "term 0", "term 1", … from the top.
    void storeMany(int count)
    {
        QVariantList entries;
        for (int i = 0; i < count; ++i)
            entries.append(entry(QStringLiteral("term %1").arg(i)));
        store(entries);
    }

    void open()
    {
        page.emplace(window, controller, localization);
        page->show();
        show();
    }

    ui::DictionaryList& list() const { return *window.findChild<ui::DictionaryList*>(); }

    QScrollBar& bar() const { return *list().verticalScrollBar(); }

    QLineEdit& search() const { return named<QLineEdit>(QStringLiteral("dictionarySearchField")); }

    QLineEdit& newTerm() const
    {
        return named<QLineEdit>(QStringLiteral("dictionaryNewTermField"));
    }

    /// The terms of the rows that are at least partly in sight.
    QStringList terms() const
    {
        QStringList shown;
        for (const ui::TermRow* const row : list().rowsInSight()) {
            if (row->isVisible() && row->y() < list().height())
                shown.append(row->findChild<ui::Label*>()->fullText());
        }
        return shown;
    }

    ui::Button& button(std::size_t row, std::size_t which) const
    {
        return *list().rowsInSight().at(row)->buttons().at(which);
    }

    static void mouse(QWidget& receiver, QEvent::Type type)
    {
        const QPointF middle = QRectF(receiver.rect()).center();
        QMouseEvent event(type, middle, receiver.mapToGlobal(middle), Qt::LeftButton,
            type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&receiver, &event);
    }

    static QString focused()
    {
        const QWidget* const widget = QApplication::focusWidget();
        return widget ? widget->accessibleName() : QString();
    }
};

} // namespace tavrin::testing
