#pragma once

#include "platform/linux/atspi/Libatspi.h"

#include <memory>

namespace tavrin {

struct GObjectUnref {
    void operator()(gpointer object) const { libatspi::g_object_unref(object); }
};

struct GFree {
    void operator()(gpointer memory) const { g_free(memory); }
};

/// Owns one reference to a GObject.
template <class Type>
using GObjectHandle = std::unique_ptr<Type, GObjectUnref>;

/// Owns memory of GLib.
template <class Type>
using GMemory = std::unique_ptr<Type, GFree>;

/// A further reference to @p object.
template <class Type>
[[nodiscard]] GObjectHandle<Type> retained(Type* object)
{
    using namespace libatspi; // Behind a macro.
    return GObjectHandle<Type>(static_cast<Type*>(g_object_ref(object)));
}

} // namespace tavrin
