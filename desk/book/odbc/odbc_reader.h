#pragma once

#include <memory>
#include <string>
#include <vector>

#include "book/odbc/odbc_link.h"

namespace desk::book {

/// Some rows of a result on their way from the thread that reads them, cell after cell.
class OdbcPortion {
 public:
  enum class Kind : unsigned char { kNull, kInteger, kNumber, kText };

  void AddNull() { cells_.push_back({}); }
  void AddInteger(std::int64_t number) {
    cells_.push_back({.kind = Kind::kInteger, .integer = number});
  }
  void AddNumber(double number) { cells_.push_back({.kind = Kind::kNumber, .number = number}); }
  /// A text of UTF-16 units.
  void AddText(const SQLWCHAR* units, std::size_t length);

  [[nodiscard]] std::size_t Cells() const { return cells_.size(); }
  [[nodiscard]] host::Value Get(std::size_t at) const;
  /// Passes the cells from `first` on.
  void Pass(std::size_t first, CellSink& sink) const;
  /// Whether no row follows.
  bool last = false;

 private:
  struct Cell {
    Kind kind = Kind::kNull;
    std::size_t start = 0;  ///< of a text
    std::size_t length = 0;
    std::int64_t integer = 0;
    double number = 0;
  };
  [[nodiscard]] std::string_view TextOf(const Cell& cell) const {
    return std::string_view(texts_).substr(cell.start, cell.length);
  }

  std::vector<Cell> cells_;
  std::string texts_;
};

/// Reads the rows of a statement that has been run, in the thread of its connection. Each row is
/// read whole, in the order of its columns, because not every driver gives a cell twice or out of
/// turn.
class OdbcReader {
 public:
  OdbcReader(OdbcLink& link, OdbcHandle statement);
  [[nodiscard]] const std::vector<std::string>& Names() const { return names_; }
  /// The next rows, `most` at most.
  [[nodiscard]] OdbcPortion Read(OdbcLink& link, int most);

 private:
  enum class Kind { kInteger, kNumber, kDecimal, kText };

  void Describe(OdbcLink& link, SQLUSMALLINT position);
  void ReadCell(OdbcLink& link, SQLUSMALLINT position, Kind kind, OdbcPortion& portion);
  void ReadText(OdbcLink& link, SQLUSMALLINT position, bool decimal, OdbcPortion& portion);

  OdbcHandle statement_;
  std::vector<std::string> names_;
  std::vector<Kind> kinds_;
  std::u16string long_text_;
};

}  // namespace desk::book
