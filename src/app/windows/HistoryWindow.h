#pragma once

namespace tavrin {

/// Where the history of finished results is shown. Main thread only.
class HistoryWindow {
public:
    virtual ~HistoryWindow() = default;

    /// Shows the history in front.
    virtual void showHistoryWindow() = 0;
};

} // namespace tavrin
