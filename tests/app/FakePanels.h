#pragma once

#include "app/AccountPanel.h"
#include "app/MainWindow.h"

#include <QList>

namespace tavrin::testing {

/// A main window without pages: keeps what it was told.
class FakeMainWindow final : public MainWindow {
public:
    bool visible = false;
    QList<SettingsPage> selectedPages;
    qsizetype outputStyleIndex = -1;
    qsizetype translationTargetIndex = -1;

    void configureMainWindow() override { }

    void show() override { visible = true; }

    void hide() override { visible = false; }

    [[nodiscard]] bool isVisible() const override { return visible; }

    void selectSettingsPage(SettingsPage page) override { selectedPages.append(page); }

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
