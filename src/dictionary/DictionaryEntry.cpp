#include "dictionary/DictionaryEntry.h"

#include <QUuid>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

const QString idKey = u"id"_s;
const QString termKey = u"term"_s;
const QString sourceKey = u"source"_s;
const QString createdAtKey = u"createdAt"_s;
const QString updatedAtKey = u"updatedAt"_s;
const QString hitCountKey = u"hitCount"_s;
const QString enabledKey = u"enabled"_s;

const QString manualSource = u"manual"_s;
const QString learnedSource = u"auto"_s;

constexpr double largestCount =
    9'007'199'254'740'992; // 2^53: every whole number up to here is exact.

QString stringIn(const QVariantMap& stored, const QString& key)
{
    const QVariant value = stored.value(key);
    return value.typeId() == QMetaType::QString ? value.toString() : QString{};
}

double numberIn(const QVariantMap& stored, const QString& key)
{
    const double number = stored.value(key).toDouble();
    return std::isfinite(number) ? number : 0;
}

DictionaryEntry newEntry(const QString& term, const QString& source, qint64 hitCount, Seconds now)
{
    return DictionaryEntry{{
        {idKey, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()},
        {termKey, term},
        {sourceKey, source},
        {createdAtKey, now.count()},
        {updatedAtKey, now.count()},
        {hitCountKey, hitCount},
        {enabledKey, true},
    }};
}

} // namespace

DictionaryEntry::DictionaryEntry(QVariantMap stored)
    : m_stored(std::move(stored))
{
}

DictionaryEntry DictionaryEntry::manual(const QString& term, Seconds now)
{
    return newEntry(term, manualSource, 0, now);
}

DictionaryEntry DictionaryEntry::learned(const QString& term, Seconds now)
{
    return newEntry(term, learnedSource, 1, now);
}

QString DictionaryEntry::id() const
{
    return stringIn(m_stored, idKey);
}

QString DictionaryEntry::term() const
{
    return stringIn(m_stored, termKey);
}

QString DictionaryEntry::source() const
{
    const QString source = stringIn(m_stored, sourceKey);
    return source.isEmpty() ? manualSource : source;
}

Seconds DictionaryEntry::createdAt() const
{
    return Seconds{numberIn(m_stored, createdAtKey)};
}

Seconds DictionaryEntry::updatedAt() const
{
    return Seconds{numberIn(m_stored, updatedAtKey)};
}

qint64 DictionaryEntry::hitCount() const
{
    return static_cast<qint64>(
        std::clamp(numberIn(m_stored, hitCountKey), -largestCount, largestCount));
}

bool DictionaryEntry::isEnabled() const
{
    const QVariant enabled = m_stored.value(enabledKey);
    return !enabled.canConvert<bool>() || enabled.toBool();
}

bool DictionaryEntry::hasTerm(const QString& text) const
{
    return term().compare(text, Qt::CaseInsensitive) == 0;
}

DictionaryEntry DictionaryEntry::renamed(const QString& term, Seconds now) const
{
    QVariantMap changed = m_stored;
    changed[termKey] = term;
    changed[updatedAtKey] = now.count();
    return DictionaryEntry{changed};
}

DictionaryEntry DictionaryEntry::sighted(Seconds now) const
{
    QVariantMap changed = m_stored;
    changed[hitCountKey] = hitCount() + 1;
    changed[updatedAtKey] = now.count();
    return DictionaryEntry{changed};
}

} // namespace tavrin
