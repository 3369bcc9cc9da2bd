#pragma once

#include "app/FakePanels.h"
#include "app/session/TracedNeighbours.h"
#include "app/windows/UserInterface.h"

namespace tavrin::testing {

/// The program's windows, which note what they are told.
class TracedInterface final : public UserInterface {
public:
    explicit TracedInterface(const Note& note)
        : m_note(note)
        , m_hud(note)
        , m_mainWindow(note)
        , m_accountPanel(note)
    {
    }

    bool hasIcon = true;

    bool loadApplicationIcon() override
    {
        m_note(QStringLiteral("load icon"));
        return hasIcon;
    }

    [[nodiscard]] RecordingHUD& hud() override { return m_hud; }

    [[nodiscard]] FakeMainWindow& mainWindow() override { return m_mainWindow; }

    [[nodiscard]] AccountPanel& accountPanel() override { return m_accountPanel; }

    void showHistoryWindow() override { m_note(QStringLiteral("show history")); }

    void showPersonalizationWindow() override { m_note(QStringLiteral("show personalization")); }

    void refreshHealthStatus() override { m_note(QStringLiteral("refresh health")); }

    void refreshDictionaryView() override { m_note(QStringLiteral("refresh dictionary")); }

private:
    Note m_note;
    TracedHUD m_hud;
    FakeMainWindow m_mainWindow;
    FakeAccountPanel m_accountPanel;
};

} // namespace tavrin::testing
