#pragma once

#include "app/windows/AccountPanel.h"
#include "app/windows/MainWindow.h"
#include "app/windows/View.h"

#include <QList>

#include <optional>

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

/// Keeps what it was told to show.
template <typename Content>
class FakeView final : public View<Content> {
public:
    std::optional<Content> shown;

    void setContent(const Content& content) override { shown = content; }
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
