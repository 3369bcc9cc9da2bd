#pragma once

#include <QByteArray>
#include <QList>

#include <utility>

/// ONNX files made by hand, field by field.
namespace tavrin::testing {

inline QByteArray varint(quint64 value)
{
    QByteArray bytes;
    while (value >= 0x80) {
        bytes.append(static_cast<char>(0x80 | (value & 0x7f)));
        value >>= 7;
    }
    bytes.append(static_cast<char>(value));
    return bytes;
}

/// A field of bytes: a text, a message.
inline QByteArray field(quint32 number, const QByteArray& content)
{
    return varint(number << 3 | 2) + varint(static_cast<quint64>(content.size())) + content;
}

inline QByteArray numberField(quint32 number, quint64 value)
{
    return varint(number << 3) + varint(value);
}

inline QByteArray property(const QByteArray& key, const QByteArray& value)
{
    return field(14, field(1, key) + field(2, value));
}

using Properties = QList<std::pair<QByteArray, QByteArray>>;

struct OnnxParts {
    Properties properties{};
    QList<QByteArray> inputs{"x", "x_lens"};
    int outputs = 2;
};

/// A file with a graph of one node and some weights.
inline QByteArray onnxFile(const OnnxParts& parts)
{
    QByteArray graph = field(1, field(4, "MatMul")) + field(2, "g");
    graph += field(5, numberField(1, 3) + field(9, QByteArray(1000, 'w')));
    for (const QByteArray& input : parts.inputs)
        graph += field(11, field(1, input) + field(2, "type"));
    for (int i = 0; i < parts.outputs; ++i)
        graph += field(12, field(1, "out"));
    QByteArray file = numberField(1, 8) + field(2, "by-hand") + field(7, graph);
    for (const auto& [key, value] : parts.properties)
        file += property(key, value);
    return file;
}

} // namespace tavrin::testing
