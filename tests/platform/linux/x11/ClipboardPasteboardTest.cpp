#include "platform/linux/x11/ClipboardPasteboard.h"

#include "platform/linux/x11/ClipboardServer.h"
#include "platform/linux/x11/OtherProgram.h"
#include "platform/linux/x11/TestClient.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <thread>

namespace tavrin::testing {
namespace {

class ClipboardPasteboardTest : public ::testing::Test {
protected:
    [[nodiscard]] QString pasted(const char* target = "UTF8_STRING")
    {
        return QString::fromUtf8(m_client.convert("CLIPBOARD", target).bytes);
    }

    TestClient m_client;
    xcb_window_t m_window = m_client.createHiddenWindow();
    ClipboardPasteboard m_pasteboard;
};

/// A clipboard manager as small as can be: fetches the text when it is offered one.
class SmallManager {
public:
    SmallManager()
        : m_window(xcb_generate_id(server()))
    {
        const X11Connection& connection = m_client.connection();
        xcb_create_window(server(), XCB_COPY_FROM_PARENT, m_window, connection.root(), 0, 0, 1, 1,
            0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        const auto owned = xcb_set_selection_owner_checked(
            server(), m_window, connection.atom("CLIPBOARD_MANAGER"), XCB_CURRENT_TIME);
        const XcbPointer<xcb_generic_error_t> error(xcb_request_check(server(), owned));
        m_thread = std::thread([this] { serve(); });
    }

    /// What it was given; waits for it.
    [[nodiscard]] QByteArray saved()
    {
        m_thread.join();
        return m_saved;
    }

private:
    [[nodiscard]] xcb_connection_t* server() const { return m_client.connection().get(); }

    void serve()
    {
        XcbPointer<xcb_generic_event_t> event(xcb_wait_for_event(server()));
        while (event && (event->response_type & 0x7f) != XCB_SELECTION_REQUEST)
            event.reset(xcb_wait_for_event(server()));
        if (!event)
            return;
        m_saved = TestClient().convert("CLIPBOARD", "UTF8_STRING").bytes;
        const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(*event);
        xcb_selection_notify_event_t reply{};
        reply.response_type = XCB_SELECTION_NOTIFY;
        reply.requestor = request.requestor;
        reply.selection = request.selection;
        reply.target = request.target;
        reply.property = request.property;
        std::array<char, 32> bytes{};
        std::memcpy(bytes.data(), &reply, sizeof reply);
        xcb_send_event(server(), 0, request.requestor, 0, bytes.data());
        xcb_flush(server());
    }

    TestClient m_client;
    xcb_window_t m_window;
    QByteArray m_saved;
    std::thread m_thread;
};

TEST_F(ClipboardPasteboardTest, OneThatIsToConnectLaterConnectsForTheFirstText)
{
    constexpr Seconds longerThanAnybodyWaits{3600};
    ClipboardPasteboard later(longerThanAnybodyWaits);
    EXPECT_TRUE(later.setString(QStringLiteral("now")));
    EXPECT_EQ(pasted(), QStringLiteral("now"));

    const ClipboardPasteboard unused(longerThanAnybodyWaits); // Is not waited for either.
}

TEST_F(ClipboardPasteboardTest, AnotherProgramGetsTheTextAtOnceWhileTheMainThreadIsBusy)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("你好 😀")));
    // The client keeps the main thread until it has the text, and runs no event loop meanwhile.
    EXPECT_EQ(pasted(), QStringLiteral("你好 😀"));
}

TEST_F(ClipboardPasteboardTest, TheLastTextHolds)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("one")));
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("two")));
    EXPECT_EQ(pasted(), QStringLiteral("two"));
    ASSERT_TRUE(m_pasteboard.setString(QString()));
    EXPECT_EQ(pasted(), QString());
}

