#pragma once

#include <QString>
#include <QUrl>

#include <optional>

class QJsonObject;

namespace tavrin {

/// A newer version that may be offered to the user.
struct UpdateOffer {
    QUrl downloadUrl; ///< On the product's own domain, over HTTPS.
    QString version; ///< One line of at most 64 UTF-16 units; empty when the record names none.
    QString notes; ///< At most 2000 UTF-16 units in 24 lines; empty when the record has none.

    friend bool operator==(const UpdateOffer&, const UpdateOffer&) = default;
};

/// What @p record, an answer of the update endpoint, offers to a program of build @p currentBuild.
/// Empty when it is no newer build, or when its download does not come from @p productDomain: that
/// host itself or one below it. A record with fields of other types offers nothing; the endpoint
/// may be anyone's by the time it answers, so nothing in it is taken on trust.
[[nodiscard]] std::optional<UpdateOffer> updateOffer(
    const QJsonObject& record, qint64 currentBuild, const QString& productDomain);

} // namespace tavrin
