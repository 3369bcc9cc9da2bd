#pragma once

#include <QByteArrayList>
#include <QByteArrayView>
#include <QString>

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace tavrin {

/// A text that is looked for, whatever its case, in the bytes of a file's JSON strings, without
/// making texts of them first. Immutable.
class WrittenQuery {
public:
    /// Null for a query that the bytes of no string tell anything about.
    /// @param query not empty.
    [[nodiscard]] static std::shared_ptr<const WrittenQuery> of(const QString& query);

    /// Use of().
    explicit WrittenQuery(const QString& query);

    /// Whether the text that has @p text between its quotation marks holds the query. Nothing where
    /// the bytes do not tell: an escape may stand for any character, and some letters have forms of
    /// another length.
    [[nodiscard]] std::optional<bool> isIn(QByteArrayView text) const;

private:
    /// The ways to write one character, of one length.
    using Forms = QByteArrayList;

    void addLetter(char32_t letter);
    [[nodiscard]] bool stands(QByteArrayView text) const;
    [[nodiscard]] bool endsAt(QByteArrayView text, qsizetype end) const;
    [[nodiscard]] bool hasRareForm(QByteArrayView text) const;

    std::vector<Forms> m_letters;
    qsizetype m_length = 0; // In bytes.
    std::array<bool, 256> m_isLast{}; // Of bytes: whether the query may end with it.
    std::array<qsizetype, 256> m_steps{}; // By how much to go on after a byte.
    QByteArrayList m_rareForms; // Those of another length.
};

} // namespace tavrin
