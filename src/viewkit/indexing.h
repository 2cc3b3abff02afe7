#pragma once

#include <cassert>
#include <cstddef>
#include <iterator>

namespace tavrix::viewkit {

// The controls' interfaces count in `int`, the standard containers in `std::size_t`: these pass
// from one to the other.

/// How many elements a container has.
template <class Container>
[[nodiscard]] constexpr int CountOf(const Container& container) {
  return static_cast<int>(std::size(container));
}

/// The element at `index`, which must be one of the container's.
template <class Container>
[[nodiscard]] constexpr auto& ItemAt(Container&& container, int index) {
  assert(index >= 0 && index < CountOf(container));
  return std::data(container)[index];
}

/// `count`, not negative, as the size of a container.
[[nodiscard]] constexpr std::size_t SizeOf(int count) {
  assert(count >= 0);
  return static_cast<std::size_t>(count);
}

}  // namespace tavrix::viewkit
