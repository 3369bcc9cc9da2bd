#include "platform/linux/speech/servers/WavFile.h"

#include "platform/linux/speech/engine/SpeechEngine.h"

#include <QDataStream>
#include <QIODevice>

namespace tavrin {

QByteArray wavFile(std::span<const qint16> samples)
{
    constexpr quint32 formatSize = 16;
    constexpr quint16 pcm = 1;
    constexpr quint16 channels = 1;
    constexpr quint16 bytesPerSample = 2;
    const auto dataSize = static_cast<quint32>(samples.size_bytes());

    QByteArray file;
    file.reserve(static_cast<qsizetype>(dataSize) + 44);
    QDataStream stream(&file, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData("RIFF", 4);
    stream << quint32{4 + 8 + formatSize + 8 + dataSize};
    stream.writeRawData("WAVEfmt ", 8);
    stream << formatSize << pcm << channels << quint32{speechSampleRate}
           << quint32{speechSampleRate * bytesPerSample} << bytesPerSample
           << quint16{bytesPerSample * 8};
    stream.writeRawData("data", 4);
    stream << dataSize;
    for (const qint16 sample : samples)
        stream << sample;
    return file;
}

} // namespace tavrin
