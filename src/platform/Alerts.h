#pragma once

#include "base/Completion.h"

#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>

#include <algorithm>

namespace tavrin {

/// A line of input in an alert, of any length.
struct AlertField {
    QString label; ///< Shown before the field; empty for none.
    QString text;
    QString placeholder;
    bool secure = false;
    QSize size{}; ///< In points; what is usual when it is empty. Taller where the font needs it.

    friend bool operator==(const AlertField&, const AlertField&) = default;
};

struct Alert {
    enum class Style {
        Informational,
        Warning, ///< Of an error; of what the first button does, where there are others.
    };

    Style style = Style::Informational;
    QString messageText; ///< The title.
    QString informativeText; ///< May hold line breaks; always shown as plain text.
    QStringList buttons; ///< The first one is the default and what Return presses.
    QList<AlertField> fields;
    int escapeButton = lastButton; ///< What Escape and closing the window press.

    static constexpr int lastButton = -1;

    /// The place of the button that stands for no answer.
    [[nodiscard]] int unanswered() const
    {
        return escapeButton == lastButton ? std::max(static_cast<int>(buttons.size()), 1) - 1
                                          : escapeButton;
    }

    friend bool operator==(const Alert&, const Alert&) = default;
};

struct AlertAnswer {
    int button = 0; ///< Index into Alert::buttons.
    QStringList fields; ///< What stood in the fields, in their order.

    friend bool operator==(const AlertAnswer&, const AlertAnswer&) = default;
};

/// Modal messages and the beep. Main thread only.
class Alerts {
public:
    virtual ~Alerts() = default;

    /// Shows @p alert in front of everything and returns at once; completes with the answer later.
    /// Alerts shown meanwhile wait their turn. Never runs an event loop of its own: callers go on
    /// with state that nothing else may change under them.
    virtual void show(const Alert& alert, Completion<AlertAnswer> completion) = 0;

    /// The system's short sound for "not now".
    virtual void beep() = 0;
};

} // namespace tavrin
