#include "app/faces/recordset_face.h"

#include "app/com/variant_enum.h"
#include "app/faces/give.h"
#include "app/faces/row_array.h"
#include "app/faces/row_texts.h"
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

STDMETHODIMP RecordsetFace::get_EOF(VARIANT_BOOL* result) {
  return Give(result, [&] { return Flag(rows_->EndOfFile()); });
}

STDMETHODIMP RecordsetFace::get_BOF(VARIANT_BOOL* result) {
  return Give(result, [&] { return Flag(rows_->BeginningOfFile()); });
}

STDMETHODIMP RecordsetFace::GetRows(VARIANT, VARIANT, VARIANT, VARIANT* result) {
  if (result == nullptr) return E_POINTER;
  VariantInit(result);
  return Guarded([&] {
    result->parray = ArrayOfRows(*rows_);
    result->vt = VT_ARRAY | VT_VARIANT;
  });
}

STDMETHODIMP RecordsetFace::GetRowTexts(long* fields, SAFEARRAY** ends, BSTR* text) {
  if (fields == nullptr || ends == nullptr || text == nullptr) return E_POINTER;
  *fields = 0;
  *ends = nullptr;
  *text = nullptr;
  return Guarded([&] {
    const RowTexts texts = TextsOfRows(*rows_);
    *fields = static_cast<long>(rows_->ColumnNames().size());
    *ends = texts.ends;
    *text = texts.text;
  });
}

STDMETHODIMP RecordsetFace::Find(BSTR criteria) {
  return Guarded([&] { rows_->Find(TextOf(criteria)); });
}

STDMETHODIMP RecordsetFace::get_Fields(IDispatch** result) {
  return Give(result, [&] { return NewFace<FieldsFace>(rows_); });
}

STDMETHODIMP RecordsetFace::MoveFirst() {
  return Guarded([&] { rows_->MoveFirst(); });
}

STDMETHODIMP RecordsetFace::Close() {
  return Guarded([&] { rows_->Close(); });
}

STDMETHODIMP FieldsFace::get_Item(VARIANT index, IDispatch** result) {
  return Give(result, [&] { return NewFace<FieldFace>(rows_, PositionOf(*rows_, index)); });
}

STDMETHODIMP FieldsFace::get_Count(long* result) {
  return Give(result, [&] { return static_cast<long>(rows_->ColumnNames().size()); });
}

STDMETHODIMP FieldsFace::get_NewEnum(IUnknown** result) {
  return Give(result, [&] {
    std::vector<ComPtr<IDispatch>> fields;
    for (std::size_t i = 0; i < rows_->ColumnNames().size(); ++i) {
      fields.push_back(ComPtr<IDispatch>::Attach(NewFace<FieldFace>(rows_, static_cast<int>(i))));
    }
    return MakeObject<VariantEnum>(std::move(fields)).Detach();
  });
}

STDMETHODIMP FieldFace::get_Value(VARIANT* result) {
  return GiveValue(result, [&] { return rows_->Field(position_); });
}

STDMETHODIMP FieldFace::get_Name(BSTR* result) {
  return Give(result, [&] {
    return NewBstr(rows_->ColumnNames().at(static_cast<std::size_t>(position_)));
  });
}

}  // namespace desk::app
