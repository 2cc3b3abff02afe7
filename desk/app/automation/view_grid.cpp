#include "app/automation/view_grid.h"

#include <algorithm>
#include <new>
#include <utility>

#include "app/com.h"
#include "com/abi.h"
#include "host/report.h"
#include "host/utf.h"
#include "viewkit/ports.h"
#include "viewkit/win32/scale.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;
using tavrix::com::Flag;

/// What `IGridRows::GetStates` adds up.
constexpr unsigned char kHidden = 1;
constexpr unsigned char kCollapsed = 2;
constexpr unsigned char kShown = 4;
constexpr unsigned char kTotal = 8;

bool FlagOf(const tavrix::com::ComPtr<IFlexGrid>& grid,
            HRESULT (STDMETHODCALLTYPE IFlexGrid::*get)(VARIANT_BOOL*)) {
  VARIANT_BOOL flag = VARIANT_FALSE;
  Check((grid.Get()->*get)(&flag));
  return flag != VARIANT_FALSE;
}

/// An array of Automation that a call makes.
SAFEARRAY** MadeArray(tavrix::com::Variant& value, VARTYPE type) {
  value.InPlace()->vt = VT_ARRAY | type;
  value.InPlace()->parray = nullptr;
  return &value.InPlace()->parray;
}

/// The elements of a vector of Automation; `value` holds it from now on.
template <class Element>
std::span<const Element> ElementsOf(const tavrix::com::Variant& value) {
  const SAFEARRAY* const array = value.Get().parray;
  if (array == nullptr) return {};
  return {static_cast<const Element*>(array->pvData), array->rgsabound[0].cElements};
}

/// A vector of Automation with these bytes.
tavrix::com::Variant VectorOf(std::span<const unsigned char> bytes) {
  tavrix::com::Variant made;
  SAFEARRAY** const array = MadeArray(made, VT_UI1);
  *array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  if (*array == nullptr) throw std::bad_alloc();
  std::ranges::copy(bytes, static_cast<unsigned char*>((*array)->pvData));
  return made;
}

}  // namespace

ViewGrid::ViewGrid(tavrix::com::ComPtr<IFlexGrid> grid)
    : grid_(std::move(grid)), rows_(grid_.As<IGridRows>()) {
  if (!rows_) return;
  for (int col = 0; col < Cols(); ++col) {
    places_.push_back(ColHidden(col) ? -1 : read_columns_++);
  }
}

bool ViewGrid::Read(int row) const {
  if (!rows_ || row < 0) return false;
  if (row >= block_.first && row - block_.first < std::ssize(block_.level)) return true;
  constexpr int kRows = 1024;
  Block block{.first = row / kRows * kRows};
  Check(rows_->GetRows(block.first, kRows, MadeArray(block.levels, VT_I4),
                       MadeArray(block.ends, VT_I4), MadeArray(block.text, VT_UI1)));
  block.level = ElementsOf<LONG>(block.levels);
  block.end = ElementsOf<LONG>(block.ends);
  block.bytes = ElementsOf<char>(block.text).data();
  if (block.end.size() != block.level.size() * static_cast<std::size_t>(read_columns_)) {
    return false;
  }
  block_ = std::move(block);
  return row - block_.first < std::ssize(block_.level);
}

ViewGrid::~ViewGrid() {
  host::IgnoreErrors([this] { HandOn(); });
}

void ViewGrid::HandOn() const {
  const int first = first_changed_;
  const int count = std::exchange(end_changed_, 0) - std::exchange(first_changed_, 0);
  if (count <= 0) return;
  const tavrix::com::Variant array =
      VectorOf({states_.data() + first, static_cast<std::size_t>(count)});
  Check(rows_->SetStates(first, array.Get().parray));
}

unsigned char* ViewGrid::StateOf(int row) const {
  if (!rows_ || row < 0) return nullptr;
  if (states_.empty()) {
    tavrix::com::Variant made;
    Check(rows_->GetStates(0, Rows(), MadeArray(made, VT_UI1)));
    const auto states = ElementsOf<unsigned char>(made);
    states_.assign(states.begin(), states.end());
  }
  const auto place = static_cast<std::size_t>(row);
  return place < states_.size() ? &states_[place] : nullptr;
}

template <class Result>
Result ViewGrid::Get(HRESULT (STDMETHODCALLTYPE IFlexGrid::*member)(Result*)) const {
  Result result{};
  Check((grid_.Get()->*member)(&result));
  return result;
}

template <class Result>
Result ViewGrid::GetAt(HRESULT (STDMETHODCALLTYPE IFlexGrid::*member)(long, Result*),
                       int index) const {
  Result result{};
  Check((grid_.Get()->*member)(index, &result));
  return result;
}

std::string ViewGrid::TypeName() const {
  Bstr text;
  Check(grid_->get_TypeName(text.Put()));
  return TextOf(text.Get());
}

