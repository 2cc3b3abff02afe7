#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tavrix::bench {

/// Prints one figure (name, size, measured ratio, limit, separated by tabs) and remembers whether
/// any has passed its limit.
class Figures {
 public:
  void Print(const std::string& name, long size, double ratio, double limit);
  /// For what is only told, without a limit.
  static void Tell(const std::string& name, long size, double value, const std::string& unit);
  [[nodiscard]] bool Within() const { return within_; }

 private:
  bool within_ = true;
};

/// The clock of all measures: processor time that this process has used, since all runs on one
/// thread and other programs on the machine shall not count. Windows tells that in steps of ten
/// milliseconds or more: there it is the time that passes.
[[nodiscard]] inline double MillisecondsNow() {
#ifdef _WIN32
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double, std::milli>(now).count();
#else
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
#endif
}

[[nodiscard]] inline double MedianOf(std::vector<double> times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

/// Time that passes while `work` runs, in milliseconds: a server works in another process.
[[nodiscard]] double PassedTime(const std::function<void()>& work);

/// What `work` took: the median of `rounds`.
template <class Work>
[[nodiscard]] double Median(int rounds, Work&& work) {
  std::vector<double> times;
  for (int round = 0; round < rounds; ++round) {
    const double start = MillisecondsNow();
    work();
    times.push_back(MillisecondsNow() - start);
  }
  return MedianOf(std::move(times));
}

/// The medians of two jobs measured in turn, so that both see the same machine.
struct Pair {
  double floor = 0;
  double measured = 0;
  [[nodiscard]] double Ratio() const { return measured / floor; }
};
template <class Floor, class Measured>
[[nodiscard]] Pair InTurn(int rounds, Floor&& floor, Measured&& measured) {
  std::vector<double> floors;
  std::vector<double> times;
  for (int round = 0; round < rounds; ++round) {
    floors.push_back(Median(1, floor));
    times.push_back(Median(1, measured));
  }
  return {MedianOf(floors), MedianOf(times)};
}

}  // namespace tavrix::bench
