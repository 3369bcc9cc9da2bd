#include "delivery/ApplicationContext.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// In the order in which they are tried: the first match wins.
constexpr std::array<QStringView, 15> webApplicationHints{u"gmail", u"outlook mail", u"proton mail",
    u"google docs", u"google slides", u"chatgpt", u"claude", u"gemini", u"perplexity", u"grok",
    u"slack", u"discord", u"whatsapp", u"telegram", u"notion"};

} // namespace

QVariantMap ApplicationContext::toVariantMap() const
{
    return {{u"name"_s, name}, {u"bundleId"_s, bundleId}, {u"windowHint"_s, windowHint},
        {u"focusedRole"_s, focusedRole}};
}

QString windowHintForTitle(const QString& windowTitle)
{
    const QString title = windowTitle.toLower();
    const auto* const hint = std::ranges::find_if(
        webApplicationHints, [&](QStringView candidate) { return title.contains(candidate); });
    return hint == webApplicationHints.end() ? QString() : hint->toString();
}

} // namespace tavrin