const std::string& ViewGrid::Name() const {
  Bstr text;
  Check(grid_->get_Name(text.Put()));
  return name_ = TextOf(text.Get());
}

std::optional<int> ViewGrid::Index() const {
  long index = 0;
  if (FAILED(grid_->get_Index(&index))) return std::nullopt;
  return static_cast<int>(index);
}

std::intptr_t ViewGrid::WindowHandle() const {
  long window = 0;
  Check(grid_->get_hWnd(&window));
  return window;
}

bool ViewGrid::Visible() const {
  return FlagOf(grid_, &IFlexGrid::get_Visible);
}

void ViewGrid::SetVisible(bool visible) {
  Check(grid_->put_Visible(Flag(visible)));
}

bool ViewGrid::Enabled() const {
  return FlagOf(grid_, &IFlexGrid::get_Enabled);
}

void ViewGrid::SetEnabled(bool enabled) {
  Check(grid_->put_Enabled(Flag(enabled)));
}

host::Bounds ViewGrid::GetBounds() const {
  long left = 0;
  long top = 0;
  long width = 0;
  long height = 0;
  Check(grid_->get_Left(&left));
  Check(grid_->get_Top(&top));
  Check(grid_->get_Width(&width));
  Check(grid_->get_Height(&height));
  return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(width),
          static_cast<int>(height)};
}

void ViewGrid::SetBounds(const host::Bounds& bounds) {
  Check(grid_->put_Left(bounds.left));
  Check(grid_->put_Top(bounds.top));
  Check(grid_->put_Width(bounds.width));
  Check(grid_->put_Height(bounds.height));
}

const std::string& ViewGrid::ToolTipText() const {
  Bstr text;
  Check(grid_->get_ToolTipText(text.Put()));
  return tip_ = TextOf(text.Get());
}

void ViewGrid::SetToolTipText(std::string text) {
  Check(grid_->put_ToolTipText(Bstr(std::string_view(text)).Get()));
}

int ViewGrid::Rows() const {
  if (!row_count_) row_count_ = static_cast<int>(Get(&IFlexGrid::get_Rows));
  return *row_count_;
}

int ViewGrid::Cols() const {
  return static_cast<int>(Get(&IFlexGrid::get_Cols));
}

int ViewGrid::FixedRows() const {
  if (!fixed_rows_) fixed_rows_ = static_cast<int>(Get(&IFlexGrid::get_FixedRows));
  return *fixed_rows_;
}

int ViewGrid::Row() const {
  HandOn();
  return static_cast<int>(Get(&IFlexGrid::get_Row));
}

void ViewGrid::SetRow(int row) {
  HandOn();
  Check(grid_->put_Row(row));
}

int ViewGrid::TopRow() const {
  HandOn();
  return static_cast<int>(Get(&IFlexGrid::get_TopRow));
}

void ViewGrid::SetTopRow(int row) {
  HandOn();
  Check(grid_->put_TopRow(row));
}

std::string_view ViewGrid::TextMatrix(int row, int col) const {
  const int place =
      static_cast<std::size_t>(col) < places_.size() ? places_[static_cast<std::size_t>(col)] : -1;
  if (place >= 0 && Read(row)) {
    const auto cell = static_cast<std::size_t>((row - block_.first) * read_columns_ + place);
    const LONG start = cell == 0 ? 0 : block_.end[cell - 1];
    return {block_.bytes + start, static_cast<std::size_t>(block_.end[cell] - start)};
  }
  Bstr text;
  Check(grid_->get_TextMatrix(row, col, text.Put()));
  text_.clear();
  host::AppendNarrow(text_, tavrix::com::ViewOf(text.Get()));
  return text_;
}

bool ViewGrid::RowHidden(int row) const {
  if (const unsigned char* const state = StateOf(row)) return (*state & kHidden) != 0;
  return GetAt(&IFlexGrid::get_RowHidden, row) != VARIANT_FALSE;
}

bool ViewGrid::IsTotalRow(int row) const {
  const unsigned char* const state = StateOf(row);
  return state != nullptr && (*state & kTotal) != 0;
}

std::uint64_t ViewGrid::TextVersion() const {
  hyper version = 0;
  if (rows_) Check(rows_->TextVersion(&version));
  return static_cast<std::uint64_t>(version);
}

void ViewGrid::SetRowHidden(int row, bool hidden) {
  if (StateOf(row) != nullptr) return SetState(row, kHidden, hidden);
  shown_.clear();
  Check(grid_->put_RowHidden(row, Flag(hidden)));
}

void ViewGrid::SetState(int row, unsigned char bit, bool on) {
  unsigned char& state = *StateOf(row);
  if (((state & bit) != 0) == on) return;
  state = static_cast<unsigned char>(state ^ bit);
  shown_changed_ = true;
  const bool none = end_changed_ <= first_changed_;
  first_changed_ = none ? row : std::min(first_changed_, row);
  end_changed_ = none ? row + 1 : std::max(end_changed_, row + 1);
}

