#pragma once

#include <QtGlobal>

#include <concepts>
#include <memory>
#include <utility>

namespace tavrin {

/// A std::unique_ptr that is never null: nothing makes an empty one, so what has one as a member
/// does not compile without it. One that was moved from may only be destroyed.
template <typename T>
class Owned {
public:
    /// @param object not null.
    template <std::derived_from<T> Object>
    Owned(std::unique_ptr<Object> object) // NOLINT(google-explicit-constructor)
        : m_object(std::move(object))
    {
        Q_ASSERT(m_object);
    }

    [[nodiscard]] T* get() const { return m_object.get(); }

    T& operator*() const { return *m_object; }

    T* operator->() const { return m_object.get(); }

private:
    std::unique_ptr<T> m_object;
};

} // namespace tavrin
