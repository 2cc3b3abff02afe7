#include "viewkit/grid/cell_store.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <utility>

namespace tavrix::viewkit {

namespace {

constexpr std::size_t kMaxText = 0x7FFFFFFF;
/// Less than this is not worth a pass over all cells.
constexpr std::size_t kMinWaste = std::size_t{64} * 1024;

/// Gives back room that growing left over, but for a little: the next rows that are added one by
/// one shall find a place without all of them moving.
template <class Container>
void DropSlack(Container& container) {
  if (container.capacity() <= container.size() + container.size() / 8) return;
  Container fitting;
  fitting.reserve(container.size() + container.size() / 12 + 64);
  fitting.insert(fitting.end(), container.begin(), container.end());
  container = std::move(fitting);
}

}  // namespace

std::uint64_t CellStore::FirstVersion() {
  constexpr std::uint64_t kChangesOfOne = std::uint64_t{1} << 32;  // apart from one another
  static std::atomic<std::uint64_t> next = 1;
  return next.fetch_add(kChangesOfOne);
}

void CellStore::Take(host::RowSet&& rows, int columns) {
  ++version_;
  host::RowSet::Storage storage = std::move(rows).Release();
  for (Cell& cell : storage.cells) {
    if (cell.length == host::RowSet::kNull) cell = {};
  }
  text_ = std::move(storage.text);
  wasted_ = 0;
  if (storage.columns == 0) {
    cells_.Reset(0);
  } else {
    storage.cells.resize(storage.cells.size() / storage.columns * storage.columns);
    DropSlack(storage.cells);
    cells_.Adopt(std::move(storage.cells), static_cast<int>(storage.columns));
  }
  cells_.SetWidth(columns);
  DropSlack(text_);
}

void CellStore::SetText(int row, int col, std::string_view text) {
  ++version_;
  const Cell cell = cells_.Get(row, col);
  if (text.size() <= cell.length) {
    text_.replace(cell.start, text.size(), text.data(), text.size());
    cells_.Set(row, {cell.start, static_cast<std::uint32_t>(text.size())}, col);
    Waste(cell.length - text.size());
    return;
  }
  if (text.size() > kMaxText - text_.size()) throw std::length_error("the grid's text is too long");
  const Cell now{static_cast<std::uint32_t>(text_.size()), static_cast<std::uint32_t>(text.size())};
  if (text.size() > text_.capacity() - text_.size()) {
    const std::string kept(text);  // growing the buffer would pull a part of it away
    GrowBy(text_, kept.size());
    text_.append(kept);
  } else {
    text_.append(text);
  }
  cells_.Set(row, now, col);
  Waste(cell.length);
}

void CellStore::Erase(int at, int count) {
  ++version_;
  if (count == Rows()) {
    std::string().swap(text_);
    wasted_ = 0;
    return cells_.Erase(at, count);
  }
  std::size_t bytes = 0;
  for (int row = at; row < at + count; ++row) bytes += BytesOf(row);
  cells_.Erase(at, count);
  Waste(bytes);
}

void CellStore::EraseAt(RowSpan rows) {
  ++version_;
  std::size_t bytes = 0;
  for (const int row : rows) bytes += BytesOf(row);
  cells_.EraseAt(rows);
  Waste(bytes);
}

std::size_t CellStore::BytesOf(int row) const {
  std::size_t bytes = 0;
  for (int col = 0; col < Columns(); ++col) bytes += cells_.Get(row, col).length;
  return bytes;
}

void CellStore::Waste(std::size_t bytes) {
  wasted_ += bytes;
  if (wasted_ > kMinWaste && wasted_ > text_.size() / 2) Compact();
}

void CellStore::Compact() {
  std::string text;
  text.reserve(text_.size() - std::min(wasted_, text_.size()));
  for (Cell& cell : cells_.All()) {
    const auto start = static_cast<std::uint32_t>(text.size());
    text.append(text_, cell.start, cell.length);
    cell.start = start;
  }
  text_ = std::move(text);
  wasted_ = 0;
}

}  // namespace tavrix::viewkit
