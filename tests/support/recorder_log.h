#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/error.h"
#include "support/recorder.h"

namespace tavrix::test {

/// What the wrappers of one recorder share.
struct RecorderLog {
  std::vector<std::string> statements;
  std::vector<HostCall> calls;

  struct Planned {
    std::optional<int> calls_left;  ///< or by `name`
    std::string name;
    Fault fault = Fault::kThrow;
    std::string text;
  };
  std::optional<Planned> planned;
  bool fired = false;
  std::function<void(const std::string&)> before;  ///< called with each statement that is to run
  std::function<void(const std::string&)> on_release;
  int open_recordsets = 0;
  std::function<void(const HostCall&)> on_call;
  void Statement(const std::string& sql) {
    statements.push_back(sql);
    const auto deed = before;  // it may end or replace itself
    if (deed) deed(sql);
  }

  /// Notes a call and gives the fault that it shall show, `kThrow` excepted, which throws here.
  std::optional<Planned> Note(HostCall call) {
    calls.push_back(std::move(call));
    if (on_call) on_call(calls.back());
    if (!IsDue(calls.back())) return {};
    const Planned due = *std::exchange(planned, std::nullopt);
    if (!calls.back().Allows(due.fault)) return {};
    fired = true;
    if (due.fault == Fault::kThrow) throw host::HostError(due.text);
    return due;
  }

 private:
  bool IsDue(const HostCall& call) {
    if (!planned) return false;
    if (!planned->calls_left) return planned->name == call.name;
    return (*planned->calls_left)-- == 0;
  }
};

}  // namespace tavrix::test
