#pragma once

#include "platform/linux/speech/onnx/BpeVocabulary.h"
#include "platform/linux/speech/onnx/OnnxModel.h"
#include "platform/linux/speech/onnx/OnnxTokens.h"

#include <QStringList>

#include <optional>

namespace tavrin {

/// Chooses which terms a model can favour. The library neither says so of a term that holds a token
/// it does not know (it favours the rest of it, and prints the term) nor keeps apart a term and its
/// own syntax.
class OnnxHotwords {
public:
    /// Of a model that can favour terms.
    [[nodiscard]] static OnnxResult<OnnxHotwords> of(const OnnxModel& model);

    /// The usable ones of @p terms, the first hundred at most, as the library takes them; empty
    /// when there is none. Latin letters become capitals or small letters where the model knows
    /// only those.
    [[nodiscard]] QByteArray from(const QStringList& terms) const;

private:
    explicit OnnxHotwords(OnnxTokens tokens)
        : m_tokens(std::move(tokens))
    {
    }

    [[nodiscard]] QString asSpelled(const QString& term) const;
    [[nodiscard]] bool isKnown(const QString& term) const;
    [[nodiscard]] bool isKnownCharacters(const QString& word) const;
    [[nodiscard]] bool isKnownPieces(const QString& word) const;

    OnnxTokens m_tokens;
    std::optional<BpeVocabulary> m_pieces;
    bool m_cutsCharacters = false; ///< Han characters and the like are tokens of their own.
};

} // namespace tavrin
