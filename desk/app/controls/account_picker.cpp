#include "app/controls/account_picker.h"

#include <oleauto.h>

#include "app/automation/com_helpers.h"
#include "app/com.h"
#include "app/controls/controls.h"
#include "host/error.h"
#include "host/utf.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

constexpr DISPID kDoSelect = 1;
constexpr DISPID kDoCancel = 2;
/// Part of the name of the file that keeps the picker's layout.
constexpr long kPostingProgram = 202;

HRESULT Tell(const PickerEvents& events, DISPID event) {
  if (event == kDoSelect) events.selected();
  if (event == kDoCancel) events.cancelled();
  return S_OK;
}

std::wstring CodeOf(IDispatch* account) {
  const auto picked = Query<_clsKjkm>(account);
  if (!picked) throw ComFailure(E_NOINTERFACE);
  Bstr code;
  CheckCall(picked->get_ccode(code.Put()));
  return std::wstring(ViewOf(code.Get()));
}

}  // namespace

AccountPicker::AccountPicker(ContainerPlan plan, PickerEvents events)
    : control_(CreateControl(CLSID_selKjkm)) {
  picker_ = control_.As<IPickerUI>();
  if (!picker_) throw ComFailure(E_NOINTERFACE);
  const auto controls = ControlsOf(control_.Get());
  search_ = Part<ISearchControl>(controls.Get(), "SearchBox1");
  grid_ = Part<IFlexGrid>(controls.Get(), "Vs");
  sink_.emplace(control_.Get(), __uuidof(__selKjkm),
                [events = std::move(events)](DISPID event, const DISPPARAMS&) {
                  return Tell(events, event);
                });
  container_ = std::make_unique<ControlContainer>(control_.Get(), std::move(plan));
}

void AccountPicker::Start(IDispatch* system) {
  VARIANT_BOOL done = VARIANT_FALSE;
  CheckCall(picker_->Init(&system, kPostingProgram, nullptr, &done));
  if (done == VARIANT_FALSE) throw host::HostError("科目选择控件不能启动");
}

void AccountPicker::SaveLayout() {
  if (restored_) picker_->DoSaveFormStatus();
}

void AccountPicker::RestoreLayout() {
  picker_->DoGetFormStatus();
  restored_ = true;
}

ComPtr<IButtonControl> AccountPicker::ButtonAt(Button button) const {
  const std::string name = "Cmd(" + std::to_string(button) + ")";
  return Part<IButtonControl>(ControlsOf(control_.Get()).Get(), name);
}

void AccountPicker::Press(Button button) {
  CheckCall(ButtonAt(button)->Click());
}

bool AccountPicker::Offers(Button button) const {
  VARIANT_BOOL visible = VARIANT_FALSE;
  VARIANT_BOOL enabled = VARIANT_FALSE;
  const auto control = ButtonAt(button);
  Check(control->get_Visible(&visible));
  Check(control->get_Enabled(&enabled));
  return visible != VARIANT_FALSE && enabled != VARIANT_FALSE;
}

bool AccountPicker::HasRow() const {
  long row = 0;
  long fixed = 0;
  Check(grid_->get_Row(&row));
  Check(grid_->get_FixedRows(&fixed));
  return row >= fixed;
}

std::string AccountPicker::StatusName() {
  return std::to_string(kPostingProgram) + tavrix::host::Narrow(kDisplayName);
}

AccountPicker::~AccountPicker() {
  sink_.reset();
  SaveLayout();
  picker_->Clear();
}

void AccountPicker::SetParameters(const std::shared_ptr<book::ParameterList>& parameters) {
  CheckCall(picker_->putref_Parameters(Make<ComParameters>(parameters).Get()));
}

void AccountPicker::Refresh(const std::wstring& sought) {
  VARIANT_BOOL done = VARIANT_FALSE;
  CheckCall(picker_->Refresh(&done));
  if (!restored_) RestoreLayout();
  CheckCall(picker_->put_Text(Bstr(std::wstring_view(sought)).Get()));
}

std::optional<std::wstring> AccountPicker::Resolve(const std::wstring& typed) {
  const Bstr none;
  const Bstr code_field(std::string_view("ccode"));
  const Bstr text{std::wstring_view(typed)};
  Bstr code;
  Bstr name;
  VARIANT_BOOL meaningless = VARIANT_FALSE;
  SetErrorInfo(0, nullptr);
  CheckCall(picker_->Validate(none.Get(), code_field.Get(), none.Get(), text.Get(), code.Put(),
                              name.Put(), &meaningless));
  if (ViewOf(code.Get()).empty()) return std::nullopt;
  return std::wstring(ViewOf(code.Get()));
}

std::vector<std::wstring> AccountPicker::Picked() const {
  ComPtr<IDispatch> objects;
  Check(picker_->get_Objects(objects.Put()));
  const auto accounts = objects.As<_colKjkm>();
  if (!accounts) return {};
  long count = 0;
  Check(accounts->get_Count(&count));
  std::vector<std::wstring> codes;
  for (std::int32_t position = 1; position <= count; ++position) {
    ComPtr<_clsKjkm> account;
    Check(accounts->get_Item(Variant(position).Get(), account.Put()));
    codes.push_back(CodeOf(account.Get()));
  }
  return codes;
}

bool AccountPicker::Filters() const {
  VARIANT_BOOL filters = VARIANT_FALSE;
  return SUCCEEDED(search_->get_FilterMode(&filters)) && filters != VARIANT_FALSE;
}

void AccountPicker::FocusSearch() {
  long window = 0;
  const bool known = SUCCEEDED(search_->get_hWnd(&window)) && window != 0;
  if (!known) return;
  const HWND box = reinterpret_cast<HWND>(static_cast<INT_PTR>(window));
  SetFocus(box);
  SendMessageW(box, EM_SETSEL, 0, -1);  // typing replaces what stands there
}

}  // namespace desk::app
