#pragma once

#include "platform/linux/speech/onnx/OnnxMetadata.h"

#include <span>

namespace tavrin {

/// What sherpa-onnx requires of one key of a model's metadata: it ends the program where that is
/// not met.
struct OnnxRequirement {
    enum class Value {
        Number, ///< A whole number, not negative.
        Positive, ///< The same, and not zero.
        Numbers, ///< Such numbers, with commas between them.
        Reals, ///< Real numbers, with commas between them.
        Words, ///< Texts, with commas between them.
    };

    const char* key = nullptr;
    Value value = Value::Number;
};

/// The metadata of one file of a model, to be held against what the library requires.
class OnnxSheet {
public:
    /// @param path of the file.
    [[nodiscard]] static OnnxResult<OnnxSheet> read(const QString& path);

    [[nodiscard]] const OnnxMetadata& metadata() const { return m_metadata; }

    [[nodiscard]] bool has(const char* key) const { return m_metadata.properties.contains(key); }

    [[nodiscard]] QByteArray value(const char* key) const
    {
        return m_metadata.properties.value(key);
    }

    /// Of a key that was checked to be a number.
    [[nodiscard]] int number(const char* key) const { return value(key).trimmed().toInt(); }

    /// The first requirement that is not met is the problem.
    [[nodiscard]] OnnxResult<void> check(std::span<const OnnxRequirement> requirements) const;

    /// Whether the list of @p key has @p count elements: the library does not look, and would read
    /// beyond its end.
    [[nodiscard]] OnnxResult<void> checkCount(const char* key, qsizetype count) const;

    [[nodiscard]] qsizetype count(const char* key) const { return value(key).count(',') + 1; }

    [[nodiscard]] tl::unexpected<OnnxProblem> unusable(const char* key) const;

    /// That the model is of no kind that is supported.
    [[nodiscard]] tl::unexpected<OnnxProblem> unknownKind() const;

private:
    OnnxSheet(QString name, OnnxMetadata metadata);

    QString m_name;
    OnnxMetadata m_metadata;
};

} // namespace tavrin
