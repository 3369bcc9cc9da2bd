#pragma once

#include "app/AccountPanel.h"
#include "app/MainWindow.h"
#include "app/OutputControls.h"

#include <QList>

namespace tavrin::testing {

/// A main window without pages: keeps what it was told.
class FakeMainWindow final : public MainWindow {
public:
    bool visible = false;
    QList<SettingsPage> selectedPages;

    void configureMainWindow() override { }

    void show() override { visible = true; }

    void hide() override { visible = false; }

    [[nodiscard]] bool isVisible() const override { return visible; }

    void refreshShortcuts() override { }

    void selectSettingsPage(SettingsPage page) override { selectedPages.append(page); }
};

/// Two popups without anything to press.
class FakeOutputControls final : public OutputControls {
public:
    qsizetype outputStyleIndex = -1;
    qsizetype translationTargetIndex = -1;

    void setOutputStyleIndex(qsizetype index) override { outputStyleIndex = index; }

    void setTranslationTargetIndex(qsizetype index) override { translationTargetIndex = index; }
};

/// An account page that counts its calls.
class FakeAccountPanel final : public AccountPanel {
public:
    int refreshes = 0;
    int loginDialogs = 0;

    void refreshAccountUI() override { ++refreshes; }

    void showLoginDialog() override { ++loginDialogs; }
};

} // namespace tavrin::testing
