#include "platform/linux/speech/onnx/OnnxSheet.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr int highestNumber = 10'000'000; // What the library multiplies must not overflow.

bool isNumber(const QByteArray& text)
{
    bool isInteger = false;
    const int number = text.trimmed().toInt(&isInteger);
    return isInteger && number >= 0 && number <= highestNumber;
}

bool isReal(const QByteArray& text)
{
    bool isNumeric = false;
    const double number = text.trimmed().toDouble(&isNumeric);
    return isNumeric && std::isfinite(number);
}

bool isMet(OnnxRequirement::Value kind, const QByteArray& value)
{
    switch (kind) {
    case OnnxRequirement::Value::Number:
        return isNumber(value);
    case OnnxRequirement::Value::Positive:
        return isNumber(value) && value.trimmed().toInt() > 0;
    case OnnxRequirement::Value::Numbers:
        return std::ranges::all_of(value.split(','), isNumber);
    case OnnxRequirement::Value::Reals:
        return std::ranges::all_of(value.split(','), isReal);
    case OnnxRequirement::Value::Words:
        return !value.isEmpty();
    }
    return false;
}

OnnxProblem keyProblem(OnnxFault fault, const QString& name, const char* key)
{
    return {fault, u"%1: %2"_s.arg(name, QLatin1StringView(key))};
}

} // namespace

OnnxSheet::OnnxSheet(QString name, OnnxMetadata metadata)
    : m_name(std::move(name))
    , m_metadata(std::move(metadata))
{
}

OnnxResult<OnnxSheet> OnnxSheet::read(const QString& path)
{
    OnnxResult<OnnxMetadata> metadata = readOnnxMetadata(path);
    if (!metadata)
        return tl::unexpected(metadata.error());
    return OnnxSheet(QFileInfo(path).fileName(), *std::move(metadata));
}

OnnxResult<void> OnnxSheet::check(std::span<const OnnxRequirement> requirements) const
{
    for (const OnnxRequirement& requirement : requirements) {
        const QByteArray text = value(requirement.key);
        if (text.isEmpty())
            return tl::unexpected(keyProblem(OnnxFault::KeyMissing, m_name, requirement.key));
        if (!isMet(requirement.value, text))
            return unusable(requirement.key);
    }
    return {};
}

OnnxResult<void> OnnxSheet::checkCount(const char* key, qsizetype expected) const
{
    if (count(key) != expected)
        return unusable(key);
    return {};
}

tl::unexpected<OnnxProblem> OnnxSheet::unusable(const char* key) const
{
    return tl::unexpected(keyProblem(OnnxFault::KeyUnusable, m_name, key));
}

tl::unexpected<OnnxProblem> OnnxSheet::unknownKind() const
{
    const QString type = QString::fromUtf8(value("model_type"));
    return onnxFailure(
        OnnxFault::UnknownKind, type.isEmpty() ? m_name : u"%1 (%2)"_s.arg(m_name, type));
}

} // namespace tavrin
