#pragma once

#include <cstdlib>
#include <memory>

namespace corvandi {

struct FreeWithLibc {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply, event or error that xcb has allocated.
template<class T>
using XcbPtr = std::unique_ptr<T, FreeWithLibc>;

/// Takes over what an xcb call has returned (nothing, when the call failed).
template<class T>
[[nodiscard]] XcbPtr<T> owned(T* reply)
{
    return XcbPtr<T>(reply);
}

} // namespace corvandi
