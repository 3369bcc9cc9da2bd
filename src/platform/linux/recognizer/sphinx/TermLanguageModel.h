#pragma once

#include <QByteArray>
#include <QStringList>

namespace tavrin {

/// A unigram language model in which every one of some words is equally likely, as an ARPA file in
/// memory: the user's terms never reach a disk. The file lives as long as this.
class TermLanguageModel {
public:
    explicit TermLanguageModel(const QStringList& words);
    ~TermLanguageModel();

    TermLanguageModel(const TermLanguageModel&) = delete;
    TermLanguageModel& operator=(const TermLanguageModel&) = delete;

    /// Readable by this process only.
    [[nodiscard]] QByteArray path() const;

private:
    int m_file;
};

/// The text of such a file. The words are sorted, as the format demands.
[[nodiscard]] QByteArray termLanguageModelText(QStringList words);

} // namespace tavrin
