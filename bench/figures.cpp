#include "figures.h"

#include <chrono>
#include <cstdio>

namespace tavrix::bench {

void Figures::Print(const std::string& name, long size, double ratio, double limit) {
  std::printf("%s\t%ld\t%.3f\t%.3f\n", name.c_str(), size, ratio, limit);
  std::fflush(stdout);
  if (!(ratio <= limit)) {
    within_ = false;
    std::fprintf(stderr, "%s: %.3f is past its limit of %.3f\n", name.c_str(), ratio, limit);
  }
}

void Figures::Tell(const std::string& name, long size, double value, const std::string& unit) {
  std::fprintf(stderr, "# %s, %ld: %.3f %s\n", name.c_str(), size, value, unit.c_str());
}

double PassedTime(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

}  // namespace tavrix::bench
