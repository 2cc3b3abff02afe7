#include "component/controls/child_objects.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "component/base/enumerator.h"
#include "component/base/face_registry.h"
#include "component/controls/grid_face.h"
#include "component/controls/simple_faces.h"
#include "component/controls/tree_faces.h"
#include "host/text.h"

namespace tavrix::component {

namespace {

/// Makes a face for the control when it is a `Model`.
template <class Face, class Model>
ComPtr<IDispatch> MakeIf(const std::shared_ptr<viewkit::Control>& control,
                         const std::shared_ptr<const ViewOwner>& owner) {
  const auto model = std::dynamic_pointer_cast<Model>(control);
  if (!model) return nullptr;
  return MakeObject<Face>(ModelReference<Model>(model, owner)).template As<IDispatch>();
}

using MakeFace = ComPtr<IDispatch> (*)(const std::shared_ptr<viewkit::Control>& control,
                                       const std::shared_ptr<const ViewOwner>& owner);
struct Kind {
  std::string_view type_name;
  MakeFace make;
};
constexpr Kind kKinds[] = {
    {"VSFlexGrid", &MakeIf<GridFace, viewkit::FlexGrid>},
    {"vxVSTabCtl", &MakeIf<TabFace, viewkit::TabStrip>},
    {"TreeView", &MakeIf<TreeFace, viewkit::TreeView>},
    {"SearchBox", &MakeIf<SearchFace, viewkit::SearchBox>},
    {"CheckBox", &MakeIf<CheckFace, viewkit::CheckBox>},
    {"OptionButton", &MakeIf<OptionFace, viewkit::OptionButton>},
    {"CommandButton", &MakeIf<ButtonFace, viewkit::CommandButton>},
    {"Label", &MakeIf<LabelFace, viewkit::Label>},
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

class CollectionFace : public Identity, public DualFace<IChildControls> {
 public:
  explicit CollectionFace(ChildObjects& objects)
      : DualFace<IChildControls>(static_cast<Identity&>(*this)),
        objects_(objects.weak_from_this()),
        entry_(&objects, *this),
        errors_(*this) {
    PublishDual(IID_IChildControls, this);
    Publish(IID_ISupportErrorInfo, &errors_);
  }

  STDMETHODIMP get_Item(VARIANT index, IDispatch** result) noexcept override {
    return With([&](ChildObjects& objects) {
      Out(result) = nullptr;
      const Variant key(index);
      if (key.Type() == VT_BSTR) {
        *result = objects.Find(TextOf(key.Get().bstrVal)).Detach();
        return;
      }
      const long position = key.As(VT_I4).Get().lVal;
      if (position < 1) throw ComFailure(DISP_E_BADINDEX);
      *result = objects.At(static_cast<std::size_t>(position - 1)).Detach();
    });
  }
  STDMETHODIMP get_Count(long* result) noexcept override {
    return With([&](ChildObjects& objects) { Out(result) = static_cast<long>(objects.Count()); });
  }
  STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override {
    return With([&](ChildObjects& objects) {
      Out(result) = nullptr;
      std::vector<Variant> all;
      for (std::size_t i = 0; i < objects.Count(); ++i) all.emplace_back(objects.At(i));
      *result = VariantEnumerator::Make(std::move(all)).Detach();
    });
  }

 private:
  template <class Body>
  [[nodiscard]] HRESULT With(Body&& body) noexcept {
    return Guarded(IID_IChildControls, [&] {
      const auto objects = objects_.lock();
      if (!objects) throw ComFailure(CO_E_OBJNOTCONNECTED, "控件集合所在的视图已经关闭");
      body(*objects);
    });
  }

  std::weak_ptr<ChildObjects> objects_;
  FaceRegistry<CollectionFace> entry_;
  ErrorSupport errors_;
};

}  // namespace

std::shared_ptr<viewkit::ControlList> ChildObjects::Controls() const {
  auto controls = controls_.lock();
  if (!controls) throw ComFailure(CO_E_OBJNOTCONNECTED);
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

ComPtr<IDispatch> ChildObjects::At(std::size_t position) {
  if (position >= children_.size()) throw ComFailure(DISP_E_BADINDEX);
  Child& child = children_[position];
  if (!child.object) {
    const std::shared_ptr<viewkit::Control> control(Controls(), child.control);
    child.object = KindOf(*control)->make(control, owner_);
  }
  return child.object;
}

ComPtr<IDispatch> ChildObjects::Find(std::string_view name) {
  const auto keep = Controls();
  for (std::size_t i = 0; i < children_.size(); ++i) {
    if (host::EqualNoCase(FullName(*children_[i].control), name)) return At(i);
  }
  throw ComFailure(DISP_E_BADINDEX);
}

ComPtr<IDispatch> ChildObjects::Of(const host::Control& control) {
  for (std::size_t i = 0; i < children_.size(); ++i) {
    // Compared as the base that both sides share.
    if (static_cast<const host::Control*>(children_[i].control) == &control) return At(i);
  }
  return nullptr;
}

ComPtr<IDispatch> ChildObjects::Collection() {
  // Never another view's: while a face lives, its reference keeps the address taken.
  if (auto* face = FaceRegistry<CollectionFace>::Find(this)) return ComPtr<IDispatch>(face);
  return MakeObject<CollectionFace>(*this).As<IDispatch>();
}

}  // namespace tavrix::component
