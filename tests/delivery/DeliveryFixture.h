#pragma once

#include "delivery/TargetContext.h"
#include "delivery/TextDelivery.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryAccessibility.h"
#include "support/ports/InMemoryPasteboard.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/RecordingKeyboard.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

namespace tavrin::testing {

/// An editor in front whose paste works, with the caret after "Dear ".
class DeliveryFixture : public ::testing::Test {
protected:
    static constexpr qint64 editorProcess = 4711;
    static constexpr qint64 otherProcess = 815;

    VirtualTime time;
    InMemoryPasteboard pasteboard;
    InMemoryWorkspace workspace;
    InMemoryAccessibility accessibility;
    RecordingKeyboard keyboard;
    TargetContext target{workspace, accessibility};
    TextDelivery delivery{{pasteboard, workspace, accessibility, keyboard, time}, target};
    std::shared_ptr<FakeElement> editor = std::make_shared<FakeElement>();
    std::optional<DeliveryOutcome> outcome;
    Seconds finishedAt{-1};

    void SetUp() override
    {
        editor->processIdentifier = editorProcess;
        putText(QStringLiteral("Dear "), {5, 0});
        accessibility.focusedElements[editorProcess] = editor;
        workspace.frontmost = RunningApplication{
            editorProcess, QStringLiteral("Editor"), QStringLiteral("editor"), 0};
        target.capture();
        keyboard.onPaste = [this] { editor->insert(pasteboard.string()); };
    }

    void TearDown() override { EXPECT_EQ(time.pending(), 0); }

    void putText(const QString& text, TextRange selection)
    {
        editor->text = text;
        editor->selection = selection;
    }

    void swallowPastes()
    {
        keyboard.onPaste = [] {};
    }

    void paste(const QString& text)
    {
        outcome.reset();
        delivery.pasteText(text, [this](const DeliveryOutcome& result) {
            outcome = result;
            finishedAt = time.uptime();
        });
    }

    void pasteToTheEnd(const QString& text)
    {
        paste(text);
        time.advance(Seconds{10});
    }
};

} // namespace tavrin::testing
