#include "component/activex/persistence.h"

#include <oleauto.h>

#include "com/abi.h"
#include "component/activex/active_control.h"

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
  com::Check(stream.Read(&record, sizeof record, &read));
  const bool whole = read == sizeof record && record.version == kVersion;
  if (!whole || record.state.width < 0 || record.state.height < 0) throw com::ComFailure(E_FAIL);
  control.Restore(record.state);
}

void Save(ActiveControl& control, IStream& stream, bool clear_dirty) {
  const Record record{kVersion, control.State()};
  com::Check(stream.Write(&record, sizeof record, nullptr));
  if (clear_dirty) control.MarkKept();
}

}  // namespace

HRESULT StreamPersistence::GetClassID(CLSID* result) noexcept {
  return com::Guarded(IID_IPersistStreamInit, [&] { com::Out(result) = Control().Facts().clsid; });
}

HRESULT StreamPersistence::IsDirty() noexcept {
  return Control().Dirty() ? S_OK : S_FALSE;
}

HRESULT StreamPersistence::Load(IStream* stream) noexcept {
  return com::Guarded(IID_IPersistStreamInit,
                      [&] { component::Load(Control(), com::Out(stream)); });
}

HRESULT StreamPersistence::Save(IStream* stream, WINBOOL clear_dirty) noexcept {
  return com::Guarded(IID_IPersistStreamInit,
                      [&] { component::Save(Control(), com::Out(stream), clear_dirty != FALSE); });
}

HRESULT StreamPersistence::GetSizeMax(ULARGE_INTEGER* result) noexcept {
  return com::Guarded(IID_IPersistStreamInit, [&] { com::Out(result).QuadPart = sizeof(Record); });
}

HRESULT BagPersistence::GetClassID(CLSID* result) noexcept {
  return com::Guarded(IID_IPersistPropertyBag, [&] { com::Out(result) = Control().Facts().clsid; });
}

HRESULT BagPersistence::Load(IPropertyBag* bag, IErrorLog* errors) noexcept {
  return com::Guarded(IID_IPersistPropertyBag, [&] {
    com::Variant color;
    color.InPlace()->vt = VT_I4;  // the type that is wanted
    if (FAILED(com::Out(bag).Read(kBackColor, color.InPlace(), errors))) return;
    KeptState state = Control().State();
    state.back_color = viewkit::ColorOf(color.As(VT_R8).Get().dblVal);
    Control().Restore(state);
  });
}

HRESULT BagPersistence::Save(IPropertyBag* bag, WINBOOL clear_dirty, WINBOOL) noexcept {
  return com::Guarded(IID_IPersistPropertyBag, [&] {
    com::Variant color(static_cast<std::int32_t>(Control().State().back_color));
    com::Check(com::Out(bag).Write(kBackColor, color.InPlace()));
    if (clear_dirty != FALSE) Control().MarkKept();
  });
}

HRESULT StoragePersistence::GetClassID(CLSID* result) noexcept {
  return com::Guarded(IID_IPersistStorage, [&] { com::Out(result) = Control().Facts().clsid; });
}

HRESULT StoragePersistence::IsDirty() noexcept {
  return Control().Dirty() ? S_OK : S_FALSE;
}

HRESULT StoragePersistence::Load(IStorage* storage) noexcept {
  return com::Guarded(IID_IPersistStorage, [&] {
    constexpr DWORD kMode = STGM_READ | STGM_SHARE_EXCLUSIVE;
    com::ComPtr<IStream> stream;
    com::Check(com::Out(storage).OpenStream(kStreamName, nullptr, kMode, 0, stream.Put()));
    component::Load(Control(), *stream.Get());
  });
}

HRESULT StoragePersistence::Save(IStorage* storage, WINBOOL) noexcept {
  return com::Guarded(IID_IPersistStorage, [&] {
    constexpr DWORD kMode = STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE;
    com::ComPtr<IStream> stream;
    com::Check(com::Out(storage).CreateStream(kStreamName, kMode, 0, 0, stream.Put()));
    component::Save(Control(), *stream.Get(), true);
  });
}

}  // namespace tavrix::component
