#include "app/automation/com_recordset.h"

#include "app/automation/give.h"
#include "app/automation/row_array.h"
#include "app/automation/row_texts.h"
#include "com/enumerator.h"
#include "host/text.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

int PositionOf(const book::SnapshotRecordset& rows, const VARIANT& index) {
  const host::Value wanted = ValueOf(index);
  const auto& names = rows.ColumnNames();
  const int count = static_cast<int>(names.size());
  if (!std::holds_alternative<std::string>(wanted.Raw())) {
    const int position = wanted.ToLong();
    if (position >= 0 && position < count) return position;
  }
  const std::string name = wanted.ToText();
  for (int i = 0; i < count; ++i) {
    if (host::EqualNoCase(names[static_cast<std::size_t>(i)], name)) return i;
  }
  throw host::HostError("记录集中没有这个列：" + name);
}

}  // namespace

STDMETHODIMP ComRecordset::get_EOF(VARIANT_BOOL* result) noexcept {
  return Give(result, [&] { return Flag(Own().EndOfFile()); });
}

STDMETHODIMP ComRecordset::get_BOF(VARIANT_BOOL* result) noexcept {
  return Give(result, [&] { return Flag(Own().BeginningOfFile()); });
}

STDMETHODIMP ComRecordset::GetRows(VARIANT, VARIANT, VARIANT, VARIANT* result) noexcept {
  if (result == nullptr) return E_POINTER;
  VariantInit(result);
  return Guarded([&] {
    result->parray = ArrayOfRows(Own());
    result->vt = VT_ARRAY | VT_VARIANT;
  });
}

STDMETHODIMP ComRecordset::GetRowTexts(long* fields, SAFEARRAY** ends, BSTR* text) noexcept {
  if (fields == nullptr || ends == nullptr || text == nullptr) return E_POINTER;
  *fields = 0;
  *ends = nullptr;
  *text = nullptr;
  return Guarded([&] {
    const RowTexts texts = TextsOfRows(Own());
    *fields = static_cast<long>(Own().ColumnNames().size());
    *ends = texts.ends;
    *text = texts.text;
  });
}

STDMETHODIMP ComRecordset::Find(BSTR criteria) noexcept {
  return Guarded([&] { Own().Find(TextOf(criteria)); });
}

STDMETHODIMP ComRecordset::get_Fields(IDispatch** result) noexcept {
  return Give(result, [&] { return NewDispatch<ComFields>(Shared()); });
}

STDMETHODIMP ComRecordset::MoveFirst() noexcept {
  return Guarded([&] { Own().MoveFirst(); });
}

STDMETHODIMP ComRecordset::Close() noexcept {
  return Guarded([&] { Own().Close(); });
}

STDMETHODIMP ComFields::get_Item(VARIANT index, IDispatch** result) noexcept {
  return Give(result, [&] { return NewDispatch<ComField>(Shared(), PositionOf(Own(), index)); });
}

STDMETHODIMP ComFields::get_Count(long* result) noexcept {
  return Give(result, [&] { return static_cast<long>(Own().ColumnNames().size()); });
}

STDMETHODIMP ComFields::get_NewEnum(IUnknown** result) noexcept {
  return Give(result, [&] {
    std::vector<Variant> fields;
    for (std::size_t i = 0; i < Own().ColumnNames().size(); ++i) {
      fields.emplace_back(ComPtr<IDispatch>(Make<ComField>(Shared(), static_cast<int>(i))));
    }
    return tavrix::com::VariantEnumerator::Make(std::move(fields)).Detach();
  });
}

STDMETHODIMP ComField::get_Value(VARIANT* result) noexcept {
  return GiveValue(result, [&] { return Own().Field(position_); });
}

STDMETHODIMP ComField::get_Name(BSTR* result) noexcept {
  return Give(result,
              [&] { return NewBstr(Own().ColumnNames().at(static_cast<std::size_t>(position_))); });
}

}  // namespace desk::app
