#pragma once

#include "ui/controls/Label.h"
#include "ui/style/BrandStyle.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <gtest/gtest.h>

namespace tavrin::testing {

/// A window of the size of the main one, on no screen, for one page in it.
class PageWindow : public QWidget {
public:
    PageWindow()
    {
        resize(820, 640);
        brand::applyBrandControlStylesInView(*this);
    }

    /// Shows it as the window that has the keyboard.
    void open()
    {
        show();
        activateWindow();
        QApplication::processEvents();
    }

    /// Presses @p key where the keyboard is.
    static void press(int key, const QString& text = {})
    {
        QWidget* const target = QApplication::focusWidget();
        ASSERT_NE(target, nullptr);
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(target, &down);
        QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, text);
        QApplication::sendEvent(target, &up);
    }

    /// Where @p widget stands, in points from the bottom left of @p page.
    static QRect frameIn(const QWidget& page, const QWidget& widget)
    {
        const QPoint topLeft = widget.mapTo(&page, QPoint());
        return {topLeft.x(), page.height() - topLeft.y() - widget.height(), widget.width(),
            widget.height()};
    }

    /// The part of @p page with this name, if it is shown.
    template <class Part>
    static Part* find(const QWidget& page, const char* name)
    {
        auto* const part = page.findChild<Part*>(QLatin1StringView(name));
        return part && part->isVisibleTo(&page) ? part : nullptr;
    }

    /// The button whose title is @p title, if it is shown.
    static QPushButton* button(const QWidget& page, const QString& title)
    {
        for (QPushButton* const each : page.findChildren<QPushButton*>()) {
            if (each->text() == title && each->isVisibleTo(&page))
                return each;
        }
        return nullptr;
    }

    static QStringList labels(const QWidget& page)
    {
        QStringList texts;
        for (const QLabel* const each : page.findChildren<QLabel*>()) {
            if (each->isVisibleTo(&page))
                texts.append(each->text());
        }
        return texts;
    }

    /// Fails for each text that is cut off: its tool tip then shows the whole.
    static void expectEverythingFits(const QWidget& page)
    {
        for (const ui::Label* const each : page.findChildren<ui::Label*>()) {
            if (each->isVisibleTo(&page)) {
                EXPECT_EQ(each->toolTip(), QString()) << each->fullText().toStdString();
            }
        }
        for (const QPushButton* const each : page.findChildren<QPushButton*>()) {
            const QFontMetricsF smallest(brand::systemFont(12, QFont::Medium));
            EXPECT_LE(smallest.horizontalAdvance(each->text()), each->width() - 2)
                << each->text().toStdString();
        }
    }
};

} // namespace tavrin::testing
