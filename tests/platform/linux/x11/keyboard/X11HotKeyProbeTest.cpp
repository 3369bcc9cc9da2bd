#include "platform/linux/x11/keyboard/X11HotKeyProbe.h"

#include "platform/linux/x11/TestClient.h"

#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

TEST(X11HotKeyProbeTest, ACombinationThatAnotherProgramGrabbedIsTaken)
{
    const TestClient other;
    xcb_connection_t* server = other.connection().get();
    const KeyModifiers modifiers = KeyModifiers(KeyModifier::Shift) | KeyModifier::Command;
    X11HotKeyProbe probe;
    ASSERT_TRUE(probe.isAvailable(key_codes::space, modifiers));

    const auto space = *KeyboardMap::read(other.connection()).codeOf(keysyms::space);
    const quint16 mask = unsigned{XCB_MOD_MASK_SHIFT} | unsigned{XCB_MOD_MASK_4};
    const auto grab = xcb_grab_key_checked(server, 0, other.connection().root(), mask, space,
        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_EQ(XcbPointer<xcb_generic_error_t>(xcb_request_check(server, grab)), nullptr);
    EXPECT_FALSE(probe.isAvailable(key_codes::space, modifiers));
    EXPECT_TRUE(probe.isAvailable(
        key_codes::space, KeyModifiers(KeyModifier::Control) | KeyModifier::Option));

    const auto ungrab = xcb_ungrab_key_checked(server, space, other.connection().root(), mask);
    ASSERT_EQ(XcbPointer<xcb_generic_error_t>(xcb_request_check(server, ungrab)), nullptr);
    EXPECT_TRUE(probe.isAvailable(key_codes::space, modifiers));
}

TEST(X11HotKeyProbeTest, TheWindowMenuOfTheManagerHoldsAltSpace)
{
    X11HotKeyProbe probe;
    EXPECT_FALSE(probe.isAvailable(key_codes::space, KeyModifier::Option));
    EXPECT_EQ(probe.isKeptByDesktop(key_codes::space, KeyModifier::Option), true);
}

TEST(X11HotKeyProbeTest, TheManagerIsNamedAsTheHolderOfItsWindowMenu)
{
    const TestClient other;
    const X11Connection& server = other.connection();
    const xcb_window_t manager =
        server.number(server.root(), server.atom("_NET_SUPPORTING_WM_CHECK"));
    X11HotKeyProbe probe;
    const QString holder = probe.holder(key_codes::space, KeyModifier::Option);

    EXPECT_FALSE(holder.isEmpty());
    EXPECT_EQ(holder.toUtf8(), server.bytes(manager, server.atom("_NET_WM_NAME")));
}

TEST(X11HotKeyProbeTest, AnUnknownKeyIsNotAvailable)
{
    X11HotKeyProbe probe;
    EXPECT_FALSE(probe.isAvailable(-1, KeyModifier::Option));
    EXPECT_EQ(probe.isKeptByDesktop(-1, KeyModifier::Option), std::nullopt);
}

} // namespace
} // namespace tavrin::testing
