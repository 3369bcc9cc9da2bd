#include "base/Owned.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace tavrin {
namespace {

struct Shape {
    virtual ~Shape() = default;
    [[nodiscard]] virtual int corners() const = 0;
};

struct Triangle final : Shape {
    [[nodiscard]] int corners() const override { return 3; }
};

struct Box {
    Owned<Shape> first;
    Owned<Shape> second;
};

template <class Aggregate, class... Values>
concept MadeOf = requires(Values&&... values)
{
    Aggregate{std::forward<Values>(values)...};
};

using Made = std::unique_ptr<Triangle>;

// What has one as a member does not compile without it.
static_assert(!std::is_default_constructible_v<Owned<Shape>>);
static_assert(!MadeOf<Box> && !MadeOf<Box, Made> && MadeOf<Box, Made, Made>);
static_assert(!std::is_constructible_v<Owned<Shape>, std::nullptr_t>);
static_assert(!std::is_copy_constructible_v<Owned<Shape>>);

TEST(OwnedTest, IsTheObjectItWasMadeOfWhereverItGoes)
{
    auto made = std::make_unique<Triangle>();
    const Shape* const triangle = made.get();

    Owned<Shape> owned = std::move(made);
    const Owned<Shape> moved = std::move(owned);

    EXPECT_EQ(moved.get(), triangle);
    EXPECT_EQ(&*moved, triangle);
    EXPECT_EQ(moved->corners(), 3);
}

} // namespace
} // namespace tavrin
