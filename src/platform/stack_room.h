// How much of the thread's stack is left, for recursions that texts from outside control.
#pragma once

#include <cstddef>

namespace orv::platform {

/// The bytes of the current thread's stack that are still free; the greatest size_t where that
/// cannot be told (a fiber's stack, an unknown system).
std::size_t StackRoom() noexcept;

}  // namespace orv::platform
