#pragma once

#include <string>
#include <vector>

namespace desk::views {

enum class PrintAlign { kLeft, kCenter, kRight };

struct PrintColumn {
  std::string caption = {};
  PrintAlign align = PrintAlign::kLeft;
  bool wraps = false;     ///< where there is too little room this column becomes narrower first
  bool indented = false;  ///< by the level of the row
  bool amount = false;    ///< negative ones are red
  bool merged = false;    ///< a text that stands in the row above as well is said once on a page
};

struct PrintRow {
  std::vector<std::string> cells = {};  ///< one for each column
  int level = 0;                        ///< of the outline, from 0
  bool bold = false;
  bool keep_with_previous = false;  ///< a total: it never begins a page
  bool keep_with_next = false;      ///< a heading: it never ends a page
};

/// What is to be printed, without paper. Every page bears title, the three texts below it and the
/// captions of the columns.
struct PrintTable {
  std::string title = {};
  std::string left = {};    ///< the company
  std::string middle = {};  ///< the period
  std::string right = {};   ///< the currency
  std::string foot = {};    ///< at the foot of each page, beside its number
  std::vector<PrintColumn> columns = {};
  std::vector<PrintRow> rows = {};
};

}  // namespace desk::views
