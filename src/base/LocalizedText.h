#pragma once

#include <QString>
#include <QStringView>

#include <string_view>

namespace tavrin {

/// One interface text in its three languages. Placeholders are written %1 to %9.
/// A missing Traditional Chinese or English form falls back to Simplified Chinese.
struct LocalizedText {
    QStringView zhHans;
    QStringView zhHant;
    QStringView en;

    /// Refuses to compile when a translation drops or adds a placeholder.
    explicit consteval LocalizedText(
        std::u16string_view hans, std::u16string_view hant = {}, std::u16string_view english = {})
        : zhHans(hans)
        , zhHant(hant)
        , en(english)
    {
        if ((!hant.empty() && placeholders(hant) != placeholders(hans))
            || (!english.empty() && placeholders(english) != placeholders(hans)))
            throw "placeholders differ between the languages";
    }

private:
    /// The set of placeholders in @p text: bit n stands for %n.
    static consteval unsigned placeholders(std::u16string_view text)
    {
        unsigned found = 0;
        for (std::size_t i = 0; i + 1 < text.size(); ++i) {
            if (text[i] == u'%' && text[i + 1] >= u'1' && text[i + 1] <= u'9')
                found |= 1U << (text[i + 1] - u'0');
        }
        return found;
    }
};

/// A text that is shown in Simplified Chinese in every interface language, on purpose.
struct SimplifiedText {
    QStringView zhHans;

    [[nodiscard]] QString toString() const { return zhHans.toString(); }
};

/// @p text, which may come from outside, or @p fallback in its place when it is empty.
[[nodiscard]] inline QString orElse(const QString& text, const SimplifiedText& fallback)
{
    return text.isEmpty() ? fallback.toString() : text;
}

} // namespace tavrin
