#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/error.h"

/// What is read from a file of another program, before anybody knows what it means.
namespace desk::book {

struct SourceRow {
  int number = 0;  ///< of the row or line in the file, from 1
  std::vector<std::string> cells = {};
};

/// "A" to "Z", then "AA": as sheets name their columns, the first one 0.
[[nodiscard]] std::string LetterOf(std::size_t column);

/// The rows that have any text.
struct SourceTable {
  std::vector<SourceRow> rows = {};
  std::size_t columns = 0;  ///< of the longest row
  std::size_t cells = 0;    ///< of all rows
  std::size_t bytes = 0;    ///< of all texts
};

/// The file cannot be read, with the reason for users.
class SourceError : public tavrix::host::HostError {
 public:
  using HostError::HostError;
};

/// More than any chart has; who reads a file refuses what goes beyond.
inline constexpr std::size_t kMaxSourceRows = 500'000;
inline constexpr std::size_t kMaxSourceColumns = 256;
inline constexpr std::size_t kMaxSourceCells = 6'000'000;
inline constexpr std::size_t kMaxSourceBytes = std::size_t{256} << 20;

/// Puts a row at the end, unless all of it is empty. `SourceError` when there are too many.
void AddRow(SourceTable& table, SourceRow row);

}  // namespace desk::book
