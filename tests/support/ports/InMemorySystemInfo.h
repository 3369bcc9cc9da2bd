#pragma once

#include "platform/SystemInfo.h"

#include <QHash>

namespace tavrin::testing {

/// A machine as the test describes it; every fact may be changed at any time.
class InMemorySystemInfo final : public SystemInfo {
public:
    QString hostName = QStringLiteral("Workbench");
    QString shortVersion = QStringLiteral("0.8.0");
    QString version = QStringLiteral("1");
    QString temporaryFolder;
    QString supportFolder;
    QHash<QString, QString> environment;
    QString recognisedLanguage = QStringLiteral("zh-CN");

    [[nodiscard]] QString localizedHostName() const override { return hostName; }

    [[nodiscard]] QString bundleShortVersion() const override { return shortVersion; }

    [[nodiscard]] QString bundleVersion() const override { return version; }

    [[nodiscard]] QString temporaryDirectory() const override { return temporaryFolder; }

    [[nodiscard]] QString applicationSupportDirectory() const override { return supportFolder; }

    [[nodiscard]] QString environmentVariable(const QString& name) const override
    {
        return environment.value(name);
    }

    [[nodiscard]] QString speechLanguage() const override { return recognisedLanguage; }
};

} // namespace tavrin::testing
