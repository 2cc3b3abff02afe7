#include "component/activex/persistence.h"

#include <oleauto.h>

#include "component/activex/active_control.h"
#include "component/base/abi.h"

namespace tavrix::component {

namespace {

/// As it stands in a stream.
struct Record {
  DWORD version;
  KeptState state;
};
constexpr DWORD kVersion = 1;
constexpr const wchar_t* kStreamName = L"Contents";
constexpr const wchar_t* kBackColor = L"BackColor";

/// Throws `ComFailure`, and changes nothing, when the stream holds something else.
void Load(ActiveControl& control, IStream& stream) {
  Record record{};
  ULONG read = 0;
  Check(stream.Read(&record, sizeof record, &read));
  const bool whole = read == sizeof record && record.version == kVersion;
  if (!whole || record.state.width < 0 || record.state.height < 0) throw ComFailure(E_FAIL);
  control.Restore(record.state);
}

void Save(ActiveControl& control, IStream& stream, bool clear_dirty) {
  const Record record{kVersion, control.State()};
  Check(stream.Write(&record, sizeof record, nullptr));
  if (clear_dirty) control.MarkKept();
}

}  // namespace

StreamPersistence::StreamPersistence(ActiveControl& control) : Face(control), control_(control) {}

HRESULT StreamPersistence::GetClassID(CLSID* result) noexcept {
  return Guarded(IID_IPersistStreamInit, [&] { Out(result) = control_.Facts().clsid; });
}

HRESULT StreamPersistence::IsDirty() noexcept {
  return control_.Dirty() ? S_OK : S_FALSE;
}

HRESULT StreamPersistence::Load(IStream* stream) noexcept {
  return Guarded(IID_IPersistStreamInit, [&] { component::Load(control_, Out(stream)); });
}

HRESULT StreamPersistence::Save(IStream* stream, WINBOOL clear_dirty) noexcept {
  return Guarded(IID_IPersistStreamInit,
                 [&] { component::Save(control_, Out(stream), clear_dirty != FALSE); });
}

HRESULT StreamPersistence::GetSizeMax(ULARGE_INTEGER* result) noexcept {
  return Guarded(IID_IPersistStreamInit, [&] { Out(result).QuadPart = sizeof(Record); });
}

BagPersistence::BagPersistence(ActiveControl& control) : Face(control), control_(control) {}

HRESULT BagPersistence::GetClassID(CLSID* result) noexcept {
  return Guarded(IID_IPersistPropertyBag, [&] { Out(result) = control_.Facts().clsid; });
}

HRESULT BagPersistence::Load(IPropertyBag* bag, IErrorLog* errors) noexcept {
  return Guarded(IID_IPersistPropertyBag, [&] {
    Variant color;
    color.InPlace()->vt = VT_I4;  // the type that is wanted
    if (FAILED(Out(bag).Read(kBackColor, color.InPlace(), errors))) return;
    KeptState state = control_.State();
    state.back_color = viewkit::ColorOf(color.As(VT_R8).Get().dblVal);
    control_.Restore(state);
  });
}

HRESULT BagPersistence::Save(IPropertyBag* bag, WINBOOL clear_dirty, WINBOOL) noexcept {
  return Guarded(IID_IPersistPropertyBag, [&] {
    Variant color(static_cast<std::int32_t>(control_.State().back_color));
    Check(Out(bag).Write(kBackColor, color.InPlace()));
    if (clear_dirty != FALSE) control_.MarkKept();
  });
}

StoragePersistence::StoragePersistence(ActiveControl& control) : Face(control), control_(control) {}

HRESULT StoragePersistence::GetClassID(CLSID* result) noexcept {
  return Guarded(IID_IPersistStorage, [&] { Out(result) = control_.Facts().clsid; });
}

HRESULT StoragePersistence::IsDirty() noexcept {
  return control_.Dirty() ? S_OK : S_FALSE;
}

HRESULT StoragePersistence::Load(IStorage* storage) noexcept {
  return Guarded(IID_IPersistStorage, [&] {
    constexpr DWORD kMode = STGM_READ | STGM_SHARE_EXCLUSIVE;
    ComPtr<IStream> stream;
    Check(Out(storage).OpenStream(kStreamName, nullptr, kMode, 0, stream.Put()));
    component::Load(control_, *stream.Get());
  });
}

HRESULT StoragePersistence::Save(IStorage* storage, WINBOOL) noexcept {
  return Guarded(IID_IPersistStorage, [&] {
    constexpr DWORD kMode = STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE;
    ComPtr<IStream> stream;
    Check(Out(storage).CreateStream(kStreamName, kMode, 0, 0, stream.Put()));
    component::Save(control_, *stream.Get(), true);
  });
}

}  // namespace tavrix::component
