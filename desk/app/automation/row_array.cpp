#include "app/automation/row_array.h"

#include <array>
#include <cstring>
#include <new>
#include <string_view>
#include <vector>

#include "com/bstr.h"
#include "host/non_copyable.h"

namespace desk::app {
namespace {

/// Collects cells as VARIANTs in reading order, which is also the order of the array's memory. They
/// grow in blocks: moving a growing whole would cost more than making them.
class VariantCells : public book::CellSink, private tavrix::host::NonCopyable {
 public:
  ~VariantCells() override {
    for (auto& block : blocks_) {
      for (VARIANT& cell : block) VariantClear(&cell);
    }
  }

  void OnNull() override { Add(VT_NULL); }
  void OnInteger(std::int64_t number) override {
    const auto narrow = static_cast<LONG>(number);
    if (narrow != number) return OnNumber(static_cast<double>(number));
    Add(VT_I4).lVal = narrow;
  }
  void OnNumber(double number) override { Add(VT_R8).dblVal = number; }
  void OnText(std::string_view text) override { Add(VT_BSTR).bstrVal = tavrix::com::NewBstr(text); }

  [[nodiscard]] std::size_t Count() const {
    return blocks_.empty() ? 0 : (blocks_.size() - 1) * kBlock + blocks_.back().size();
  }
  /// Moves the cells to `target`, which has room for them.
  void MoveTo(void* target) {
    auto* cells = static_cast<VARIANT*>(target);
    for (const auto& block : blocks_) {
      std::memcpy(cells, block.data(), block.size() * sizeof(VARIANT));
      cells += block.size();
    }
    blocks_.clear();
  }

 private:
  static constexpr std::size_t kBlock = 8192;

  VARIANT& Add(VARTYPE kind) {
    if (blocks_.empty() || blocks_.back().size() == kBlock) {
      blocks_.emplace_back().reserve(kBlock);
    }
    VARIANT& cell = blocks_.back().emplace_back();
    cell.vt = kind;
    return cell;
  }

  std::vector<std::vector<VARIANT>> blocks_;
};

}  // namespace

SAFEARRAY* ArrayOfRows(book::SnapshotRecordset& rows) {
  VariantCells cells;
  rows.PassRows(cells);
  const std::size_t fields = rows.ColumnNames().size();
  std::array<SAFEARRAYBOUND, 2> bounds = {
      SAFEARRAYBOUND{static_cast<ULONG>(fields), 0},
      SAFEARRAYBOUND{static_cast<ULONG>(cells.Count() / fields), 0}};
  SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, bounds.size(), bounds.data());
  if (array == nullptr) throw std::bad_alloc();
  cells.MoveTo(array->pvData);
  return array;
}

}  // namespace desk::app
