#pragma once

#include "base/Seconds.h"

#include <functional>
#include <memory>
#include <optional>

class QString;

namespace tavrin {

class AudioRecorder;

/// The small floating panel that shows the session, as the session drives it. It never takes the
/// keyboard. Main thread only.
class RecordingHUD {
public:
    using Handler = std::function<void()>;

    virtual ~RecordingHUD() = default;

    /// "dictation", "translation" or "chat"; for whatever is shown next.
    virtual void setOperationName(const QString& name) = 0;

    /// The shortcut that finishes this operation, as shown to the user; may be empty.
    virtual void setOperationShortcutName(const QString& name) = 0;

    /// Listening, with the level of @p recorder, which the session owns and may drop at any time.
    /// Says why when the recorder fails meanwhile.
    virtual void showRecordingWithRecorder(std::weak_ptr<AudioRecorder> recorder) = 0;

    /// Replaces the live text; an empty one is ignored.
    virtual void updateTranscript(const QString& text) = 0;

    /// Progress against @p estimate, or without end when there is none.
    virtual void showProcessingWithEstimate(std::optional<Seconds> estimate) = 0;

    /// The text has arrived: the panel disappears at once.
    virtual void showSuccess() = 0;

    /// Says for a few seconds that the text waits on the pasteboard, and why: @p reason is ready to
    /// be shown.
    virtual void showClipboardFallbackWithReason(const QString& reason) = 0;

    /// Asks whether to give the recording up. At most one of the two is called, at most once.
    virtual void showCancelConfirmationWithConfirm(Handler confirm, Handler continueRecording) = 0;

    /// Ends whatever is shown; handlers that wait are dropped.
    virtual void hide() = 0;
};

} // namespace tavrin
