#include "platform/linux/speech/onnx/OnnxMetadata.h"

#include "platform/linux/speech/onnx/ProtobufReader.h"
#include "platform/linux/speech/onnx/RegularFile.h"

#include <QFile>
#include <QFileInfo>

namespace tavrin {
namespace {

// Numbers of fields, as ONNX gives them: of the model, of its graph, of a property, of an input.
enum ModelField : quint32 { Producer = 2, Graph = 7, Property = 14 };

enum GraphField : quint32 { Input = 11, Output = 12 };

enum PropertyField : quint32 { Key = 1, Value = 2 };

constexpr quint32 inputName = 1;

// Far beyond what models have: large ones have ten thousand fields in the graph.
constexpr int mostModelFields = 10'000;
constexpr int mostGraphFields = 1'000'000;
constexpr int mostInnerFields = 1'000;
constexpr int mostProperties = 1'000;
constexpr int mostInputs = 10'000;
constexpr qint64 longestKey = 256;
constexpr qint64 longestValue = 64LL * 1024;

/// Calls @p use with every field of the message; false when it is malformed or has more than
/// @p most fields, or @p use says so.
template <class Use>
bool forEachField(ProtobufReader reader, int most, Use use)
{
    while (const auto field = reader.next()) {
        if (--most < 0 || !use(reader, *field))
            return false;
    }
    return !reader.isMalformed();
}

class MetadataReader {
public:
    explicit MetadataReader(QIODevice& device)
        : m_device(device)
    {
    }

    [[nodiscard]] bool read()
    {
        const ProtobufReader model(m_device, 0, m_device.size());
        return forEachField(model, mostModelFields,
                   [this](const ProtobufReader& reader, const ProtobufField& field) {
                       return readModelField(reader, field);
                   })
            && m_hasGraph;
    }

    [[nodiscard]] OnnxMetadata result() const { return m_result; }

private:
    [[nodiscard]] bool readModelField(const ProtobufReader& reader, const ProtobufField& field)
    {
        if (field.number == Producer)
            m_result.producer = QString::fromUtf8(reader.content(field, longestKey));
        else if (field.number == Graph)
            return field.hasContent && readGraph(field);
        else if (field.number == Property)
            return field.hasContent && readProperty(field);
        return true;
    }

    [[nodiscard]] bool readGraph(const ProtobufField& graph)
    {
        m_hasGraph = true;
        return forEachField({m_device, graph.begin, graph.size}, mostGraphFields,
            [this](const ProtobufReader& /*reader*/, const ProtobufField& field) {
                if (field.number == Output)
                    ++m_result.outputs;
                return field.number != Input || (field.hasContent && readInput(field));
            });
    }

    [[nodiscard]] bool readInput(const ProtobufField& input)
    {
        QString name;
        const bool isWhole = forEachField({m_device, input.begin, input.size}, mostInnerFields,
            [&](const ProtobufReader& reader, const ProtobufField& field) {
                if (field.number == inputName)
                    name = QString::fromUtf8(reader.content(field, longestKey));
                return true;
            });
        m_result.inputs.append(name);
        return isWhole && m_result.inputs.size() <= mostInputs;
    }

    [[nodiscard]] bool readProperty(const ProtobufField& property)
    {
        QByteArray key;
        QByteArray value;
        const bool isWhole = forEachField({m_device, property.begin, property.size},
            mostInnerFields, [&](const ProtobufReader& reader, const ProtobufField& field) {
                if (field.number == Key)
                    key = reader.content(field, longestKey);
                else if (field.number == Value)
                    value = reader.content(field, longestValue);
                return true;
            });
        if (!key.isEmpty())
            m_result.properties.insert(key, value);
        return isWhole && m_result.properties.size() <= mostProperties;
    }

    QIODevice& m_device;
    OnnxMetadata m_result;
    bool m_hasGraph = false;
};

} // namespace

OnnxResult<OnnxMetadata> readOnnxMetadata(const QString& path)
{
    QFile file;
    if (!openRegularFile(path, file))
        return onnxFailure(OnnxFault::Unreadable, path);
    return readOnnxMetadata(file, QFileInfo(path).fileName());
}

OnnxResult<OnnxMetadata> readOnnxMetadata(QIODevice& device, const QString& name)
{
    MetadataReader reader(device);
    if (!reader.read())
        return onnxFailure(OnnxFault::Malformed, name);
    return reader.result();
}

} // namespace tavrin
