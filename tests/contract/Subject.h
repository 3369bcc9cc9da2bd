#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tavrin::testing {

/// One implementation under a contract test: its name and how to make it together with whatever it
/// stands on.
template <class Subject>
struct Implementation {
    std::string name;
    std::unique_ptr<Subject> (*make)();
};

template <class Subject, class Type>
std::unique_ptr<Subject> makeSubject()
{
    return std::make_unique<Type>();
}

/// A contract test: every test of it runs against every implementation.
template <class Subject>
class ContractTest : public ::testing::TestWithParam<Implementation<Subject>> {
protected:
    Subject& subject() { return *m_subject; }

private:
    std::unique_ptr<Subject> m_subject = this->GetParam().make();
};

/// Names the tests after their implementations.
inline constexpr auto implementationName = [](const auto& given) { return given.param.name; };

} // namespace tavrin::testing
