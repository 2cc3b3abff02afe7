#include "book/journal/local_time.h"

#include <array>
#include <chrono>
#include <ctime>
#include <iomanip>
#include <sstream>

namespace desk::book {

std::string LocalTime(const std::string& utc) {
  std::tm parts{};
  std::istringstream in(utc);
  in >> std::get_time(&parts, "%Y-%m-%d %H:%M:%S");
  if (in.fail()) return utc;
  namespace chrono = std::chrono;
  const chrono::sys_days day =
      chrono::year(parts.tm_year + 1900) / (parts.tm_mon + 1) / parts.tm_mday;
  const auto time = day + chrono::hours(parts.tm_hour) + chrono::minutes(parts.tm_min) +
                    chrono::seconds(parts.tm_sec);
  const std::time_t count = chrono::system_clock::to_time_t(time);
  const std::tm* const local = std::localtime(&count);  // NOLINT(concurrency-mt-unsafe): one thread
  if (local == nullptr) return utc;
  std::array<char, 32> text{};
  const std::size_t size = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", local);
  return {text.data(), size};
}

}  // namespace desk::book
