#pragma once

namespace tavrix::host {

/// One visitor of a variant, made of a function for each of its kinds.
template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

}  // namespace tavrix::host
