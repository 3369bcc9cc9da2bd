#include "platform/linux/desktop/LocaleLanguages.h"

namespace tavrin {
namespace {

QString withoutEncoding(const QString& locale)
{
    const qsizetype dot = locale.indexOf(u'.');
    if (dot < 0)
        return locale;
    const qsizetype modifier = locale.indexOf(u'@', dot);
    return locale.first(dot) + (modifier < 0 ? QString() : locale.sliced(modifier));
}

bool namesNoLanguage(const QString& locale)
{
    return locale.isEmpty() || locale == u"C" || locale == u"POSIX";
}

// The tags of QLocale and ICU leave out what a modifier stands for, and the script of Chinese.
QString script(const QString& language, const QString& territory, const QString& modifier)
{
    if (modifier == u"latin")
        return QStringLiteral("Latn");
    if (modifier == u"cyrillic")
        return QStringLiteral("Cyrl");
    if (language != u"zh")
        return {};
    const bool traditional = territory == u"TW" || territory == u"HK" || territory == u"MO";
    return traditional ? QStringLiteral("Hant") : QStringLiteral("Hans");
}

} // namespace

QStringList preferredLocales(const Environment& environment)
{
    QString locale;
    for (const QString& name :
        {QStringLiteral("LC_ALL"), QStringLiteral("LC_MESSAGES"), QStringLiteral("LANG")}) {
        locale = withoutEncoding(environment(name));
        if (!locale.isEmpty())
            break;
    }
    if (namesNoLanguage(locale))
        return {}; // LANGUAGE does not count then.
    QStringList locales;
    for (const QString& entry : environment(QStringLiteral("LANGUAGE")).split(u':')) {
        const QString listed = withoutEncoding(entry);
        if (!namesNoLanguage(listed))
            locales.append(listed);
    }
    locales.append(locale);
    locales.removeDuplicates();
    return locales;
}

QString languageTag(const QString& locale)
{
    const QString modifier = locale.section(u'@', 1).toLower();
    const QString base = locale.section(u'@', 0, 0);
    const QString language = base.section(u'_', 0, 0).toLower();
    const QString territory = base.section(u'_', 1, 1).toUpper();
    QStringList parts{language, script(language, territory, modifier), territory};
    parts.removeAll(QString());
    return parts.join(u'-');
}

} // namespace tavrin
