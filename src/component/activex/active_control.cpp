#include "component/activex/active_control.h"

#include <olectl.h>

#include "viewkit/ports.h"

namespace tavrix::component {

namespace {

constexpr int kHimetricPerInch = 2540;
constexpr SIZEL kDefaultExtent{16'000, 11'000};

SIZE TwipsOf(const SIZEL& himetric) {
  const auto convert = [](LONG length) {
    return MulDiv(static_cast<int>(length), viewkit::kTwipsPerInch, kHimetricPerInch);
  };
  return {convert(himetric.cx), convert(himetric.cy)};
}

}  // namespace

ActiveControl::ActiveControl(IUnknown* outer, const ControlFacts& facts,
                             std::shared_ptr<EmbeddedView> view)
    : com::ComObject(outer),
      facts_(facts),
      events_(*this, facts.source),
      view_(std::move(view)),
      owner_(std::make_shared<ViewOwner>(ControllingUnknown())),
      children_(std::make_shared<ChildObjects>(
          std::shared_ptr<viewkit::ControlList>(view_, &view_->Controls()), owner_)),
      in_place_(*this),
      extent_(kDefaultExtent),
      errors_(*this),
      event_container_(*this, events_),
      class_info_(*this, facts_.clsid, facts_.source),
      ole_object_(*this),
      ole_control_(*this),
      in_place_object_(*this),
      in_place_active_object_(*this),
      view_object_(*this),
      stream_(*this),
      bag_(*this),
      storage_(*this) {
  AddInterfaces();
  Resize(TwipsOf(extent_));
  ListenToView();
}

ActiveControl::~ActiveControl() {
  // Whoever is at work on the view may keep it for a while.
  listening_.End();
  view_->SetModalHooks({});
  owner_->End();
}

void ActiveControl::ListenToView() {
  view_->SetModalHooks({.owner = [this] { return in_place_.ModalOwner(); },
                        .modal = [this](bool open) { in_place_.SetModal(open); }});
  listening_.To(view_->BackColorChanged(), [this] {
    if (!applying_ambients_) own_back_color_ = true;
    if (auto* window = in_place_.Window()) window->SetBackColor(view_->BackColor());
  });
}

void ActiveControl::AddInterfaces() {
  AddInterface(IID_ISupportErrorInfo, &errors_);
  AddInterface(IID_IConnectionPointContainer, &event_container_);
  AddInterface(IID_IProvideClassInfo, &class_info_);
  AddInterface(IID_IProvideClassInfo2, &class_info_);
  AddInterface(IID_IOleObject, &ole_object_);
  AddInterface(IID_IOleControl, &ole_control_);
  AddInterface(IID_IOleWindow, &in_place_object_);
  AddInterface(IID_IOleInPlaceObject, &in_place_object_);
  AddInterface(IID_IOleInPlaceActiveObject, &in_place_active_object_);
  AddInterface(IID_IViewObject, &view_object_);
  AddInterface(IID_IViewObject2, &view_object_);
  AddInterface(IID_IPersist, &stream_);
  AddInterface(IID_IPersistStreamInit, &stream_);
  AddInterface(IID_IPersistPropertyBag, &bag_);
  AddInterface(IID_IPersistStorage, &storage_);
}

void ActiveControl::SetSite(IOleClientSite* site) {
  const com::ComPtr<IUnknown> keep(&ControllingUnknown());
  if (site != site_.Client().Get()) in_place_.Deactivate();
  site_.Set(site);
  if (site != nullptr) ApplyAmbients();
}

void ActiveControl::ApplyAmbients() {
  // The container is asked, and may take the control out: its window is looked up each time.
  const com::ComPtr<IUnknown> keep(&ControllingUnknown());
  view_->SetContainerName(site_.DisplayName());
  const auto color = site_.BackColor();
  if (color && !own_back_color_) {
    applying_ambients_ = true;
    view_->SetBackColor(*color);
    applying_ambients_ = false;
  }
  if (!in_place_.Active()) return;
  const auto fore_color = site_.ForeColor();
  const auto font = site_.Font();
  if (auto* window = in_place_.Window()) window->SetForeColor(fore_color);
  if (auto* window = in_place_.Window()) window->SetFont(font);
}

void ActiveControl::SetExtent(const SIZEL& extent) {
  const com::ComPtr<IUnknown> keep(&ControllingUnknown());
  extent_ = extent;
  // A window has its own say: the container sizes it with the object's rectangle.
  if (!in_place_.Active()) Resize(TwipsOf(extent));
}

void ActiveControl::Resize(const SIZE& twips) {
  size_ = twips;
  view_->Resize(static_cast<int>(twips.cx), static_cast<int>(twips.cy));
}

void ActiveControl::SetBackColor(viewkit::Color color) {
  own_back_color_ = true;
  view_->SetBackColor(color);
}

KeptState ActiveControl::State() const {
  return {extent_.cx, extent_.cy, own_back_color_ ? view_->BackColor() : viewkit::color::kDefault};
}

void ActiveControl::Restore(const KeptState& state) {
  const com::ComPtr<IUnknown> keep(&ControllingUnknown());
  SetExtent({state.width, state.height});
  if (state.back_color != viewkit::color::kDefault) SetBackColor(state.back_color);
  MarkKept();
}

}  // namespace tavrix::component
