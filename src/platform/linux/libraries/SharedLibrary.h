#pragma once

#include <atomic>
#include <type_traits>

namespace tavrin {

/// A library of the system that is loaded when the first of its functions is called, not with the
/// program: linking what only later work needs doubled the time until the window stood there.
///
/// To use one, name its functions in a header of their own with TAVRIN_LIBRARY_FUNCTION and put
/// that namespace before the linked functions with a using directive. Any thread.
class SharedLibrary {
public:
    /// @param file the name of the library with the version of its binary interface, as in
    /// "libpulse.so.0"; it is kept, not copied.
    /// @param failure what functions that return an int return without the library.
    constexpr explicit SharedLibrary(const char* file, int failure = -1)
        : m_file(file)
        , m_failure(failure)
    {
    }

    /// Whether the library is there. Loads it, and never unloads it: such libraries keep state for
    /// the whole process.
    [[nodiscard]] bool load() const;

    /// The address of the function; null when there is no such library or function.
    [[nodiscard]] void* resolve(const char* name) const;

    [[nodiscard]] constexpr int failure() const { return m_failure; }

private:
    const char* m_file;
    int m_failure;
    mutable std::atomic<void*> m_handle = nullptr;
};

namespace detail {

/// The address of a function, looked up once.
template <class Signature>
class FunctionAddress {
public:
    constexpr FunctionAddress(const SharedLibrary& library, const char* name)
        : m_library(library)
        , m_name(name)
    {
    }

protected:
    /// What the function returns, or its failure value.
    template <class... Arguments>
    auto call(Arguments... arguments) const
    {
        using Return = std::invoke_result_t<Signature*, Arguments...>;
        Signature* function = m_function.load(std::memory_order_acquire);
        if (!function) {
            function = reinterpret_cast<Signature*>(m_library.resolve(m_name));
            m_function.store(function, std::memory_order_release);
        }
        if (function)
            return function(arguments...);
        if constexpr (std::is_same_v<Return, int>)
            return m_library.failure();
        else
            return Return();
    }

private:
    const SharedLibrary& m_library;
    const char* m_name;
    mutable std::atomic<Signature*> m_function = nullptr;
};

/// The types of functions of a header, without the attributes that no template argument carries.
template <class Return, class... Arguments>
std::type_identity<Return(Arguments...)> signature(Return (*)(Arguments...));
template <class Return, class... Arguments>
std::type_identity<Return(Arguments..., ...)> signature(Return (*)(Arguments..., ...));

} // namespace detail

/// A function of a library. Without the library it returns the library's failure value where that
/// is an int, else null, zero or nothing.
template <class Signature>
class LibraryFunction;

template <class Return, class... Arguments>
class LibraryFunction<Return(Arguments...)> : detail::FunctionAddress<Return(Arguments...)> {
public:
    using detail::FunctionAddress<Return(Arguments...)>::FunctionAddress;

    Return operator()(Arguments... arguments) const { return this->call(arguments...); }
};

/// With a variable number of arguments.
template <class Return, class... Arguments>
class LibraryFunction<Return(Arguments..., ...)>
    : detail::FunctionAddress<Return(Arguments..., ...)> {
public:
    using detail::FunctionAddress<Return(Arguments..., ...)>::FunctionAddress;

    template <class... More>
    Return operator()(Arguments... arguments, More... more) const
    {
        return this->call(arguments..., more...);
    }
};

} // namespace tavrin

/// Declares the library's function @p name under its own name in the current namespace.
#define TAVRIN_LIBRARY_FUNCTION(library, name)                                                     \
    inline constinit const ::tavrin::LibraryFunction<decltype(::tavrin::detail::signature(         \
        &::name))::type>(name)(library, #name);