TEST_F(ClipboardPasteboardTest, EveryUsualTargetIsServed)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("é字")));
    for (const char* target : {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT"})
        EXPECT_EQ(pasted(target), QStringLiteral("é字")) << target;
    EXPECT_EQ(m_client.convert("CLIPBOARD", "STRING").bytes, QByteArray("\xe9?"));
    EXPECT_EQ(m_client.convert("CLIPBOARD", "TIMESTAMP").bytes.size(), 4);
    EXPECT_EQ(m_client.convert("CLIPBOARD", "image/png").type, XCB_ATOM_NONE);

    const QByteArray targets = m_client.convert("CLIPBOARD", "TARGETS").bytes;
    const xcb_atom_t utf8 = m_client.connection().atom("UTF8_STRING");
    bool offered = false;
    for (qsizetype i = 0; i + 4 <= targets.size(); i += 4) {
        xcb_atom_t target = 0;
        std::memcpy(&target, targets.constData() + i, sizeof target);
        offered = offered || target == utf8;
    }
    EXPECT_TRUE(offered);
}

TEST_F(ClipboardPasteboardTest, LargeTextsArriveInPiecesAndWhole)
{
    const QString large = QStringLiteral("长text😀").repeated(300'000);
    ASSERT_TRUE(m_pasteboard.setString(large));
    const auto received = m_client.convert("CLIPBOARD", "UTF8_STRING");
    EXPECT_TRUE(received.incremental);
    EXPECT_TRUE(QString::fromUtf8(received.bytes) == large) << received.bytes.size();
}

TEST_F(ClipboardPasteboardTest, NulAndLoneSurrogatesDoNoHarm)
{
    const QString odd = QStringLiteral("a") + QChar(u'\0') + QStringLiteral("b") + QChar(0xd83d)
        + QStringLiteral("c") + QChar(0x200f);
    ASSERT_TRUE(m_pasteboard.setString(odd));
    const QString received = pasted();
    EXPECT_EQ(received.size(), 5);
    EXPECT_TRUE(received.startsWith(QStringLiteral("ab")));
    EXPECT_TRUE(received.endsWith(QStringLiteral("c") + QChar(0x200f)));
}

TEST_F(ClipboardPasteboardTest, WhatAnotherProgramCopiesIsNotOursAnyMore)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("ours")));
    ClipboardPasteboard other;
    ASSERT_TRUE(other.setString(QStringLiteral("theirs")));
    EXPECT_EQ(pasted(), QStringLiteral("theirs"));
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("again")));
    EXPECT_EQ(pasted(), QStringLiteral("again"));
}

TEST_F(ClipboardPasteboardTest, TheSameTextCanBecomeThePrimarySelection)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("for old terminals")));
    EXPECT_EQ(m_client.convert("PRIMARY", "UTF8_STRING").bytes, "");
    EXPECT_TRUE(m_pasteboard.server().watch(m_window, true));
    EXPECT_EQ(m_client.convert("PRIMARY", "UTF8_STRING").bytes, "for old terminals");
}

TEST_F(ClipboardPasteboardTest, ThePrimarySelectionFollowsAlsoWhenTheClipboardWasTaken)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("ours")));
    ClipboardPasteboard other;
    ASSERT_TRUE(other.setString(QStringLiteral("theirs")));
    EXPECT_TRUE(m_pasteboard.server().watch(m_window, true));
    EXPECT_EQ(m_client.convert("PRIMARY", "UTF8_STRING").bytes, "ours");
    EXPECT_EQ(pasted(), QStringLiteral("ours"));
}

TEST_F(ClipboardPasteboardTest, APrimarySelectionThatAnotherProgramTookIsTheirs)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("ours")));
    ASSERT_TRUE(m_pasteboard.server().watch(m_window, true));
    ClipboardPasteboard other;
    ASSERT_TRUE(other.setString(QStringLiteral("theirs")));
    ASSERT_TRUE(other.server().watch(m_window, true));
    EXPECT_EQ(m_client.convert("PRIMARY", "UTF8_STRING").bytes, "theirs");
    EXPECT_TRUE(m_pasteboard.setString(QStringLiteral("again")));
    EXPECT_EQ(m_client.convert("PRIMARY", "UTF8_STRING").bytes, "theirs");
}

TEST_F(ClipboardPasteboardTest, ItTellsWhetherTheProgramHasFetchedTheTextSinceItIsWatched)
{
    using Fetching = ClipboardServer::Fetching;
    ClipboardServer& server = m_pasteboard.server();
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("watched")));
    ASSERT_TRUE(server.watch(m_window, false));
    EXPECT_EQ(server.fetching(), Fetching::None);
    static_cast<void>(m_client.convert("CLIPBOARD", "TARGETS"));
    EXPECT_EQ(server.fetching(), Fetching::None); // It has only looked what there is.
    EXPECT_EQ(pasted("STRING"), QStringLiteral("watched"));
    EXPECT_EQ(server.fetching(), Fetching::ByProgram);

    ASSERT_TRUE(server.watch(m_window, false));
    EXPECT_EQ(server.fetching(), Fetching::None);
}

