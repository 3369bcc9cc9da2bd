#pragma once

#include "platform/programs/Workspace.h"
#include "support/ports/Note.h"

#include <QList>
#include <QUrl>

#include <functional>
#include <utility>

namespace tavrin::testing {

/// A desktop as the test arranges it.
class InMemoryWorkspace final : public Workspace {
public:
    /// @param note is told of "capture target" when the application in front is asked for,
    /// "activate NAME", and "come to front".
    explicit InMemoryWorkspace(Note note = {})
        : m_note(std::move(note))
    {
    }

    std::optional<RunningApplication> frontmost;
    bool activationSucceeds = true;
    bool openingSucceeds = true;
    bool reducedMotion = false;
    bool compositing = true;
    bool everyProgramReached = true;
    std::optional<QPoint> workedAt;
    QStringList languages;
    QList<RunningApplication> running;
    bool hasSettings = true; ///< Else there are none to open.
    QString ownIdentifier = QStringLiteral("tavrin");

    // What was asked of it.
    int warmUps = 0;
    QList<RunningApplication> activations;
    int ownActivations = 0;
    std::function<void()> onOwnActivation;
    QList<QUrl> openedUrls;
    QStringList openedFolders;
    QList<SettingsPane> openedSettings;

    void warmUp() override { ++warmUps; }

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override
    {
        tell(m_note, QStringLiteral("capture target"));
        return frontmost;
    }

    bool activate(const RunningApplication& application) override
    {
        tell(m_note, QStringLiteral("activate ") + application.localizedName);
        activations.append(application);
        if (activationSucceeds)
            frontmost = application;
        return activationSucceeds;
    }

    [[nodiscard]] bool isActive(const RunningApplication& application) const override
    {
        return frontmost && frontmost->processIdentifier == application.processIdentifier;
    }

    void activateThisApplication() override
    {
        tell(m_note, QStringLiteral("come to front"));
        ++ownActivations;
        if (onOwnActivation)
            onOwnActivation();
    }

    [[nodiscard]] QString bundleIdentifier() const override { return ownIdentifier; }

    bool openUrl(const QUrl& url) override
    {
        openedUrls.append(url);
        return openingSucceeds;
    }

    bool openFolder(const QString& path) override
    {
        openedFolders.append(path);
        return openingSucceeds;
    }

    bool openSettings(SettingsPane pane) override
    {
        openedSettings.append(pane);
        return hasSettings;
    }

    [[nodiscard]] QList<RunningApplication> runningApplications() const override { return running; }

    [[nodiscard]] QStringList preferredLanguages() const override { return languages; }

    [[nodiscard]] std::optional<QPoint> frontmostPoint() const override { return workedAt; }

    [[nodiscard]] bool isCompositing() const override { return compositing; }

    [[nodiscard]] bool reachesEveryProgram() const override { return everyProgramReached; }

    [[nodiscard]] bool prefersReducedMotion() const override { return reducedMotion; }

private:
    Note m_note;
};

} // namespace tavrin::testing
