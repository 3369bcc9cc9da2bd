#include "app/notices/UpdateOffer.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr qsizetype longestVersion = 64;
constexpr qsizetype longestNotes = 2000;
constexpr qsizetype mostLines = 24; // What an alert can show on a small screen.

/// 0, which is no newer build than any, for what is neither an integer nor the text of one.
qint64 buildNumber(const QJsonValue& value)
{
    return value.isString() ? value.toString().trimmed().toLongLong() : value.toInteger(0);
}

bool belongsToDomain(const QString& host, const QString& domain)
{
    return !domain.isEmpty() && (host == domain || host.endsWith(u'.' + domain));
}

std::optional<QUrl> trustedUrl(const QJsonValue& value, const QString& productDomain)
{
    QUrl url(value.toString(), QUrl::StrictMode);
    // A name before the host ("https://our.domain@elsewhere/") serves nothing but deception.
    if (!url.isValid() || url.scheme() != "https"_L1 || !url.userInfo().isEmpty())
        return std::nullopt;
    if (!belongsToDomain(url.host(QUrl::FullyEncoded).toLower(), productDomain.toLower()))
        return std::nullopt;
    return url;
}

/// The first @p length UTF-16 units of @p text, ending in "…" when something is left out.
QString shortened(const QString& text, qsizetype length)
{
    if (text.size() <= length)
        return text;
    QString beginning = text.first(length - 1);
    if (beginning.back().isHighSurrogate())
        beginning.chop(1);
    return beginning + u'…';
}

QString shortenedNotes(const QString& notes)
{
    static const QRegularExpression lineBreak(u"\\R"_s);
    QString beginning = shortened(notes.trimmed(), longestNotes).replace(lineBreak, u"\n"_s);
    const QStringList lines = beginning.split(u'\n');
    if (lines.size() <= mostLines)
        return beginning;
    return lines.first(mostLines - 1).join(u'\n') + u"\n…"_s;
}

} // namespace

std::optional<UpdateOffer> updateOffer(
    const QJsonObject& record, qint64 currentBuild, const QString& productDomain)
{
    if (buildNumber(record.value("build"_L1)) <= currentBuild)
        return std::nullopt;
    const std::optional<QUrl> url = trustedUrl(record.value("downloadUrl"_L1), productDomain);
    if (!url)
        return std::nullopt;
    return UpdateOffer{
        .downloadUrl = *url,
        .version = shortened(record.value("version"_L1).toString().simplified(), longestVersion),
        .notes = shortenedNotes(record.value("notes"_L1).toString()),
    };
}

} // namespace tavrin
