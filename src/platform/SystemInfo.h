#pragma once

#include <QString>

namespace tavrin {

/// Facts about this machine and this build that do not change while the program runs, and the
/// places of its files. Callable from any thread.
class SystemInfo {
public:
    virtual ~SystemInfo() = default;

    /// The computer's name for people; empty when it has none.
    [[nodiscard]] virtual QString localizedHostName() const = 0;

    /// `CFBundleShortVersionString`: "0.8.0". Empty when unknown.
    [[nodiscard]] virtual QString bundleShortVersion() const = 0;

    /// `CFBundleVersion`, the build number as text.
    [[nodiscard]] virtual QString bundleVersion() const = 0;

    /// Where the recordings lie, without a final slash. Linux: TMPDIR, else /tmp.
    [[nodiscard]] virtual QString temporaryDirectory() const = 0;

    /// The user's folder for program data; Tavrin keeps its own in the subfolder "Tavrin". Linux:
    /// XDG_DATA_HOME, else ~/.local/share.
    [[nodiscard]] virtual QString applicationSupportDirectory() const = 0;

    /// The variable of the process environment; empty when unset.
    [[nodiscard]] virtual QString environmentVariable(const QString& name) const = 0;

    /// The language that speech is really recognised in, as a BCP 47 tag ("zh-CN"); empty when no
    /// recogniser is there.
    [[nodiscard]] virtual QString speechLanguage() const = 0;
};

} // namespace tavrin
