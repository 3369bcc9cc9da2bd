#pragma once

#include <QString>
#include <QVariantMap>

namespace tavrin {

/// Describes the application that the text is for; sent with a request and kept with its record.
struct ApplicationContext {
    QString name; ///< As shown to the user; "未知应用" when unknown.
    QString bundleId; ///< Lower case; empty when unknown.
    QString windowHint; ///< The web application that the window's title names; empty for none.
    QString focusedRole; ///< What kind of control has the focus ("AXTextArea"); empty when unknown.

    /// The four entries under their names on the wire and in the history file.
    [[nodiscard]] QVariantMap toVariantMap() const;

    friend bool operator==(const ApplicationContext&, const ApplicationContext&) = default;
};

/// The first web application, in the order of a fixed list, that occurs in @p windowTitle in any
/// letter case, also inside a word; empty when none does.
[[nodiscard]] QString windowHintForTitle(const QString& windowTitle);

} // namespace tavrin
