#pragma once

#include "app/windows/AccountPanel.h"
#include "app/windows/MainWindow.h"
#include "app/windows/View.h"
#include "support/ports/Note.h"

#include <QList>

#include <optional>
#include <utility>

namespace tavrin::testing {

/// A main window without pages: keeps and notes what it was told.
class FakeMainWindow final : public MainWindow {
public:
    explicit FakeMainWindow(Note note = {})
        : m_note(std::move(note))
    {
    }

    bool visible = false;
    QList<SettingsPage> selectedPages;

    void configureMainWindow() override { tell(m_note, QStringLiteral("configure window")); }

    void show() override
    {
        tell(m_note, QStringLiteral("show window"));
        visible = true;
    }

    void hide() override
    {
        tell(m_note, QStringLiteral("hide window"));
        visible = false;
    }

    [[nodiscard]] bool isVisible() const override { return visible; }

    void refreshShortcuts() override { tell(m_note, QStringLiteral("refresh shortcuts")); }

    void selectSettingsPage(SettingsPage page) override
    {
        tell(m_note, QStringLiteral("select page %1").arg(static_cast<int>(page)));
        selectedPages.append(page);
    }

private:
    Note m_note;
};

/// Keeps what it was told to show.
template <typename Content>
class FakeView final : public View<Content> {
public:
    std::optional<Content> shown;

    void setContent(const Content& content) override { shown = content; }
};

/// An account page that counts and notes its calls.
class FakeAccountPanel final : public AccountPanel {
public:
    explicit FakeAccountPanel(Note note = {})
        : m_note(std::move(note))
    {
    }

    int refreshes = 0;
    int loginDialogs = 0;

    void refreshAccountUI() override
    {
        tell(m_note, QStringLiteral("refresh account"));
        ++refreshes;
    }

    void showLoginDialog() override
    {
        tell(m_note, QStringLiteral("show login"));
        ++loginDialogs;
    }

private:
    Note m_note;
};

} // namespace tavrin::testing
