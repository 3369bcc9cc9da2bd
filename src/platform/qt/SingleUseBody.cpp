#include "platform/qt/SingleUseBody.h"

#include <algorithm>
#include <utility>

namespace tavrin {

SingleUseBody::SingleUseBody(QByteArray content)
    : m_content(std::move(content))
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 SingleUseBody::bytesAvailable() const
{
    return m_content.size() - m_position + QIODevice::bytesAvailable();
}

bool SingleUseBody::atEnd() const
{
    return bytesAvailable() == 0;
}

qint64 SingleUseBody::readData(char* data, qint64 maxSize)
{
    const qint64 size = std::min<qint64>(maxSize, m_content.size() - m_position);
    if (size == 0)
        return -1; // The end: a sequential device answers 0 while more may come.
    std::copy_n(m_content.constBegin() + m_position, size, data);
    m_position += size;
    return size;
}

qint64 SingleUseBody::writeData(const char*, qint64)
{
    return -1;
}

} // namespace tavrin
