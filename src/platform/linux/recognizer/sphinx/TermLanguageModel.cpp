#include "platform/linux/recognizer/sphinx/TermLanguageModel.h"

#include <algorithm>
#include <cmath>
#include <sys/mman.h>
#include <unistd.h>

namespace tavrin {
namespace {

constexpr double shareOfWords = 0.9; // The rest is the end of the sentence.

QByteArray line(double logProbability, const QByteArray& word)
{
    return QByteArray::number(logProbability, 'f', 4) + ' ' + word + '\n';
}

} // namespace

QByteArray termLanguageModelText(QStringList words)
{
    std::sort(words.begin(), words.end());
    const auto count = static_cast<double>(std::max<qsizetype>(words.size(), 1));
    QByteArray text =
        "\\data\\\nngram 1=" + QByteArray::number(words.size() + 2) + "\n\n\\1-grams:\n";
    text += line(-99, "<s>"); // Never predicted.
    text += line(std::log10(1 - shareOfWords), "</s>");
    for (const QString& word : words)
        text += line(std::log10(shareOfWords / count), word.toUtf8());
    text += "\n\\end\\\n";
    return text;
}

TermLanguageModel::TermLanguageModel(const QStringList& words)
    : m_file(memfd_create("terms", MFD_CLOEXEC))
{
    const QByteArray text = termLanguageModelText(words);
    qsizetype written = 0;
    while (written < text.size()) {
        const ssize_t count = write(
            m_file, text.constData() + written, static_cast<std::size_t>(text.size() - written));
        if (count <= 0)
            break; // The reader refuses a file that breaks off.
        written += count;
    }
}

TermLanguageModel::~TermLanguageModel()
{
    close(m_file);
}

QByteArray TermLanguageModel::path() const
{
    return "/proc/self/fd/" + QByteArray::number(m_file);
}

} // namespace tavrin
