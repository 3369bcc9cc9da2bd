#pragma once

#include "app/settings/Localization.h"
#include "platform/linux/LinuxKeyNames.h"
#include "platform/linux/LinuxTexts.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"
#include "support/ports/VirtualTime.h"
#include "ui/style/BrandStyle.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QWidget>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace tavrin::testing {

/// What every page stands on, and a window of the size of the main one. In English until a test
/// says otherwise.
class PageFixture : public ::testing::Test {
protected:
    PageFixture()
    {
        preferences.setValue(keys::interfaceLanguage, QStringLiteral("en"));
        window.resize(820, 640);
        brand::applyBrandControlStylesInView(window);
    }

    /// Shows the window with the keyboard in it.
    void show()
    {
        window.show();
        window.activateWindow();
        QApplication::processEvents();
        ASSERT_TRUE(window.isActiveWindow());
    }

    /// The control of this name, which must be there.
    template <class Control = QWidget>
    [[nodiscard]] Control& named(const QString& name) const
    {
        auto* const found = window.findChild<Control*>(name);
        if (!found)
            throw std::runtime_error("no control " + name.toStdString());
        return *found;
    }

    /// Presses and releases a key where the keyboard is: in an open list, or else in a control.
    static void press(int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = {})
    {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QWidget* receiver = QApplication::focusWidget();
            if (QWidget* const list = QApplication::activePopupWidget())
                receiver = list->focusWidget() ? list->focusWidget() : list;
            ASSERT_NE(receiver, nullptr);
            QKeyEvent event(type, key, modifiers, text);
            QApplication::sendEvent(receiver, &event);
        }
    }

    /// Opens the list of @p popup, goes @p rows down (or up) in it, and takes what is there.
    static void chooseByKeyboard(QComboBox& popup, int rows)
    {
        popup.setFocus();
        press(Qt::Key_Down);
        ASSERT_TRUE(popup.view()->isVisible());
        for (int i = 0; i < std::abs(rows); ++i)
            press(rows > 0 ? Qt::Key_Down : Qt::Key_Up);
        press(Qt::Key_Return);
    }

    static void type(const QString& text)
    {
        for (const QChar character : text)
            press(0, character);
    }

    /// The place of @p control from the bottom left of @p container, in its points.
    [[nodiscard]] static QRect frameIn(const QWidget& control, const QWidget& container)
    {
        const QPoint topLeft = control.mapTo(&container, QPoint());
        return {topLeft.x(), container.height() - topLeft.y() - control.height(), control.width(),
            control.height()};
    }

    /// The texts of the labels that can be seen, from top to bottom.
    [[nodiscard]] QStringList labels() const
    {
        QList<QLabel*> found = window.findChildren<QLabel*>();
        found.removeIf([](const QLabel* label) { return !label->isVisible(); });
        std::ranges::stable_sort(found, {}, [this](const QLabel* label) {
            const QPoint place = label->mapTo(&window, QPoint());
            return std::pair(place.y(), place.x());
        });
        QStringList texts;
        for (const QLabel* const label : found)
            texts.append(label->text());
        return texts;
    }

    /// Everything that the keyboard reaches from @p first on by the Tab key, until it comes back.
    [[nodiscard]] static QStringList tabOrder(QWidget& first)
    {
        constexpr qsizetype most = 100;
        first.setFocus(Qt::TabFocusReason);
        QStringList names;
        do {
            names.append(QApplication::focusWidget()->accessibleName());
            press(Qt::Key_Tab);
        } while (QApplication::focusWidget() != &first && names.size() < most);
        return names;
    }

    InMemoryPreferences preferences;
    InMemoryWorkspace workspace;
    VirtualTime time;
    ScriptedAlerts alerts;
    Localization localization{preferences, workspace, linuxKeyNames(), linuxTexts()};
    QWidget window;
};

} // namespace tavrin::testing
