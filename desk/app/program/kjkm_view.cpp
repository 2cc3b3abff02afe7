#include "app/program/kjkm_view.h"

#include "app/com/object.h"
#include "app/com/values.h"
#include "component/base/failure.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;
using tavrix::component::Bstr;
using tavrix::component::Check;
using tavrix::component::ComFailure;
using tavrix::component::ViewOf;

ComPtr<IUnknown> CreateControl() {
  ComPtr<IUnknown> control;
  const HRESULT result =
      CoCreateInstance(CLSID_Kjkm, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, control.PutVoid());
  if (SUCCEEDED(result)) return control;
  throw host::HostError("找不到科目控件 tavrix.dll，它应当与程序在同一文件夹：" +
                        tavrix::component::MeaningOf(result));
}

template <class Interface>
ComPtr<Interface> Part(IChildControls* controls, const std::string& name) {
  ComPtr<IDispatch> found;
  Check(controls->get_Item(Variant(std::string_view(name)).Get(), found.Put()));
  ComPtr<Interface> part = found.As<Interface>();
  if (!part) throw ComFailure(E_NOINTERFACE);
  return part;
}

std::wstring CellText(IFlexGrid& grid, long row, long col) {
  Bstr text;
  Check(grid.get_TextMatrix(row, col, text.Put()));
  return std::wstring(ViewOf(text.Get()));
}

}  // namespace

KjkmView::KjkmView(ContainerPlan plan, ViewEvents events) : control_(CreateControl()) {
  form_ = control_.As<IFormUI>();
  if (!form_) throw ComFailure(E_NOINTERFACE);
  FindControls();
  sink_.emplace(control_.Get(), std::move(events));
  container_ = std::make_unique<ControlContainer>(control_.Get(), std::move(plan));
}

KjkmView::~KjkmView() {
  if (started_) form_->DoSaveFormStatus();
  VARIANT_BOOL meaningless = VARIANT_FALSE;
  form_->Clear(&meaningless);
}

void KjkmView::FindControls() {
  const auto design = control_.As<IDesignUI>();
  if (!design) throw ComFailure(E_NOINTERFACE);
  ComPtr<IDispatch> list;
  Check(design->get_Controls(list.Put()));
  const auto controls = list.As<IChildControls>();
  if (!controls) throw ComFailure(E_NOINTERFACE);
  tabs_ = Part<ITabControl>(controls.Get(), "vxVSTab");
  for (int page = 0; page < kPages; ++page) {
    grids_[static_cast<std::size_t>(page)] =
        Part<IFlexGrid>(controls.Get(), "Vs(" + std::to_string(page) + ")");
  }
}

void KjkmView::Start(IDispatch* system) {
  constexpr long kNotUsed = 0;
  VARIANT_BOOL done = VARIANT_FALSE;
  Check(form_->Init(&system, kNotUsed, kNotUsed, &done));
  if (done == VARIANT_FALSE) throw host::HostError("科目控件不能启动");
  ReadAttributes();
  Call(&IFormUI::Refresh);
  form_->DoGetFormStatus();
  started_ = true;
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
  VARIANT_BOOL done = VARIANT_FALSE;
  const Variant wanted{Bstr(std::wstring_view(text))};
  return SUCCEEDED(form_->Filter(wanted.Get(), &done)) && done != VARIANT_FALSE;
}

IFlexGrid& KjkmView::CurrentGrid() const {
  long page = 0;
  Check(tabs_->get_CurrTab(&page));
  return *grids_.at(static_cast<std::size_t>(page)).Get();
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
