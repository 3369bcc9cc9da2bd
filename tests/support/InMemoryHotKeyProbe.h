#pragma once

#include "platform/HotKeyProbe.h"

#include <QList>

#include <utility>

namespace tavrin::testing {

/// A desktop on which the test decides who holds which combination.
class InMemoryHotKeyProbe final : public HotKeyProbe {
public:
    using Combination = std::pair<int, KeyModifiers>;

    QList<Combination> heldByOthers;

    /// Every combination that was asked for, in order.
    QList<Combination> probed;

    [[nodiscard]] bool isAvailable(int keyCode, KeyModifiers modifiers) override
    {
        probed.append({keyCode, modifiers});
        return !heldByOthers.contains({keyCode, modifiers});
    }
};

} // namespace tavrin::testing