int ViewGrid::RowOutlineLevel(int row) const {
  if (IsSubtotal(row) && Read(row)) {
    return static_cast<int>(block_.level[static_cast<std::size_t>(row - block_.first)]);
  }
  return static_cast<int>(GetAt(&IFlexGrid::get_RowOutlineLevel, row));
}

bool ViewGrid::IsSubtotal(int row) const {
  if (Read(row)) return block_.level[static_cast<std::size_t>(row - block_.first)] >= 0;
  return GetAt(&IFlexGrid::get_IsSubtotal, row) != VARIANT_FALSE;
}

bool ViewGrid::IsCollapsed(int row) const {
  if (const unsigned char* const state = StateOf(row)) return (*state & kCollapsed) != 0;
  return GetAt(&IFlexGrid::get_IsCollapsed, row) != VARIANT_FALSE;
}

void ViewGrid::SetCollapsed(int row, bool collapsed) {
  if (StateOf(row) != nullptr) return SetState(row, kCollapsed, collapsed);
  shown_.clear();
  Check(grid_->put_IsCollapsed(row, Flag(collapsed)));
}

bool ViewGrid::ColHidden(int col) const {
  return GetAt(&IFlexGrid::get_ColHidden, col) != VARIANT_FALSE;
}

void ViewGrid::FindShownRows() const {
  constexpr int kAnyLevel = -1;
  const int rows = Rows();
  const int first = FixedRows();
  shown_.assign(static_cast<std::size_t>(rows), true);
  int closed_level = kAnyLevel;  // level of the collapsed node that the walk is inside of
  for (int row = first; row < rows; ++row) {
    const bool node = IsSubtotal(row);
    const int level = node ? RowOutlineLevel(row) : 0;
    if (closed_level != kAnyLevel && node && level <= closed_level) closed_level = kAnyLevel;
    const bool inside = closed_level != kAnyLevel;
    shown_[static_cast<std::size_t>(row)] = !inside && !RowHidden(row);
    if (!inside && node && IsCollapsed(row)) closed_level = level;
  }
}

bool ViewGrid::IsShown(int row) const {
  if (std::exchange(shown_changed_, false)) {
    HandOn();
    states_.clear();
  }
  if (const unsigned char* const state = StateOf(row)) return (*state & kShown) != 0;
  if (shown_.empty()) FindShownRows();
  return row >= 0 && static_cast<std::size_t>(row) < shown_.size() &&
         shown_[static_cast<std::size_t>(row)];
}

int ViewGrid::HeightOf(int row) const {
  return static_cast<int>(GetAt(&IFlexGrid::get_RowHeight, row));
}

bool ViewGrid::IsInView(int row) const {
  const HWND window = reinterpret_cast<HWND>(WindowHandle());
  RECT area{};
  if (window == nullptr || !GetClientRect(window, &area) || !IsShown(row)) return false;
  int top = TopRow();
  if (row < top) return row < FixedRows();
  const int dpi = static_cast<int>(GetDpiForWindow(window));
  int left = MulDiv(static_cast<int>(area.bottom), tavrix::viewkit::kTwipsPerInch, dpi);
  for (int fixed = 0; fixed < FixedRows(); ++fixed) left -= HeightOf(fixed);
  for (; top <= row && left > 0; ++top) {
    if (IsShown(top)) left -= HeightOf(top);
  }
  return left >= 0 && top > row;
}

std::optional<int> ViewGrid::BottomOf(int row) const {
  const HWND window = reinterpret_cast<HWND>(WindowHandle());
  if (window == nullptr || row < FixedRows() || row < TopRow() || !IsShown(row)) return {};
  const tavrix::viewkit::win32::Scale scale{static_cast<int>(GetDpiForWindow(window))};
  RECT area{};
  GetClientRect(window, &area);
  int bottom = 0;
  for (int fixed = 0; fixed < FixedRows(); ++fixed) bottom += scale.ToPixels(HeightOf(fixed));
  for (int each = TopRow(); each <= row && bottom <= area.bottom; ++each) {
    if (IsShown(each)) bottom += scale.ToPixels(HeightOf(each));
  }
  return bottom <= area.bottom ? std::optional(bottom) : std::nullopt;
}

void ViewGrid::BeginUpdate() {
  if (updates_++ > 0) return;
  const HWND window = reinterpret_cast<HWND>(WindowHandle());
  // Painting that comes on again makes a window visible.
  still_ = window != nullptr && Visible();
  if (still_) SendMessageW(window, WM_SETREDRAW, FALSE, 0);
}

void ViewGrid::EndUpdate() {
  if (--updates_ > 0) return;
  HandOn();
  if (!still_) return;
  long window = 0;
  if (FAILED(grid_->get_hWnd(&window)) || window == 0) return;
  const HWND hwnd = reinterpret_cast<HWND>(static_cast<INT_PTR>(window));
  SendMessageW(hwnd, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(hwnd, nullptr, FALSE);
}

}  // namespace desk::app
