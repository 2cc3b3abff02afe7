#include "component/controls/child_objects.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "com/enumerator.h"
#include "com/object_registry.h"
#include "component/controls/grid_object.h"
#include "component/controls/simple_objects.h"
#include "component/controls/tree_objects.h"
#include "host/text.h"

namespace tavrix::component {

namespace {

/// Makes the object for the control when it is a `Model`.
template <class Object, class Model>
com::ComPtr<IDispatch> MakeIf(const std::shared_ptr<viewkit::Control>& control,
                              const std::shared_ptr<const ViewOwner>& owner) {
  const auto model = std::dynamic_pointer_cast<Model>(control);
  if (!model) return nullptr;
  return com::MakeObject<Object>(ModelReference<Model>(model, owner)).template As<IDispatch>();
}

using MakeObjectOf = com::ComPtr<IDispatch> (*)(const std::shared_ptr<viewkit::Control>& control,
                                                const std::shared_ptr<const ViewOwner>& owner);
struct Kind {
  std::string_view type_name;
  MakeObjectOf make;
};
constexpr Kind kKinds[] = {
    {"VSFlexGrid", &MakeIf<GridObject, viewkit::FlexGrid>},
    {"vxVSTabCtl", &MakeIf<TabStripObject, viewkit::TabStrip>},
    {"TreeView", &MakeIf<TreeViewObject, viewkit::TreeView>},
    {"SearchBox", &MakeIf<SearchBoxObject, viewkit::SearchBox>},
    {"CheckBox", &MakeIf<CheckBoxObject, viewkit::CheckBox>},
    {"OptionButton", &MakeIf<OptionButtonObject, viewkit::OptionButton>},
    {"CommandButton", &MakeIf<ButtonObject, viewkit::CommandButton>},
    {"Label", &MakeIf<LabelObject, viewkit::Label>},
};

const Kind* KindOf(const viewkit::Control& control) {
  const auto* const found = std::find_if(
      std::begin(kKinds), std::end(kKinds),
      [name = control.TypeName()](const Kind& kind) { return kind.type_name == name; });
  return found == std::end(kKinds) ? nullptr : found;
}

std::string FullName(const host::Control& control) {
  if (!control.Index()) return control.Name();
  return control.Name() + "(" + std::to_string(*control.Index()) + ")";
}

class CollectionObject : public com::DispatchObject<IChildControls> {
 public:
  explicit CollectionObject(ChildObjects& objects)
      : objects_(objects.weak_from_this()), entry_(&objects, *this) {}

  STDMETHODIMP get_Item(VARIANT index, IDispatch** result) noexcept override {
    return With([&](ChildObjects& objects) {
      com::Out(result) = nullptr;
      const com::Variant key(index);
      if (key.Type() == VT_BSTR) {
        *result = objects.Find(com::TextOf(key.Get().bstrVal)).Detach();
        return;
      }
      const long position = key.As(VT_I4).Get().lVal;
      if (position < 1) throw com::ComFailure(DISP_E_BADINDEX);
      *result = objects.At(static_cast<std::size_t>(position - 1)).Detach();
    });
  }
  STDMETHODIMP get_Count(long* result) noexcept override {
    return With(
        [&](ChildObjects& objects) { com::Out(result) = static_cast<long>(objects.Count()); });
  }
  STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override {
    return With([&](ChildObjects& objects) {
      com::Out(result) = nullptr;
      std::vector<com::Variant> all;
      for (std::size_t i = 0; i < objects.Count(); ++i) all.emplace_back(objects.At(i));
      *result = com::VariantEnumerator::Make(std::move(all)).Detach();
    });
  }

 private:
  template <class Body>
  [[nodiscard]] HRESULT With(const Body& body, const char* member = __builtin_FUNCTION()) noexcept {
    const auto run = [&] {
      const auto objects = objects_.lock();
      if (!objects) throw com::ComFailure(CO_E_OBJNOTCONNECTED, "控件集合所在的视图已经关闭");
      body(*objects);
    };
    return com::Guarded(IID_IChildControls, run, member);
  }

  std::weak_ptr<ChildObjects> objects_;
  com::ObjectRegistry<CollectionObject> entry_;
};

}  // namespace

std::shared_ptr<viewkit::ControlList> ChildObjects::Controls() const {
  auto controls = controls_.lock();
  if (!controls) throw com::ComFailure(CO_E_OBJNOTCONNECTED);
  return controls;
}

ChildObjects::ChildObjects(const std::shared_ptr<viewkit::ControlList>& controls,
                           std::shared_ptr<const ViewOwner> owner)
    : controls_(controls), owner_(std::move(owner)) {
  for (std::size_t i = 0; i < controls->Count(); ++i) {
    viewkit::Control& control = controls->At(i);
    if (KindOf(control) != nullptr) children_.push_back({&control, nullptr});
  }
}

com::ComPtr<IDispatch> ChildObjects::At(std::size_t position) {
  if (position >= children_.size()) throw com::ComFailure(DISP_E_BADINDEX);
  Child& child = children_[position];
  if (!child.object) {
    const std::shared_ptr<viewkit::Control> control(Controls(), child.control);
    child.object = KindOf(*control)->make(control, owner_);
  }
  return child.object;
}

com::ComPtr<IDispatch> ChildObjects::Find(std::string_view name) {
  const auto keep = Controls();
  for (std::size_t i = 0; i < children_.size(); ++i) {
    if (host::EqualNoCase(FullName(*children_[i].control), name)) return At(i);
  }
  throw com::ComFailure(DISP_E_BADINDEX);
}

com::ComPtr<IDispatch> ChildObjects::Of(const host::Control& control) {
  for (std::size_t i = 0; i < children_.size(); ++i) {
    // Compared as the base that both sides share.
    if (static_cast<const host::Control*>(children_[i].control) == &control) return At(i);
  }
  return nullptr;
}

com::ComPtr<IDispatch> ChildObjects::Collection() {
  // Never another view's: while an object lives, its reference keeps the address taken.
  if (auto* object = com::ObjectRegistry<CollectionObject>::Find(this))
    return com::ComPtr<IDispatch>(object);
  return com::MakeObject<CollectionObject>(*this).As<IDispatch>();
}

}  // namespace tavrix::component
