#include "platform/linux/libraries/SharedLibrary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

namespace tavrin {
namespace {

namespace present {

inline constinit const SharedLibrary mathematics{"libm.so.6"};
inline constinit const SharedLibrary runtime{"libc.so.6"};

// NOLINTBEGIN(readability-identifier-naming): the libraries' own names
TAVRIN_LIBRARY_FUNCTION(mathematics, cbrt)
TAVRIN_LIBRARY_FUNCTION(runtime, snprintf)
// NOLINTEND(readability-identifier-naming)

} // namespace present

namespace absent {

inline constinit const SharedLibrary library{"libtavrin-that-is-not-there.so.0", -38};

// NOLINTBEGIN(readability-identifier-naming): the libraries' own names
TAVRIN_LIBRARY_FUNCTION(library, cbrt)
TAVRIN_LIBRARY_FUNCTION(library, fclose)
TAVRIN_LIBRARY_FUNCTION(library, fopen)
TAVRIN_LIBRARY_FUNCTION(library, rewind)
// NOLINTEND(readability-identifier-naming)

} // namespace absent

TEST(SharedLibraryTest, AFunctionOfALibraryIsCalled)
{
    EXPECT_DOUBLE_EQ(present::cbrt(27.0), 3.0);
    EXPECT_TRUE(present::mathematics.load());
}

TEST(SharedLibraryTest, AFunctionMayTakeAnyNumberOfArguments)
{
    std::string text(8, '\0');
    EXPECT_EQ(present::snprintf(text.data(), text.size(), "%d %s", 12, "ab"), 5);
    EXPECT_EQ(text.substr(0, 5), "12 ab");
}

TEST(SharedLibraryTest, WithoutTheLibraryAFunctionFails)
{
    EXPECT_FALSE(absent::library.load());
    EXPECT_EQ(absent::fclose(nullptr), -38);
    EXPECT_EQ(absent::fopen("name", "r"), nullptr);
    EXPECT_EQ(absent::cbrt(27.0), 0.0);
    absent::rewind(nullptr);
}

TEST(SharedLibraryTest, AFunctionThatTheLibraryLacksIsNull)
{
    EXPECT_EQ(present::mathematics.resolve("tavrin_has_no_such_function"), nullptr);
}

TEST(SharedLibraryTest, ThreadsMayMeetInTheFirstCall)
{
    static constinit const SharedLibrary library{"libm.so.6"};
    static constinit const LibraryFunction<double(double)> squareRoot{library, "sqrt"};
    std::vector<double> roots(8);
    std::vector<std::thread> threads;
    threads.reserve(roots.size());
    for (double& root : roots)
        threads.emplace_back([&root] { root = squareRoot(16.0); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(roots, std::vector<double>(8, 4.0));
}

} // namespace
} // namespace tavrin
