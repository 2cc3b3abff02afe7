#include "app/controls/kjkm_view.h"

#include <algorithm>
#include <list>
#include <utility>

#include "app/automation/view_grid.h"
#include "app/com.h"
#include "app/controls/controls.h"
#include "book/host/grid_state.h"
#include "host/non_copyable.h"
#include "host/utf.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

using tavrix::host::Narrow;

constexpr long kCodeColumn = 0;
constexpr DISPID kMessage = 1;
constexpr DISPID kErrMessage = 2;

std::wstring TextAt(const DISPPARAMS& arguments, UINT from_end) {
  const Variant text = Variant(arguments.rgvarg[from_end]).As(VT_BSTR);
  return std::wstring(ViewOf(text.Get().bstrVal));
}

HRESULT Tell(const ViewEvents& events, DISPID event, const DISPPARAMS& arguments) {
  if (event == kMessage && arguments.cArgs == 1) {
    events.message(TextAt(arguments, 0));
    return S_OK;
  }
  if (event == kErrMessage && arguments.cArgs == 3) {
    const Variant level = Variant(arguments.rgvarg[1]).As(VT_I4);
    events.report(TextAt(arguments, 2), level.Get().lVal, TextAt(arguments, 0));
    return S_OK;
  }
  return DISP_E_MEMBERNOTFOUND;
}

std::wstring CellText(IFlexGrid& grid, long row, long col) {
  Bstr text;
  Check(grid.get_TextMatrix(row, col, text.Put()));
  return std::wstring(ViewOf(text.Get()));
}

long CodeWidth(IFlexGrid& grid) {
  long width = 0;
  Check(grid.get_ColWidth(kCodeColumn, &width));
  return width;
}

}  // namespace

KjkmView::KjkmView(ContainerPlan plan, ViewEvents events) : control_(CreateControl(CLSID_Kjkm)) {
  form_ = control_.As<IFormUI>();
  if (!form_) throw ComFailure(E_NOINTERFACE);
  FindControls();
  sink_.emplace(control_.Get(), __uuidof(__Kjkm),
                [events = std::move(events)](DISPID event, const DISPPARAMS& arguments) {
                  return Tell(events, event, arguments);
                });
  container_ = std::make_unique<ControlContainer>(control_.Get(), std::move(plan));
}

KjkmView::~KjkmView() {
  if (started_) SaveLayout();
  VARIANT_BOOL meaningless = VARIANT_FALSE;
  form_->Clear(&meaningless);
}

void KjkmView::FindControls() {
  const auto controls = ControlsOf(control_.Get());
  tabs_ = Part<ITabControl>(controls.Get(), "vxVSTab");
  for (int page = 0; page < kPages; ++page) {
    grids_[static_cast<std::size_t>(page)] =
        Part<IFlexGrid>(controls.Get(), "Vs(" + std::to_string(page) + ")");
  }
}

void KjkmView::Start(IDispatch* system, std::shared_ptr<host::GridNavigator> navigator) {
  navigator_ = std::move(navigator);
  constexpr long kNotUsed = 0;
  VARIANT_BOOL done = VARIANT_FALSE;
  CheckCall(form_->Init(&system, kNotUsed, kNotUsed, &done));
  if (done == VARIANT_FALSE) throw host::HostError("科目控件不能启动");
  ReadAttributes();
  Call(&IFormUI::Refresh);
  FitCodeColumns();
  started_ = true;
}

/// What the user has made of a page, over a reading of its rows. The page stands still meanwhile.
class KjkmView::Kept : private host::NonCopyable {
 public:
  Kept(ComPtr<IFlexGrid> grid, std::wstring filter)
      : grid_(std::move(grid)),
        still_(grid_),
        state_(book::GridState::Of(ViewGrid(grid_))),
        filter_(std::move(filter)) {
    still_.BeginUpdate();
  }
  ~Kept() { still_.EndUpdate(); }

  void PutBack(host::GridNavigator& navigator) const {
    ViewGrid rows(grid_);
    // Freshly read rows are all shown; the filter that the user sees in its bar holds on.
    if (!filter_.empty()) {
      static_cast<void>(navigator.Filter(rows, host::Value(Narrow(filter_))));
    }
    state_.PutBack(rows);
  }

 private:
  ComPtr<IFlexGrid> grid_;
  ViewGrid still_;
  book::GridState state_;
  std::wstring filter_;
};

bool KjkmView::Reload() {
  const auto columns = code_columns_;
  std::list<Kept> pages;
  for (int page = 0; page < kPages; ++page) {
    const auto at = static_cast<std::size_t>(page);
    pages.emplace_back(grids_.at(at), filters_.at(at));
  }
  const bool done = Call(&IFormUI::Refresh);
  for (const Kept& page : pages) page.PutBack(*navigator_);
  for (int page = 0; page < kPages; ++page) {
    const CodeColumn& column = columns.at(static_cast<std::size_t>(page));
    if (column.by_hand) Check(Grid(page).put_ColWidth(kCodeColumn, column.width));
    code_columns_.at(static_cast<std::size_t>(page)) = {.width = CodeWidth(Grid(page)),
                                                        .by_hand = column.by_hand};
  }
  return done;
}

