#include "platform/linux/speech/sphinx/SphinxGuard.h"

#include <gtest/gtest.h>

#include <sphinxbase/err.h>

namespace tavrin {
namespace {

TEST(SphinxGuardTest, WorkWithoutATroubleIsDone)
{
    silenceSphinx();
    bool done = false;

    EXPECT_TRUE(runGuarded([&] {
        E_ERROR("not fatal\n");
        done = true;
    }));
    EXPECT_TRUE(done);
}

TEST(SphinxGuardTest, WhatTheLibraryCallsFatalEndsTheWorkOnly)
{
    silenceSphinx();
    static int steps = 0;

    EXPECT_FALSE(runGuarded([] {
        ++steps;
        E_FATAL("the model is nonsense\n");
        ++steps;
    }));
    EXPECT_EQ(steps, 1);
    EXPECT_TRUE(runGuarded([] { ++steps; }));
    EXPECT_EQ(steps, 2);
}

} // namespace
} // namespace tavrin
