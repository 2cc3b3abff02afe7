#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "com/class_info.h"
#include "com/com_object.h"
#include "com/error_support.h"
#include "com/events.h"
#include "component/activex/embedded_view.h"
#include "component/activex/in_place.h"
#include "component/activex/listening.h"
#include "component/activex/ole_control.h"
#include "component/activex/ole_in_place.h"
#include "component/activex/ole_object.h"
#include "component/activex/persistence.h"
#include "component/activex/site.h"
#include "component/activex/view_object.h"
#include "component/controls/child_objects.h"

namespace tavrix::component {

/// What a class of controls is known by.
struct ControlFacts {
  CLSID clsid;
  IID source;  ///< of its events
  const wchar_t* user_type;
};

/// What every control of the library is to a container. Works without one too. A class derives
/// from it and publishes its own interfaces.
class ActiveControl : public com::ComObject {
 public:
  [[nodiscard]] const ControlFacts& Facts() const { return facts_; }
  [[nodiscard]] Site& ClientSite() { return site_; }
  [[nodiscard]] InPlace& Placement() { return in_place_; }
  [[nodiscard]] EmbeddedView& View() { return *view_; }
  [[nodiscard]] com::EventSource& Events() { return events_; }
  [[nodiscard]] ChildObjects& Children() { return *children_; }
  /// For adapters of the host, which may outlive the control.
  [[nodiscard]] const std::shared_ptr<ViewOwner>& Owner() const { return owner_; }
  [[nodiscard]] std::weak_ptr<ChildObjects> ChildrenReference() const { return children_; }

  /// Enters a container, or leaves it with null.
  void SetSite(IOleClientSite* site);
  /// The container's fonts, colours or name have changed.
  void ApplyAmbients();
  /// Size in HIMETRIC (0.01 mm).
  [[nodiscard]] SIZEL Extent() const { return extent_; }
  void SetExtent(const SIZEL& extent);

  /// Arranges the view in a size (twips), and the size that it has been arranged in.
  void Resize(const SIZE& twips);
  [[nodiscard]] SIZE Size() const { return size_; }

  /// Colour as a caller sets it: the container's own no longer counts.
  void SetBackColor(viewkit::Color color);

  [[nodiscard]] KeptState State() const;
  void Restore(const KeptState& state);
  /// The state has been changed since it was last kept or restored.
  [[nodiscard]] bool Dirty() const { return kept_ != State(); }
  void MarkKept() { kept_ = State(); }

 protected:
  /// `view` is the control's own from now on.
  ActiveControl(IUnknown* outer, const ControlFacts& facts, std::shared_ptr<EmbeddedView> view);
  ~ActiveControl() override;
  /// For listeners to the view, which may outlive the control.
  [[nodiscard]] Listening& Listeners() { return listening_; }

 private:
  void AddInterfaces();
  void ListenToView();

  ControlFacts facts_;
  com::EventSource events_;
  Site site_;
  std::shared_ptr<EmbeddedView> view_;
  Listening listening_;  // after the view, whose events it listens to
  std::shared_ptr<ViewOwner> owner_;
  std::shared_ptr<ChildObjects> children_;
  InPlace in_place_;  // after the view: its window must go first
  SIZEL extent_;
  SIZE size_{};
  std::optional<KeptState> kept_;
  bool own_back_color_ = false;
  bool applying_ambients_ = false;

  com::ErrorSupport errors_;
  com::ConnectionPointContainer event_container_;
  com::EventClassInfo class_info_;
  OleObject ole_object_;
  OleControl ole_control_;
  OleInPlaceObject in_place_object_;
  OleInPlaceActiveObject in_place_active_object_;
  ViewObject view_object_;
  StreamPersistence stream_;
  BagPersistence bag_;
  StoragePersistence storage_;
};

}  // namespace tavrix::component
