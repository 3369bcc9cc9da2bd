#pragma once

#include "platform/keyboard/SyntheticKeyboard.h"
#include "platform/programs/Workspace.h"

#include <functional>
#include <optional>
#include <utility>

namespace tavrin::testing {

/// A keyboard that types nowhere by itself: the test says what a paste or typed text does, and how
/// far the keys get.
class RecordingKeyboard final : public SyntheticKeyboard {
public:
    std::function<void()> onPaste;
    std::function<void(const QString&)> onTyping;

    KeyPosting pasteEnds = KeyPosting::Done;
    KeyPosting typingEnds = KeyPosting::Done;
    PasteReception reception = PasteReception::Unknown;
    bool answersLater = false; ///< Keys take their time: answer() says that they are out.

    QList<PasteTarget> pastes; ///< The targets of the paste shortcuts, in order.
    QList<QStringList> typed; ///< The chunks of each typed text, in order.
    QList<RunningApplication> typingTargets; ///< Of the same.
    int covers = 0;
    int cancellations = 0;
    int questions = 0; ///< After the reception.

    void postPasteShortcut(const PasteTarget& target, Completion<KeyPosting> completion) override
    {
        pastes.append(target);
        if (onPaste && pasteEnds != KeyPosting::Refused)
            onPaste();
        finish(std::move(completion), pasteEnds);
    }

    void askForPasteReception(Completion<PasteReception> completion) override
    {
        ++questions;
        completion(reception);
    }

    void postUnicodeText(const QStringList& chunks, const RunningApplication& target,
        Completion<KeyPosting> completion) override
    {
        typed.append(chunks);
        typingTargets.append(target);
        const bool goesOut = typingEnds == KeyPosting::Done || typingEnds == KeyPosting::Unanswered
            || typingEnds == KeyPosting::Broken;
        if (onTyping && goesOut)
            onTyping(chunks.join(QString()));
        finish(std::move(completion), typingEnds);
    }

    /// The keys of the last call are out, or not.
    void answer()
    {
        const auto answer = std::exchange(m_answer, nullptr);
        answer();
    }

    void coverModifierKey() override { ++covers; }

    void cancelTyping() override { ++cancellations; }

private:
    void finish(Completion<KeyPosting> completion, KeyPosting end)
    {
        if (answersLater)
            m_answer = [completion = std::move(completion), end] { completion(end); };
        else
            completion(end);
    }

    std::function<void()> m_answer;
};

} // namespace tavrin::testing
