#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "platform/linux/speech/onnx/OnnxBytes.h"
#include "platform/linux/speech/onnx/OnnxMetadata.h"

#include <QBuffer>

// Any bytes as an ONNX file.

namespace tavrin::fuzz {
namespace {

OnnxResult<OnnxMetadata> read(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return readOnnxMetadata(buffer, QStringLiteral("any.onnx"));
}

void check(const QByteArray& content)
{
    const auto metadata = read(content);
    const QByteArray key = "what no file of the corpus has";
    if (!metadata) {
        require(metadata.error().fault == OnnxFault::Malformed, "only the bytes are to blame");
        return;
    }
    qsizetype bytes = 0;
    for (auto each = metadata->properties.begin(); each != metadata->properties.end(); ++each)
        bytes += each.key().size() + each.value().size();
    for (const QString& input : metadata->inputs)
        bytes += input.toUtf8().size() / 3; // What is no UTF-8 grows when it is read.
    require(bytes <= content.size(), "nothing is there twice");
    if (metadata->properties.contains(key) || metadata->properties.size() >= 1000)
        return;
    const auto longer = read(content + testing::property(key, "1"));
    require(longer.has_value(), "a property more does no harm");
    require(longer->properties.value(key) == "1", "a property is found wherever it stands");
    require(longer->inputs == metadata->inputs, "it is no input");
}

} // namespace
} // namespace tavrin::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tavrin::fuzz::check(tavrin::fuzz::Input(data, size).rest());
    return 0;
}
