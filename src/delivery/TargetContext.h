#pragma once

#include "delivery/ApplicationContext.h"
#include "platform/programs/Accessibility.h"
#include "platform/programs/RunningApplication.h"

#include <optional>
#include <tl/expected.hpp>

namespace tavrin {

class Workspace;

/// The application that was in front when recording began: the text goes back into it.
///
/// Holds the target and owned references to its focused element and window, from capture() until
/// the end of the session. Main thread only; the ports must outlive it.
class TargetContext {
public:
    TargetContext(Workspace& workspace, Accessibility& accessibility);

    /// Remembers what is in front now, in place of what was remembered before. Without
    /// accessibility trust the element and the window stay empty.
    void capture();

    /// Releases the element and the window; the application stays known.
    void releaseElements();

    /// Forgets the application too.
    void clear();

    [[nodiscard]] const std::optional<RunningApplication>& targetApplication() const
    {
        return m_targetApplication;
    }

    /// Null when none was captured.
    [[nodiscard]] const AccessibleElement* targetFocusedElement() const
    {
        return m_targetFocusedElement.get();
    }

    /// Null when none was captured.
    [[nodiscard]] const AccessibleElement* targetFocusedWindow() const
    {
        return m_targetFocusedWindow.get();
    }

    /// Looks up the element that has the focus now. Only one that belongs to the target is given
    /// out; otherwise the reason says why there is none.
    [[nodiscard]] tl::expected<ElementHandle, QString> copyFocusedElementForTargetApplication();

    /// Looks up the target's focused window; null when unknown.
    [[nodiscard]] ElementHandle copyFocusedWindowForTargetApplication();

    /// Describes the target with the element and window captured at the start. The title and role
    /// are read from the other program at the moment of the call.
    [[nodiscard]] ApplicationContext applicationContext();

private:
    /// The attribute as a string; empty when there is none.
    [[nodiscard]] QString stringAttribute(ElementAttribute name, const AccessibleElement* element);

    Workspace& m_workspace;
    Accessibility& m_accessibility;
    std::optional<RunningApplication> m_targetApplication;
    ElementHandle m_targetFocusedElement;
    ElementHandle m_targetFocusedWindow;
};

} // namespace tavrin
