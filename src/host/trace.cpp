#include "host/trace.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <string>
#include <utility>

namespace tavrix::host {

namespace {

using Clock = std::chrono::steady_clock;

std::mutex mutex;  // apartments share the trace
std::function<void(std::string_view)> trace_sink;
Clock::time_point start;

std::string LineOf(std::string_view kind, std::string_view text) {
  constexpr std::size_t kTime = 8;
  constexpr std::size_t kKind = 7;
  const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
  std::string line = std::to_string(passed.count());
  line.insert(0, kTime - std::min(kTime, line.size()), ' ');
  line.append(1, ' ').append(kind);
  line.append(kKind - std::min(kKind, kind.size()), ' ').append(text);
  std::ranges::replace_if(
      line, [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return line;
}

}  // namespace

void SetTraceSink(std::function<void(std::string_view)> sink) {
  const std::lock_guard lock(mutex);
  trace_sink = std::move(sink);
  start = Clock::now();
  tracing = static_cast<bool>(trace_sink);
}

void Trace(std::string_view kind, std::string_view text) noexcept {
  try {
    const std::lock_guard lock(mutex);
    if (trace_sink) trace_sink(LineOf(kind, text));
  } catch (...) {  // the line is missing: what it is about goes on
  }
}

}  // namespace tavrix::host
