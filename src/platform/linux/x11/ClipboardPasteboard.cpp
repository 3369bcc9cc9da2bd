#include "platform/linux/x11/ClipboardPasteboard.h"

#include "platform/linux/x11/ClipboardServer.h"

#include <QString>

namespace tavrin {

ClipboardPasteboard::ClipboardPasteboard(Seconds pause)
    : m_server(std::make_unique<ClipboardServer>(pause))
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
