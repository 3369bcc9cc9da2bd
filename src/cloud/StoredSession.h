#pragma once

#include <QJsonObject>
#include <QString>

namespace tavrin {

class Preferences;

/// Stores the session that a sign-in, registration or refresh answered with: its `accessToken`,
/// `refreshToken` and `user`.`email` (else @p fallbackEmail), each only when it is there. What is
/// absent leaves the stored value as it is. Flushes to disk.
void SaveCloudSession(
    Preferences& preferences, const QJsonObject& response, const QString& fallbackEmail);

/// Signs out on this machine: removes both tokens and the e-mail address, and flushes to disk.
void clearCloudSession(Preferences& preferences);

/// Whether somebody is signed in on this machine: a token of either kind is stored.
[[nodiscard]] bool hasCloudSession(const Preferences& preferences);

} // namespace tavrin
