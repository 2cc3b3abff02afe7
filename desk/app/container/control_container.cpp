#include "app/container/control_container.h"

#include <ocidl.h>
#include <olectl.h>

#include "app/container/control_site.h"
#include "com/com_ptr.h"
#include "host/error.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

void Require(HRESULT result) {
  if (FAILED(result)) throw host::HostError("控件不能在窗口中打开");
}

/// New controls want to be told that there is nothing to load.
void InitNew(IOleObject* control) {
  if (const auto persist = Query<IPersistStreamInit>(control)) persist->InitNew();
}

}  // namespace

struct ControlContainer::Parts {
  ContainerPlan plan;
  ComPtr<IOleObject> control;
  ComPtr<InPlaceFrame> frame;
  ComPtr<ControlSite> site;

  void Attach();
  [[nodiscard]] HRESULT DoVerb(LONG verb, MSG* message = nullptr);
};

void ControlContainer::Parts::Attach() {
  site->SetControl(control.Get());
  DWORD misc = 0;
  control->GetMiscStatus(DVASPECT_CONTENT, &misc);
  const bool site_first = (misc & OLEMISC_SETCLIENTSITEFIRST) != 0;
  if (site_first) Require(control->SetClientSite(site.Get()));
  InitNew(control.Get());
  if (!site_first) Require(control->SetClientSite(site.Get()));
  control->SetHostNames(plan.display_name.c_str(), nullptr);
}

HRESULT ControlContainer::Parts::DoVerb(LONG verb, MSG* message) {
  RECT area{};
  GetClientRect(plan.area, &area);
  return control->DoVerb(verb, message, site.Get(), 0, plan.area, &area);
}

ControlContainer::ControlContainer(IUnknown* control, ContainerPlan plan)
    : parts_(std::make_unique<Parts>()) {
  parts_->control = Query<IOleObject>(control);
  if (!parts_->control) Require(E_NOINTERFACE);
  parts_->plan = std::move(plan);
  parts_->frame = Make<InPlaceFrame>(parts_->plan);
  parts_->site = Make<ControlSite>(parts_->plan, parts_->frame);
  parts_->Attach();
  Require(parts_->DoVerb(OLEIVERB_INPLACEACTIVATE));
}

ControlContainer::~ControlContainer() {
  const ComPtr<IOleInPlaceObject> in_place = parts_->site->InPlace();
  if (in_place) {
    in_place->UIDeactivate();
    in_place->InPlaceDeactivate();
  }
  parts_->control->Close(OLECLOSE_NOSAVE);
  parts_->control->SetClientSite(nullptr);
  parts_->site->Retire();
  parts_->frame->Retire();
}

void ControlContainer::SetArea(const RECT& area) {
  const ComPtr<IOleInPlaceObject> in_place = parts_->site->InPlace();
  if (in_place) in_place->SetObjectRects(&area, &area);
}

void ControlContainer::OnFrameActivate(bool active) {
  const ComPtr<IOleInPlaceActiveObject> object = parts_->frame->Active();
  if (object) object->OnFrameWindowActivate(active ? TRUE : FALSE);
}

bool ControlContainer::Focus() {
  if (HasFocus()) return true;
  return SUCCEEDED(parts_->DoVerb(OLEIVERB_UIACTIVATE)) && HasFocus();
}

bool ControlContainer::HasFocus() const {
  const HWND window = parts_->site->ControlWindow();
  const HWND focus = GetFocus();
  return window != nullptr && focus != nullptr && (window == focus || IsChild(window, focus));
}

bool ControlContainer::Translate(MSG& message) {
  if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST || !HasFocus()) return false;
  ComPtr<IOleInPlaceActiveObject> object = parts_->frame->Active();
  if (!object) object = Query<IOleInPlaceActiveObject>(parts_->control.Get());
  return object && object->TranslateAccelerator(&message) == S_OK;
}

void ControlContainer::OnAmbientChange() {
  if (const auto control = Query<IOleControl>(parts_->control.Get())) {
    control->OnAmbientPropertyChange(DISPID_UNKNOWN);
  }
}

}  // namespace desk::app
