#include "app/automation/com_database.h"

#include "app/automation/com_recordset.h"
#include "app/automation/give.h"

namespace desk::app {

namespace host = tavrix::host;

std::shared_ptr<host::Database> ComDatabase::Behind(IDispatch* object) {
  const auto given = Query<IHostDatabase>(object);
  auto* own = given ? tavrix::com::ObjectRegistry<ComDatabase>::Find(given.Get()) : nullptr;
  return own != nullptr ? own->Shared() : nullptr;
}

STDMETHODIMP ComDatabase::OpenSql(BSTR sql, long mode, IDispatch** result) noexcept {
  return Give(result, [&] { return NewDispatch<ComStatement>(Own().OpenSql(TextOf(sql), mode)); });
}

STDMETHODIMP ComDatabase::get_LastError(IDispatch** result) noexcept {
  return Give(result, [&] { return NewDispatch<ComErrorEntry>(Own().LastError()); });
}

STDMETHODIMP ComDatabase::get_ConnectionProperties(IDispatch** result) noexcept {
  return Give(result, [&] { return NewDispatch<ComPropertySet>(Own().ConnectionProperties()); });
}

STDMETHODIMP ComErrorEntry::get_Description(BSTR* result) noexcept {
  return Give(result, [&] { return NewBstr(Own().Description()); });
}

STDMETHODIMP ComErrorEntry::Clear() noexcept {
  return Guarded([&] { Own().Clear(); });
}

STDMETHODIMP ComPropertySet::get_Item(VARIANT key, IDispatch** result) noexcept {
  return Give(result, [&] { return NewDispatch<ComProperty>(Own().Item(ValueOf(key).ToText())); });
}

STDMETHODIMP ComProperty::get_Value(VARIANT* result) noexcept {
  return GiveValue(result, [&] { return Own().Get(); });
}

STDMETHODIMP ComStatement::Execute() noexcept {
  return Guarded([&] { Own().Execute(); });
}

STDMETHODIMP ComStatement::ScalarValue(VARIANT, VARIANT* result) noexcept {
  return GiveValue(result, [&] { return Own().ScalarValue(); });
}

STDMETHODIMP ComStatement::Recordset(VARIANT, IDispatch** result) noexcept {
  return Give(result, [&] {
    // The book's recordsets can pass their cells with their kinds, which the portable contract
    // does not ask for and Automation callers expect.
    const auto rows = std::dynamic_pointer_cast<book::SnapshotRecordset>(Own().OpenRecordset());
    if (!rows) throw host::HostError("数据库没有给出记录集");
    return NewDispatch<ComRecordset>(rows);
  });
}

}  // namespace desk::app