TEST_F(ClipboardPasteboardTest, ItTellsWhenOnlyOthersHaveFetchedTheText)
{
    const OtherProgram watched(QStringLiteral(TAVRIN_TEST_EDITOR));
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("for all")));
    ASSERT_TRUE(m_pasteboard.server().watch(watched.window(), false));
    EXPECT_EQ(pasted(), QStringLiteral("for all"));
    EXPECT_EQ(m_pasteboard.server().fetching(), ClipboardServer::Fetching::ByOthers);
}

TEST_F(ClipboardPasteboardTest, AClipboardOfAnotherProgramTellsNothing)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("ours")));
    ASSERT_TRUE(m_pasteboard.server().watch(m_window, false));
    ClipboardPasteboard other;
    ASSERT_TRUE(other.setString(QStringLiteral("theirs")));
    EXPECT_EQ(pasted(), QStringLiteral("theirs"));
    EXPECT_TRUE(TestClient::eventually(
        [this] { return m_pasteboard.server().fetching() == ClipboardServer::Fetching::Unknown; }));
}

TEST_F(ClipboardPasteboardTest, ATextIsWithheldFromTheProgramThatItIsTypedInto)
{
    ClipboardServer& server = m_pasteboard.server();
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("typed")));
    ASSERT_TRUE(server.watch(m_window, false));
    ASSERT_TRUE(server.withholdFrom(m_window));
    for (const char* target : {"UTF8_STRING", "text/plain;charset=utf-8", "STRING"})
        EXPECT_EQ(m_client.convert("CLIPBOARD", target).type, XCB_ATOM_NONE) << target;
    EXPECT_EQ(server.fetching(), ClipboardServer::Fetching::None);
    server.release();
    EXPECT_EQ(pasted(), QStringLiteral("typed"));

    ASSERT_TRUE(server.watch(m_window, false));
    ASSERT_TRUE(server.withholdFrom(m_window));
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("new")));
    EXPECT_EQ(pasted(), QStringLiteral("new"));
}

TEST_F(ClipboardPasteboardTest, WhatIsWithheldFromOneProgramOthersGet)
{
    const OtherProgram other(QStringLiteral(TAVRIN_TEST_EDITOR));
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("for others")));
    ASSERT_TRUE(m_pasteboard.server().withholdFrom(other.window()));
    EXPECT_EQ(pasted(), QStringLiteral("for others"));
}

TEST_F(ClipboardPasteboardTest, WhatTheProgramHasFetchedCannotBeWithheld)
{
    ASSERT_TRUE(m_pasteboard.setString(QStringLiteral("fetched")));
    ASSERT_TRUE(m_pasteboard.server().watch(m_window, false));
    EXPECT_EQ(pasted(), QStringLiteral("fetched"));
    EXPECT_FALSE(m_pasteboard.server().withholdFrom(m_window));
    EXPECT_EQ(pasted(), QStringLiteral("fetched"));
}

TEST_F(ClipboardPasteboardTest, WhoAsksAgainForTheSamePlaceGetsTheTextFromItsBeginning)
{
    const QString large = QStringLiteral("0123456789").repeated(60'000);
    ASSERT_TRUE(m_pasteboard.setString(large));
    TestClient::Request request = m_client.request("CLIPBOARD", "UTF8_STRING");
    ASSERT_TRUE(m_client.takePiece(request)); // One piece, and then it asks anew.
    m_client.requestAgain(request, "CLIPBOARD", "UTF8_STRING");
    EXPECT_TRUE(m_client.takeAll(request) == large.toUtf8());
}

TEST_F(ClipboardPasteboardTest, TheClipboardManagerIsGivenTheTextWhenTheProgramQuits)
{
    SmallManager manager;
    {
        ClipboardPasteboard quitting;
        ASSERT_TRUE(quitting.setString(QStringLiteral("kept")));
    }
    EXPECT_EQ(manager.saved(), "kept");
}

} // namespace
} // namespace tavrin::testing
