#include "app/faces/database_face.h"

#include "app/faces/give.h"
#include "app/faces/recordset_face.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

/// Asked of an object, it tells a `DatabaseFace` of this program from all others.
constexpr GUID kOwnFace = {
    0xa6f3a1c5, 0x34a1, 0x4b0c, {0x8f, 0x42, 0x1d, 0x6c, 0x5e, 0x77, 0x20, 0x9b}};

}  // namespace

std::shared_ptr<host::Database> DatabaseFace::Behind(IDispatch* face) {
  void* found = nullptr;
  if (face == nullptr || FAILED(face->QueryInterface(kOwnFace, &found))) return nullptr;
  const auto own = ComPtr<DatabaseFace>::Attach(static_cast<DatabaseFace*>(found));
  return own->database_;
}

void* DatabaseFace::InterfaceOf(REFIID iid) {
  if (iid == kOwnFace) return this;
  return DispatchObject::InterfaceOf(iid);
}

STDMETHODIMP DatabaseFace::OpenSql(BSTR sql, long mode, IDispatch** result) {
  return Give(result,
              [&] { return NewFace<StatementFace>(database_->OpenSql(TextOf(sql), mode)); });
}

STDMETHODIMP DatabaseFace::get_LastError(IDispatch** result) {
  return Give(result, [&] { return NewFace<ErrorFace>(database_->LastError()); });
}

STDMETHODIMP DatabaseFace::get_ConnectionProperties(IDispatch** result) {
  return Give(result, [&] { return NewFace<PropertySetFace>(database_->ConnectionProperties()); });
}

STDMETHODIMP ErrorFace::get_Description(BSTR* result) {
  return Give(result, [&] { return NewBstr(entry_->Description()); });
}

STDMETHODIMP ErrorFace::Clear() {
  return Guarded([&] { entry_->Clear(); });
}

STDMETHODIMP PropertySetFace::get_Item(VARIANT key, IDispatch** result) {
  return Give(result,
              [&] { return NewFace<PropertyFace>(properties_->Item(ValueOf(key).ToText())); });
}

STDMETHODIMP PropertyFace::get_Value(VARIANT* result) {
  return GiveValue(result, [&] { return property_->Get(); });
}

STDMETHODIMP StatementFace::Execute() {
  return Guarded([&] { statement_->Execute(); });
}

STDMETHODIMP StatementFace::ScalarValue(VARIANT, VARIANT* result) {
  return GiveValue(result, [&] { return statement_->ScalarValue(); });
}

STDMETHODIMP StatementFace::Recordset(VARIANT, IDispatch** result) {
  return Give(result, [&] {
    // The book's recordsets can pass their cells with their kinds, which the portable contract
    // does not ask for and Automation callers expect.
    const auto rows =
        std::dynamic_pointer_cast<book::SnapshotRecordset>(statement_->OpenRecordset());
    if (!rows) throw host::HostError("数据库没有给出记录集");
    return NewFace<RecordsetFace>(rows);
  });
}

}  // namespace desk::app
