#pragma once

#include <QList>
#include <QString>

#include <utility>

namespace tavrin {

/// How the keys that interface texts name are called on the keyboards of this desktop. The texts,
/// and whatever is stored, use the names of macOS ("Right Option", "⌘V"); they are exchanged when a
/// text is shown, and only there. A default-constructed value leaves every text as it is.
class KeyNames {
public:
    using Replacement = std::pair<QString, QString>;

    KeyNames() = default;

    /// @param replacements are made one after another, each everywhere in the text.
    explicit KeyNames(QList<Replacement> replacements)
        : m_replacements(std::move(replacements))
    {
    }

    /// @p text with the names that the user finds on the keys.
    [[nodiscard]] QString shown(QString text) const
    {
        for (const auto& [name, replacement] : m_replacements)
            text.replace(name, replacement);
        return text;
    }

private:
    QList<Replacement> m_replacements;
};

} // namespace tavrin
