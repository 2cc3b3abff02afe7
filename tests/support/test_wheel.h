#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "host/objects.h"

namespace tavrix::test {

/// A mouse-wheel source that shows what it was told and whose wheel the test turns.
class TestWheel : public host::MouseEvent {
 public:
  void SetRange(std::int32_t maximum) override { range = maximum; }
  void SetRange(std::int32_t maximum, std::int32_t from) override {
    range = maximum;
    first_row = from;
  }
  void Attach(std::intptr_t window) override {
    ++attached;
    window_ = window;
  }
  void Detach() override { ++detached; }
  [[nodiscard]] std::intptr_t AttachedTo() override { return window_; }
  void SetPosition(std::int32_t to) override { position = to; }
  void OnWheel(std::function<void(std::int32_t)> handler) override { turn = std::move(handler); }

  std::int32_t range = -1;
  std::int32_t first_row = -1;
  std::int32_t position = -1;
  int attached = 0;
  int detached = 0;
  std::function<void(std::int32_t)> turn;

 private:
  std::intptr_t window_ = 0;
};

}  // namespace tavrix::test
