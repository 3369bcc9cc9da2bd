#include "contract/Subject.h"
#include "platform/linux/x11/TestClient.h"
#include "platform/linux/x11/keyboard/X11KeyMonitor.h"
#include "support/ports/InMemoryKeyMonitor.h"

#include <QLineEdit>

#include <mutex>
#include <unistd.h>

namespace tavrin::testing {
namespace {

/// A monitor and a finger on the space bar.
class KeyMonitorSubject {
public:
    virtual ~KeyMonitorSubject() = default;
    [[nodiscard]] virtual KeyMonitor& monitor() = 0;
    virtual void tapSpaceInOtherProgram() = 0;
    virtual void tapSpaceInOwnWindow() = 0;
};

const KeyEvent spaceEvent{KeyEvent::Kind::KeyDown, key_codes::space, {}, false};

class InMemorySubject final : public KeyMonitorSubject {
public:
    [[nodiscard]] KeyMonitor& monitor() override { return m_monitor; }

    void tapSpaceInOtherProgram() override { m_monitor.sendToOtherProgram(spaceEvent); }

    void tapSpaceInOwnWindow() override { (void)m_monitor.sendToOwnWindow(spaceEvent); }

private:
    InMemoryKeyMonitor m_monitor;
};

class X11Subject final : public KeyMonitorSubject {
public:
    [[nodiscard]] KeyMonitor& monitor() override { return m_monitor; }

    void tapSpaceInOtherProgram() override
    {
        const auto window =
            m_client.createWindow("other", "Other", static_cast<quint32>(::getppid()));
        m_client.tap(keysyms::space);
        m_client.destroyWindow(window);
    }

    void tapSpaceInOwnWindow() override
    {
        QLineEdit field;
        field.show();
        ASSERT_TRUE(TestClient::eventually([&] { return field.hasFocus(); }));
        m_client.tap(keysyms::space);
        m_client.tap('x'); // Once this has arrived, the space has.
        ASSERT_TRUE(
            TestClient::eventually([&] { return field.text().endsWith(QStringLiteral("x")); }));
    }

private:
    TestClient m_client;
    X11KeyMonitor m_monitor;
};

class KeyMonitorContractTest : public ContractTest<KeyMonitorSubject> {
protected:
    [[nodiscard]] std::unique_ptr<KeyObservation> observeGlobally()
    {
        return subject().monitor().addGlobalMonitor([this](const KeyEvent& event) {
            const std::lock_guard lock(m_mutex);
            m_global.push_back(event);
        });
    }

    [[nodiscard]] std::unique_ptr<KeyObservation> observeLocally()
    {
        return subject().monitor().addLocalMonitor([this](const KeyEvent& event) {
            if (event.keyCode == key_codes::space)
                m_local.push_back(event);
            return false;
        });
    }

    [[nodiscard]] std::vector<KeyEvent> global()
    {
        const std::lock_guard lock(m_mutex);
        return m_global;
    }

    std::vector<KeyEvent> m_local;

private:
    std::mutex m_mutex;
    std::vector<KeyEvent> m_global;
};

INSTANTIATE_TEST_SUITE_P(Implementations, KeyMonitorContractTest,
    ::testing::Values(Implementation<KeyMonitorSubject>{"InMemory",
                          makeSubject<KeyMonitorSubject, InMemorySubject>},
        Implementation<KeyMonitorSubject>{"X11", makeSubject<KeyMonitorSubject, X11Subject>}),
    implementationName);

TEST_P(KeyMonitorContractTest, AKeyOfAnotherProgramReachesTheGlobalMonitorAlone)
{
    const auto globally = observeGlobally();
    const auto locally = observeLocally();
    ASSERT_TRUE(globally && locally);
    subject().tapSpaceInOtherProgram();
    EXPECT_TRUE(TestClient::eventually([&] { return !global().empty(); }));
    EXPECT_EQ(global(), std::vector<KeyEvent>{spaceEvent});
    EXPECT_TRUE(m_local.empty());
}

TEST_P(KeyMonitorContractTest, AKeyOfOurOwnReachesTheLocalMonitorAlone)
{
    const auto globally = observeGlobally();
    const auto locally = observeLocally();
    ASSERT_TRUE(globally && locally);
    subject().tapSpaceInOwnWindow();
    EXPECT_EQ(m_local, std::vector<KeyEvent>{spaceEvent});
    EXPECT_TRUE(global().empty());
}

TEST_P(KeyMonitorContractTest, AnObservationThatEndedHearsNothing)
{
    auto globally = observeGlobally();
    auto locally = observeLocally();
    globally.reset();
    locally.reset();
    subject().tapSpaceInOtherProgram();
    subject().tapSpaceInOwnWindow();
    EXPECT_TRUE(global().empty());
    EXPECT_TRUE(m_local.empty());
}

} // namespace
} // namespace tavrin::testing
