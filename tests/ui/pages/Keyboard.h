#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <gtest/gtest.h>

/// Keys that are pressed where the keyboard is.
namespace tavrin::testing {

inline void pressKey(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {})
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QWidget* const receiver = QApplication::focusWidget();
        ASSERT_NE(receiver, nullptr);
        QKeyEvent event(type, key, modifiers, text);
        QApplication::sendEvent(receiver, &event);
    }
}

inline void typeText(const QString& text)
{
    for (const QChar character : text)
        pressKey(0, {}, character);
}

} // namespace tavrin::testing
