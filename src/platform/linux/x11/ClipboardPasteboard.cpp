#include "platform/linux/x11/ClipboardPasteboard.h"

#include "platform/linux/x11/ClipboardServer.h"

#include <QString>

namespace tavrin {

ClipboardPasteboard::ClipboardPasteboard()
    : m_server(std::make_unique<ClipboardServer>())
{
}

ClipboardPasteboard::~ClipboardPasteboard() = default;

bool ClipboardPasteboard::setString(const QString& text)
{
    QString plain = text;
    plain.remove(QChar(u'\0'));
    return m_server->offer(plain);
}

} // namespace tavrin
