#include "contract/Subject.h"
#include "platform/linux/x11/TestClient.h"
#include "platform/linux/x11/keyboard/X11HotKeyProbe.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryHotKeyProbe.h"

namespace tavrin::testing {
namespace {

const KeyModifiers commandShift = KeyModifiers(KeyModifier::Command) | KeyModifier::Shift;
const KeyModifiers controlOption = KeyModifiers(KeyModifier::Control) | KeyModifier::Option;

/// A probe and another program that may hold Command-Shift-Space.
class ProbeSubject {
public:
    virtual ~ProbeSubject() = default;
    [[nodiscard]] virtual HotKeyProbe& probe() = 0;
    virtual void takeCommandShiftSpace() = 0;
};

class InMemorySubject final : public ProbeSubject {
public:
    [[nodiscard]] HotKeyProbe& probe() override { return m_probe; }

    void takeCommandShiftSpace() override
    {
        m_probe.heldByOthers.append({key_codes::space, commandShift});
    }

private:
    InMemoryHotKeyProbe m_probe;
};

class X11Subject final : public ProbeSubject {
public:
    [[nodiscard]] HotKeyProbe& probe() override { return m_probe; }

    void takeCommandShiftSpace() override
    {
        const X11Connection& server = m_other.connection();
        const auto grab = xcb_grab_key_checked(server.get(), 0, server.root(),
            unsigned{XCB_MOD_MASK_SHIFT} | unsigned{XCB_MOD_MASK_4},
            *KeyboardMap::read(server).codeOf(keysyms::space), XCB_GRAB_MODE_ASYNC,
            XCB_GRAB_MODE_ASYNC);
        ASSERT_FALSE(XcbPointer<xcb_generic_error_t>(xcb_request_check(server.get(), grab)));
    }

private:
    TestClient m_other; // Lets go when it ends.
    X11HotKeyProbe m_probe;
};

class HotKeyProbeContractTest : public ContractTest<ProbeSubject> { };

INSTANTIATE_TEST_SUITE_P(Implementations, HotKeyProbeContractTest,
    ::testing::Values(
        Implementation<ProbeSubject>{"InMemory", makeSubject<ProbeSubject, InMemorySubject>},
        Implementation<ProbeSubject>{"X11", makeSubject<ProbeSubject, X11Subject>}),
    implementationName);

TEST_P(HotKeyProbeContractTest, AFreeCombinationIsAvailableAgainAndAgain)
{
    EXPECT_TRUE(subject().probe().isAvailable(key_codes::space, commandShift));
    EXPECT_TRUE(subject().probe().isAvailable(key_codes::space, commandShift));
}

TEST_P(HotKeyProbeContractTest, ACombinationThatAnotherProgramHoldsIsNot)
{
    subject().takeCommandShiftSpace();
    EXPECT_FALSE(subject().probe().isAvailable(key_codes::space, commandShift));
    EXPECT_TRUE(subject().probe().isAvailable(key_codes::space, controlOption));
}

TEST_P(HotKeyProbeContractTest, NobodyHoldsAFreeCombination)
{
    EXPECT_EQ(subject().probe().holder(key_codes::space, commandShift), QString());
}

TEST_P(HotKeyProbeContractTest, WhoHoldsACombinationIsNotInvented)
{
    subject().takeCommandShiftSpace();
    EXPECT_EQ(subject().probe().holder(key_codes::space, commandShift), QString());
}

TEST_P(HotKeyProbeContractTest, TheDesktopKeepsWhatSomebodyHolds)
{
    EXPECT_FALSE(subject().probe().isKeptByDesktop(key_codes::space, commandShift).value_or(false));
    subject().takeCommandShiftSpace();
    EXPECT_EQ(subject().probe().isKeptByDesktop(key_codes::space, commandShift), true);
}

} // namespace
} // namespace tavrin::testing
