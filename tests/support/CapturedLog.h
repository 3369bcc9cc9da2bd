#pragma once

#include <QLoggingCategory>
#include <QStringList>

namespace tavrin::testing {

/// Keeps what the program logs, of every level, instead of printing it. One at a time.
class CapturedLog {
public:
    CapturedLog()
        : m_printing(qInstallMessageHandler(keep))
    {
        lines().clear();
        QLoggingCategory::setFilterRules(QStringLiteral("tavrin.*=true"));
    }

    ~CapturedLog()
    {
        QLoggingCategory::setFilterRules(QString());
        qInstallMessageHandler(m_printing);
    }

    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    static QStringList& lines()
    {
        static QStringList lines;
        return lines;
    }

private:
    static void keep(
        QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& message)
    {
        lines().append(message);
    }

    QtMessageHandler m_printing;
};

} // namespace tavrin::testing
