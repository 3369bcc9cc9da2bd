#include "contract/Subject.h"
#include "platform/linux/x11/ClipboardPasteboard.h"
#include "platform/linux/x11/TestClient.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPasteboard.h"

namespace tavrin::testing {
namespace {

/// A pasteboard and a program that pastes from it.
class PasteboardSubject {
public:
    virtual ~PasteboardSubject() = default;
    [[nodiscard]] virtual Pasteboard& pasteboard() = 0;
    [[nodiscard]] virtual QString pasted() = 0;
};

class InMemorySubject final : public PasteboardSubject {
public:
    [[nodiscard]] Pasteboard& pasteboard() override { return m_pasteboard; }

    [[nodiscard]] QString pasted() override { return m_pasteboard.string(); }

private:
    InMemoryPasteboard m_pasteboard;
};

class ClipboardSubject final : public PasteboardSubject {
public:
    [[nodiscard]] Pasteboard& pasteboard() override { return m_pasteboard; }

    [[nodiscard]] QString pasted() override
    {
        return QString::fromUtf8(m_client.convert("CLIPBOARD", "UTF8_STRING").bytes);
    }

private:
    TestClient m_client;
    ClipboardPasteboard m_pasteboard;
};

class PasteboardContractTest : public ContractTest<PasteboardSubject> { };

INSTANTIATE_TEST_SUITE_P(Implementations, PasteboardContractTest,
    ::testing::Values(Implementation<PasteboardSubject>{"InMemory",
                          makeSubject<PasteboardSubject, InMemorySubject>},
        Implementation<PasteboardSubject>{
            "Clipboard", makeSubject<PasteboardSubject, ClipboardSubject>}),
    implementationName);

TEST_P(PasteboardContractTest, ATextOfAnyKindIsPastedAsItWasSet)
{
    for (const QString& text : {QStringLiteral("plain"), QStringLiteral("你好，世界 😀\n\ttwo"),
             QStringLiteral("\u202eright to left"), QString(),
             QStringLiteral("字").repeated(1'000'000)}) {
        ASSERT_TRUE(subject().pasteboard().setString(text));
        EXPECT_TRUE(subject().pasted() == text) << text.left(20).toStdString();
    }
}

TEST_P(PasteboardContractTest, TheLastTextReplacesTheOneBefore)
{
    ASSERT_TRUE(subject().pasteboard().setString(QStringLiteral("first")));
    ASSERT_TRUE(subject().pasteboard().setString(QStringLiteral("second")));
    EXPECT_EQ(subject().pasted(), QStringLiteral("second"));
}

} // namespace
} // namespace tavrin::testing