std::vector<std::vector<std::string>> KjkmView::OpenBranches() {
  std::vector<std::vector<std::string>> pages;
  for (int page = 0; page < kPages; ++page) {
    const auto at = static_cast<std::size_t>(page);
    ViewGrid rows(grids_.at(at));
    if (!filters_.at(at).empty()) static_cast<void>(navigator_->Filter(rows, host::Value("")));
    filters_.at(at).clear();
    pages.push_back(book::GridState::Of(rows).open);
  }
  return pages;
}

void KjkmView::OpenAgain(const std::vector<std::vector<std::string>>& pages) {
  const std::size_t known = std::min<std::size_t>(pages.size(), kPages);
  for (std::size_t page = 0; page < known; ++page) {
    if (pages[page].empty()) continue;
    ViewGrid rows(grids_.at(page));
    book::GridState{.open = pages[page]}.PutBack(rows);
  }
}

void KjkmView::NoteWidths() {
  for (int page = 0; page < kPages; ++page) {
    CodeColumn& column = code_columns_.at(static_cast<std::size_t>(page));
    long width = 0;
    if (FAILED(Grid(page).get_ColWidth(kCodeColumn, &width)) || width == column.width) continue;
    column = {.width = width, .by_hand = true};
  }
}

/// What the layout file says of the first column belongs to the book that was open before.
void KjkmView::FitCodeColumns() {
  std::array<long, kPages> fitting{};
  for (int page = 0; page < kPages; ++page) {
    fitting.at(static_cast<std::size_t>(page)) = CodeWidth(Grid(page));
  }
  RestoreLayout();
  for (int page = 0; page < kPages; ++page) {
    CodeColumn& column = code_columns_.at(static_cast<std::size_t>(page));
    column.width = CodeWidth(Grid(page));
    if (column.width == 0) continue;  // hidden, as the user wants it
    column.width = fitting.at(static_cast<std::size_t>(page));
    Check(Grid(page).put_ColWidth(kCodeColumn, column.width));
  }
}

void KjkmView::SaveLayout() {
  form_->DoSaveFormStatus();
}

void KjkmView::RestoreLayout() {
  form_->DoGetFormStatus();
}

void KjkmView::ReadAttributes() {
  Bstr answer;
  const Bstr name(std::string_view("isVisibleNewNext"));
  Check(form_->get_Attributes(name.Get(), answer.Put()));
  offers_add_child_ = ViewOf(answer.Get()) == L"True";
}

bool KjkmView::Call(HRESULT (STDMETHODCALLTYPE IFormUI::*command)(VARIANT_BOOL*)) {
  const ComPtr<IFormUI> form = form_;  // a dialog's message loop may end this view
  VARIANT_BOOL done = VARIANT_FALSE;
  return SUCCEEDED((form.Get()->*command)(&done)) && done != VARIANT_FALSE;
}

bool KjkmView::Find(const std::wstring& text) {
  VARIANT_BOOL done = VARIANT_FALSE;
  const Variant sought{Bstr(std::wstring_view(text))};
  return SUCCEEDED(form_->Find(sought.Get(), &done)) && done != VARIANT_FALSE;
}

bool KjkmView::Filter(const std::wstring& text) {
  filters_.at(static_cast<std::size_t>(CurrentPage())) = text;
  VARIANT_BOOL done = VARIANT_FALSE;
  const Variant wanted{Bstr(std::wstring_view(text))};
  return SUCCEEDED(form_->Filter(wanted.Get(), &done)) && done != VARIANT_FALSE;
}

int KjkmView::CurrentPage() const {
  long page = 0;
  Check(tabs_->get_CurrTab(&page));
  return static_cast<int>(page);
}

std::wstring KjkmView::PageCaption(int page) const {
  Bstr caption;
  Check(tabs_->get_TabCaption(page, caption.Put()));
  return std::wstring(ViewOf(caption.Get()));
}

ViewState KjkmView::State() const {
  IFlexGrid& grid = CurrentGrid();
  long rows = 0;
  long fixed = 0;
  long row = 0;
  Check(grid.get_Rows(&rows));
  Check(grid.get_FixedRows(&fixed));
  Check(grid.get_Row(&row));
  return {.has_rows = rows > fixed, .row_selected = row >= fixed && row < rows};
}

std::optional<RowAccount> KjkmView::SelectedAccount() const {
  if (!State().row_selected) return std::nullopt;
  IFlexGrid& grid = CurrentGrid();
  long row = 0;
  Check(grid.get_Row(&row));
  return RowAccount{.code = CellText(grid, row, 0), .name = CellText(grid, row, 1)};
}

}  // namespace desk::app
