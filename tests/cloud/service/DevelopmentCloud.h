#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace tavrin::testing {

/// The development service as a process of its own, on a port of its own. Its accounts outlive a
/// restart and go with this object.
class DevelopmentCloud {
public:
    ~DevelopmentCloud();

    /// Serves until stop(), with further command line @p options.
    void start(const QStringList& options = {});
    void stop();

    [[nodiscard]] QString baseUrl() const;

    /// The code of a new invite.
    [[nodiscard]] QString invite() const;

    void makeAccount(const QString& email, const QString& password) const;

    /// The verification code of the newest mail to @p email.
    [[nodiscard]] QString mailedCode(const QString& email) const;

    [[nodiscard]] QString file(const QString& name) const { return m_data.filePath(name); }

private:
    [[nodiscard]] static QString run(const QStringList& arguments, const QByteArray& input = {});

    QTemporaryDir m_data;
    QProcess m_process;
    int m_port = 0;
};

} // namespace tavrin::testing
