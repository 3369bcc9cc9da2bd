#pragma once

#include "platform/SystemInfo.h"

namespace tavrin {

/// The facts of a Linux machine: its host name, the XDG folders and this build's version.
class LinuxSystemInfo final : public SystemInfo {
public:
    /// @p speechLanguage is the language of the installed recogniser, as a BCP 47 tag; @p
    /// machineInfo is where the administrator names the machine.
    explicit LinuxSystemInfo(
        QString speechLanguage, QString machineInfo = QStringLiteral("/etc/machine-info"));

    /// The name that the administrator gave for people, else the host name.
    [[nodiscard]] QString localizedHostName() const override;
    [[nodiscard]] QString bundleShortVersion() const override;
    [[nodiscard]] QString bundleVersion() const override;
    [[nodiscard]] QString temporaryDirectory() const override;
    [[nodiscard]] QString applicationSupportDirectory() const override;
    [[nodiscard]] QString environmentVariable(const QString& name) const override;
    [[nodiscard]] QString speechLanguage() const override;

private:
    QString m_speechLanguage;
    QString m_machineInfo;
};

} // namespace tavrin
