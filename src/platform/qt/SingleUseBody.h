#pragma once

#include <QByteArray>
#include <QIODevice>

namespace tavrin {

/// A request's body that can be read once only. QtNetwork sends a request again by itself when its
/// connection breaks before the answer; that it cannot rewind this keeps a request from being
/// carried out twice.
class SingleUseBody final : public QIODevice {
public:
    explicit SingleUseBody(QByteArray content);

    [[nodiscard]] bool isSequential() const override { return true; }

    bool seek(qint64) override { return false; }

    [[nodiscard]] qint64 bytesAvailable() const override;
    [[nodiscard]] bool atEnd() const override;

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 maxSize) override;

private:
    QByteArray m_content;
    qint64 m_position = 0;
};

} // namespace tavrin
