// Columns of a layout: widths, order, formats.

#include "viewkit/layout/layout_reader.h"

#include <array>
#include <stdexcept>

#include "host/calls.h"
#include "host/report.h"
#include "host/text.h"
#include "viewkit/indexing.h"

namespace tavrix::viewkit {

using host::IgnoreErrors;

namespace {

/// Decimal places that a number can show; more is damage.
constexpr int kMaxDecimals = 30;
/// The longest format, in bytes, that is accepted: it is interpreted anew for each cell shown.
constexpr std::size_t kLongestFormat = 255;

/// The settings that hold the decimal places of the value kinds 1 to 8.
constexpr std::array<std::string_view, 8> kDecimalSettings = {
    "xsnumber",  // quantities
    "xsweight",  // weights
    "xsprice",   // prices
    "xswbje",    // amounts in foreign currency
    "xsybje",    // amounts in transaction currency
    "xswbtax",   // tax in foreign currency
    "xsybtax",   // tax in transaction currency
    "xshl"};     // exchange rates

std::string WithDecimals(std::string_view whole, std::string_view decimals) {
  const int places = SaneNumber(decimals);
  if (places < 0 || places > kMaxDecimals) throw std::out_of_range("decimal places");
  std::string format(whole);
  if (places > 0) format.append(".").append(SizeOf(places), '#');
  return format;
}

}  // namespace

void LayoutReader::ApplyColumns(bool width_only) {
  for (int col = 0; col < grid_.Cols(); ++col) {
    ApplyWidth(col);
    if (width_only) continue;
    ApplySort(col);
    ApplyMerge(col);
    ApplyDataType(col);
    ApplyFormat(col);
    ApplyAlignment(col);
    NoteTotals(col);
  }
}

void LayoutReader::ReadColumns() {
  for (int col = 0; col < grid_.Cols(); ++col) {
    ApplySort(col);
    NoteTotals(col);
  }
}

int LayoutReader::ReadColumn(std::string_view section, int col, int fallback) const {
  return file_.ReadNumber(section, LayoutFile::ColumnKey(col), fallback);
}

void LayoutReader::ApplyWidth(int col) {
  const int now = grid_.ColWidth(col);
  IgnoreErrors([&] {
    const bool hidden = file_.ReadFlag(layout::kHidden, LayoutFile::ColumnKey(col), now == 0);
    grid_.SetColWidth(col, hidden ? 0 : ReadColumn(layout::kWidth, col, now));
  });
}

/// Column after column from the left, each for itself, deliberately: the order that the last one
/// gives counts, and those before decide among its equals.
void LayoutReader::ApplySort(int col) {
  IgnoreErrors([&] { grid_.SetCol(col); });
  IgnoreErrors([&] { grid_.SetSort(static_cast<SortOrder>(ReadColumn(layout::kSort, col, 0))); });
}

void LayoutReader::ApplyMerge(int col) {
  IgnoreErrors([&] {
    const std::string key = LayoutFile::ColumnKey(col);
    grid_.SetMergeCol(col, file_.ReadFlag(layout::kMerge, key, grid_.MergeCol(col)));
  });
}

void LayoutReader::ApplyDataType(int col) {
  IgnoreErrors([&] {
    const int type = ReadColumn(layout::kDataType, col, static_cast<int>(grid_.ColDataType(col)));
    grid_.SetColDataType(col, static_cast<ColumnType>(type));
  });
}

void LayoutReader::ApplyFormat(int col) {
  IgnoreErrors([&] {
    const ColumnType type = grid_.ColDataType(col);
    if (type == ColumnType::kDouble || type == ColumnType::kEmpty) {
      return grid_.SetColFormat(col, NumberFormat(col));
    }
    const std::string stored = StoredFormat(col);
    const bool of_number = stored.find("###") != std::string::npos;
    grid_.SetColFormat(col, of_number ? std::string() : std::string(host::Trimmed(stored)));
  });
}

std::string LayoutReader::StoredFormat(int col) const {
  std::string stored =
      file_.Read(layout::kFormat, LayoutFile::ColumnKey(col), grid_.ColFormat(col));
  if (stored.size() > kLongestFormat) throw std::length_error("a format that nobody means");
  return stored;
}

std::string LayoutReader::NumberFormat(int col) const {
  const std::string key = LayoutFile::ColumnKey(col);
  const std::string stored = StoredFormat(col);
  const std::string_view format = host::Trimmed(stored);
  if (format.empty()) return {};
  const std::string_view whole = format.substr(0, format.find('.'));
  const std::string decimals = file_.Read(layout::kDecimals, key, "");
  if (const auto own = host::Trimmed(decimals); !own.empty()) return WithDecimals(whole, own);
  const double kind = host::LeadingNumber(file_.Read(layout::kValueKind, key, "0"));
  for (std::size_t i = 0; i < kDecimalSettings.size(); ++i) {
    if (kind == static_cast<double>(i + 1)) {
      return WithDecimals(whole, host::SettingText(system_, kDecimalSettings[i]));
    }
  }
  return std::string(format);
}

void LayoutReader::ApplyAlignment(int col) {
  IgnoreErrors([&] {
    const int now = static_cast<int>(grid_.ColAlignment(col));
    const int alignment = ReadColumn(layout::kAlignment, col, now);
    grid_.SetColAlignment(col, static_cast<Alignment>(alignment));
  });
}

void LayoutReader::NoteTotals(int col) {
  const std::string key = LayoutFile::ColumnKey(col);
  IgnoreErrors([&] {
    if (file_.ReadFlag(layout::kGroup, key, false)) groups_.push_back(col);
  });
  IgnoreErrors([&] {
    if (file_.ReadFlag(layout::kTotal, key, false)) totals_.push_back(col);
  });
}

}  // namespace tavrix::viewkit
