#pragma once

#include "app/session/TracedNeighbours.h"
#include "app/windows/MainWindow.h"
#include "app/windows/UserInterface.h"

/// The program's windows, which note what they are told.
namespace tavrin::testing {

class TracedMainWindow final : public MainWindow {
public:
    explicit TracedMainWindow(Note note)
        : m_note(std::move(note))
    {
    }

    bool visible = false;

    void configureMainWindow() override { m_note(QStringLiteral("configure window")); }

    void show() override
    {
        m_note(QStringLiteral("show window"));
        visible = true;
    }

    void hide() override
    {
        m_note(QStringLiteral("hide window"));
        visible = false;
    }

    [[nodiscard]] bool isVisible() const override { return visible; }

    void refreshShortcuts() override { m_note(QStringLiteral("refresh shortcuts")); }

    void selectSettingsPage(SettingsPage page) override
    {
        m_note(QStringLiteral("select page %1").arg(static_cast<int>(page)));
    }

private:
    Note m_note;
};

class TracedInterface final : public UserInterface {
public:
    explicit TracedInterface(const Note& note)
        : m_note(note)
        , m_hud(note)
        , m_mainWindow(note)
        , m_accountPanel(note)
        , m_healthPanel(note)
    {
    }

    bool hasIcon = true;

    bool loadApplicationIcon() override
    {
        m_note(QStringLiteral("load icon"));
        return hasIcon;
    }

    [[nodiscard]] RecordingHUD& hud() override { return m_hud; }

    [[nodiscard]] TracedMainWindow& mainWindow() override { return m_mainWindow; }

    [[nodiscard]] AccountPanel& accountPanel() override { return m_accountPanel; }

    [[nodiscard]] HealthPanel& healthPanel() override { return m_healthPanel; }

    void showHistoryWindow() override { m_note(QStringLiteral("show history")); }

    void showPersonalizationWindow() override { m_note(QStringLiteral("show personalization")); }

private:
    Note m_note;
    TracedHUD m_hud;
    TracedMainWindow m_mainWindow;
    TracedAccountPanel m_accountPanel;
    TracedHealthPanel m_healthPanel;
};

} // namespace tavrin::testing
