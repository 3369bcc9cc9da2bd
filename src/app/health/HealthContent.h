#pragma once

#include <QList>
#include <QString>
#include <QStringView>

#include <array>

namespace tavrin {

/// The rows of the health page, from top to bottom.
enum class HealthItem { Accessibility, Microphone, Speech, Api, Delivery };

inline constexpr std::array healthItems{HealthItem::Accessibility, HealthItem::Microphone,
    HealthItem::Speech, HealthItem::Api, HealthItem::Delivery};

/// The keys of `healthLabels` and `healthButtons`, in the same order.
inline constexpr std::array<QStringView, healthItems.size()> healthKeys{
    u"accessibility", u"microphone", u"speech", u"api", u"delivery"};

enum class HealthColor {
    Healthy, ///< Blue, sRGB (0.05, 0.34, 0.70).
    SignedIn, ///< Brand purple, sRGB (0.29, 0.19, 0.72).
    Problem, ///< The system's orange.
    Unknown, ///< That of secondary labels.
};

struct HealthRow {
    QString title;
    QString status; ///< One line of plain text.
    HealthColor color = HealthColor::Unknown;
    QString button; ///< Its title.
    bool hasButton = false; ///< Whether it is shown: exactly while there is something to mend.

    friend bool operator==(const HealthRow&, const HealthRow&) = default;
};

/// What the button of a note does.
enum class HealthNoteAction { None, OpenSoundSettings, ChangeShortcuts };

/// A part of the card below the rows, which only some desktops have: what else decides whether
/// Tavrin can work on them.
struct HealthNote {
    QString title;
    QString text;
    HealthColor color = HealthColor::Unknown;
    HealthNoteAction action = HealthNoteAction::None;
    QString button; ///< Empty without an action.

    friend bool operator==(const HealthNote&, const HealthNote&) = default;
};

/// What the health page shows, beside captions that never change.
struct HealthContent {
    std::array<HealthRow, healthItems.size()> rows; ///< In the order of healthItems.
    QList<HealthNote> notes; ///< Empty where there is no card for them.
    QString updated; ///< `healthUpdatedLabel`; empty before the first look.

    [[nodiscard]] HealthRow& row(HealthItem item)
    {
        return rows.at(static_cast<std::size_t>(item));
    }

    [[nodiscard]] const HealthRow& row(HealthItem item) const
    {
        return rows.at(static_cast<std::size_t>(item));
    }

    friend bool operator==(const HealthContent&, const HealthContent&) = default;
};

} // namespace tavrin
