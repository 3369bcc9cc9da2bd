#include "contract/Subject.h"
#include "platform/linux/x11/ClipboardPasteboard.h"
#include "platform/linux/x11/TestClient.h"
#include "platform/linux/x11/typing/X11SyntheticKeyboard.h"
#include "platform/qt/QtMainQueue.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPasteboard.h"
#include "support/ports/RecordingKeyboard.h"

#include <QCoreApplication>
#include <QPlainTextEdit>

namespace tavrin::testing {
namespace {

/// A keyboard, a pasteboard and an editor that both end up in.
class KeyboardSubject {
public:
    virtual ~KeyboardSubject() = default;
    [[nodiscard]] virtual SyntheticKeyboard& keyboard() = 0;
    [[nodiscard]] virtual Pasteboard& pasteboard() = 0;
    [[nodiscard]] virtual RunningApplication editor() = 0;
    [[nodiscard]] virtual QString text() = 0;
};

class RecordingSubject final : public KeyboardSubject {
public:
    RecordingSubject()
    {
        m_keyboard.onPaste = [this] { m_text += m_pasteboard.string(); };
        m_keyboard.onTyping = [this](const QString& typed) { m_text += typed; };
    }

    [[nodiscard]] SyntheticKeyboard& keyboard() override { return m_keyboard; }

    [[nodiscard]] Pasteboard& pasteboard() override { return m_pasteboard; }

    [[nodiscard]] RunningApplication editor() override { return {1, {}, {}, 1}; }

    [[nodiscard]] QString text() override { return m_text; }

private:
    InMemoryPasteboard m_pasteboard;
    RecordingKeyboard m_keyboard;
    QString m_text;
};

class X11Subject final : public KeyboardSubject {
public:
    X11Subject()
    {
        m_editor.show();
        EXPECT_TRUE(TestClient::eventually([this] {
            return m_editor.isActiveWindow() && m_client.activeWindow() == m_editor.winId();
        }));
    }

    [[nodiscard]] SyntheticKeyboard& keyboard() override { return m_keyboard; }

    [[nodiscard]] Pasteboard& pasteboard() override { return m_pasteboard; }

    [[nodiscard]] RunningApplication editor() override
    {
        return {QCoreApplication::applicationPid(), {}, {}, m_editor.winId()};
    }

    [[nodiscard]] QString text() override { return m_editor.toPlainText(); }

private:
    TestClient m_client;
    QPlainTextEdit m_editor;
    ClipboardPasteboard m_pasteboard;
    QtMainQueue m_mainQueue;
    X11SyntheticKeyboard m_keyboard{m_pasteboard, m_mainQueue};
};

class SyntheticKeyboardContractTest : public ContractTest<KeyboardSubject> {
protected:
    /// Types, and waits until the keys are out.
    void type(const QStringList& chunks)
    {
        std::optional<KeyPosting> posting;
        subject().keyboard().postUnicodeText(
            chunks, subject().editor(), [&](KeyPosting end) { posting = end; });
        EXPECT_TRUE(TestClient::eventually([&] { return posting.has_value(); }));
        EXPECT_EQ(posting, KeyPosting::Done);
    }
};

INSTANTIATE_TEST_SUITE_P(Implementations, SyntheticKeyboardContractTest,
    ::testing::Values(Implementation<KeyboardSubject>{"Recording",
                          makeSubject<KeyboardSubject, RecordingSubject>},
        Implementation<KeyboardSubject>{"X11", makeSubject<KeyboardSubject, X11Subject>}),
    implementationName);

TEST_P(SyntheticKeyboardContractTest, ThePasteShortcutPastesThePasteboard)
{
    ASSERT_TRUE(subject().pasteboard().setString(QStringLiteral("粘贴 paste")));
    std::optional<KeyPosting> posting;
    subject().keyboard().postPasteShortcut(
        {subject().editor()}, [&](KeyPosting end) { posting = end; });
    EXPECT_TRUE(
        TestClient::eventually([&] { return subject().text() == QStringLiteral("粘贴 paste"); }));
    EXPECT_TRUE(TestClient::eventually([&] { return posting.has_value(); }));
    EXPECT_EQ(posting, KeyPosting::Done);
}

TEST_P(SyntheticKeyboardContractTest, TheReceptionOfAPasteIsTold)
{
    std::optional<PasteReception> reception;
    subject().keyboard().askForPasteReception([&](PasteReception told) { reception = told; });
    EXPECT_TRUE(TestClient::eventually([&] { return reception.has_value(); }));
}

TEST_P(SyntheticKeyboardContractTest, ChunksAreTypedOneAfterAnother)
{
    const QStringList chunks{
        QStringLiteral("0123456789abcdef"), QStringLiteral("中文，😀"), QStringLiteral(" end.")};
    type(chunks);
    EXPECT_TRUE(TestClient::eventually([&] { return subject().text() == chunks.join(QString()); }));
}

TEST_P(SyntheticKeyboardContractTest, CoveringAModifierKeyTypesNothing)
{
    subject().keyboard().coverModifierKey();
    type({QStringLiteral("after")});
    EXPECT_TRUE(
        TestClient::eventually([&] { return subject().text() == QStringLiteral("after"); }));
}

TEST_P(SyntheticKeyboardContractTest, CancellingWhenNothingIsTypedDoesNothing)
{
    subject().keyboard().cancelTyping();
    type({QStringLiteral("after")});
    EXPECT_TRUE(
        TestClient::eventually([&] { return subject().text() == QStringLiteral("after"); }));
}

} // namespace
} // namespace tavrin::testing
