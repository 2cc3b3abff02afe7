#pragma once

#include <atomic>
#include <functional>
#include <string_view>

/// What goes on between a view and its host, line by line, for whoever looks for a fault there. Off
/// by default: a place that traces then costs the test of a flag.
namespace tavrix::host {

inline std::atomic<bool> tracing = false;

/// Whether lines are wanted. Ask before a line is made.
[[nodiscard]] inline bool Tracing() {
  return tracing.load(std::memory_order_relaxed);
}

/// Takes the lines from now on, one at a time and without their end; nothing ends the trace.
void SetTraceSink(std::function<void(std::string_view line)> sink);

/// The line that `text` makes behind the milliseconds since the first line and `kind`, a short
/// word. No exception leaves.
void Trace(std::string_view kind, std::string_view text) noexcept;

}  // namespace tavrix::host
