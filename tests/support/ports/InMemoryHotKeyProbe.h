#pragma once

#include "platform/keyboard/HotKeyProbe.h"

#include <QList>

#include <utility>

namespace tavrin::testing {

/// A desktop on which the test decides who holds which combination.
class InMemoryHotKeyProbe final : public HotKeyProbe {
public:
    using Combination = std::pair<int, KeyModifiers>;

    QList<Combination> heldByOthers;

    /// What isKeptByDesktop() says of a combination that nobody holds.
    std::optional<bool> keptUnlessHeld = false;

    /// Every combination that was asked for, in order.
    QList<Combination> probed;

    int questionsForTheDesktop = 0;

    [[nodiscard]] bool isAvailable(int keyCode, KeyModifiers modifiers) override
    {
        probed.append({keyCode, modifiers});
        return !heldByOthers.contains({keyCode, modifiers});
    }

    QString holderName; ///< Of everything that others hold.

    [[nodiscard]] QString holder(int keyCode, KeyModifiers modifiers) override
    {
        return heldByOthers.contains({keyCode, modifiers}) ? holderName : QString();
    }

    [[nodiscard]] std::optional<bool> isKeptByDesktop(int keyCode, KeyModifiers modifiers) override
    {
        ++questionsForTheDesktop;
        return heldByOthers.contains({keyCode, modifiers}) ? true : keptUnlessHeld;
    }
};

} // namespace tavrin::testing
