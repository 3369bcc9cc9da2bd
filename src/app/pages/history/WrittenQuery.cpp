#include "app/pages/history/WrittenQuery.h"

#include <QStringView>

#include <algorithm>

namespace tavrin {
namespace {

using Byte = unsigned char;

struct CaseForm {
    char32_t folded;
    char32_t form;
};

/// Every character that is taken for another one when case is ignored, in the order of the others.
const std::vector<CaseForm>& caseForms()
{
    static const std::vector<CaseForm> forms = [] {
        constexpr char32_t end = 0x20000; // No script with letter case lies beyond.
        std::vector<CaseForm> found;
        for (char32_t form = 0; form < end; ++form) {
            const char32_t folded = QChar::toCaseFolded(form);
            if (folded != form)
                found.push_back({folded, form});
        }
        std::ranges::stable_sort(found, {}, &CaseForm::folded);
        return found;
    }();
    return forms;
}

QByteArray written(char32_t character)
{
    return QString::fromUcs4(&character, 1).toUtf8();
}

/// Whether the character stands in a file as it is, or as a numbered escape, and is read as such.
bool isPlain(QChar unit)
{
    return unit >= u' ' && unit != u'"' && unit != u'\\' && unit != u'/' && !unit.isSurrogate()
        && unit != QChar::ReplacementCharacter && unit != QChar::ByteOrderMark;
}

bool hasNumberedEscape(QByteArrayView text)
{
    qsizetype at = text.indexOf('\\');
    while (at >= 0 && at + 1 < text.size() && text[at + 1] != 'u')
        at = text.indexOf('\\', at + 2);
    return at >= 0;
}

/// The byte at @p place is the letter of an escape: that of "\n" is no n.
bool isEscaped(QByteArrayView text, qsizetype place)
{
    qsizetype begin = place;
    while (begin > 0 && text[begin - 1] == '\\')
        --begin;
    return (place - begin) % 2 != 0;
}

} // namespace

std::shared_ptr<const WrittenQuery> WrittenQuery::of(const QString& query)
{
    return std::ranges::all_of(query, isPlain) ? std::make_shared<const WrittenQuery>(query)
                                               : nullptr;
}

WrittenQuery::WrittenQuery(const QString& query)
{
    for (const QChar letter : query)
        addLetter(letter.unicode());
    m_steps.fill(m_length);
    qsizetype left = m_length;
    for (const Forms& forms : m_letters) {
        for (qsizetype i = 0; i < forms.front().size(); ++i) {
            --left;
            for (const QByteArray& form : forms) {
                const auto byte = static_cast<Byte>(form[i]);
                if (left == 0)
                    m_isLast.at(byte) = true;
                else
                    m_steps.at(byte) = left;
            }
        }
    }
}

void WrittenQuery::addLetter(char32_t letter)
{
    const char32_t folded = QChar::toCaseFolded(letter);
    Forms forms{written(folded)};
    const qsizetype length = forms.front().size();
    const std::vector<CaseForm>& all = caseForms();
    for (auto other = std::ranges::lower_bound(all, folded, {}, &CaseForm::folded);
         other != all.end() && other->folded == folded; ++other) {
        const QByteArray form = written(other->form);
        if (form.size() == length)
            forms.append(form);
        else if (!m_rareForms.contains(form))
            m_rareForms.append(form);
    }
    m_length += length;
    m_letters.push_back(forms);
}

std::optional<bool> WrittenQuery::isIn(QByteArrayView text) const
{
    if (hasNumberedEscape(text))
        return std::nullopt;
    if (stands(text))
        return true;
    return hasRareForm(text) ? std::nullopt : std::optional(false);
}

bool WrittenQuery::stands(QByteArrayView text) const
{
    const qsizetype last = m_length - 1;
    qsizetype end = last; // Where the query's last byte would stand.
    while (end < text.size()) {
        const auto byte = static_cast<Byte>(text[end]);
        if (m_isLast.at(byte) && endsAt(text, end) && !isEscaped(text, end - last))
            return true;
        end += m_steps.at(byte);
    }
    return false;
}

bool WrittenQuery::endsAt(QByteArrayView text, qsizetype end) const
{
    QByteArrayView rest = text.sliced(end + 1 - m_length);
    for (const Forms& forms : m_letters) {
        if (std::ranges::none_of(
                forms, [&](const QByteArray& form) { return rest.startsWith(form); }))
            return false;
        rest = rest.sliced(forms.front().size());
    }
    return true;
}

/// The first byte alone is found sooner.
bool WrittenQuery::hasRareForm(QByteArrayView text) const
{
    return std::ranges::any_of(m_rareForms,
        [&](const QByteArray& form) { return text.contains(form.front()) && text.contains(form); });
}

} // namespace tavrin
