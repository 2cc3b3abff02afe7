#include "component/adapters/row_sets.h"

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "com/failure.h"
#include "com/late_object.h"
#include "com/trace.h"
#include "com/values.h"
#include "host/non_copyable.h"
#include "host/trace.h"
#include "host/utf.h"

namespace tavrix::component {

namespace {

/// Access to the elements of an array as long as it lives.
class LockedArray : private host::NonCopyable {
 public:
  explicit LockedArray(SAFEARRAY& array) : array_(array) {
    com::Check(SafeArrayAccessData(&array_, &data_));
  }
  ~LockedArray() { SafeArrayUnaccessData(&array_); }
  [[nodiscard]] void* Data() const { return data_; }

 private:
  SAFEARRAY& array_;
  void* data_ = nullptr;
};

/// Converts text on its way into a row set, without an allocation for each cell.
class TextConverter {
 public:
  explicit TextConverter(host::RowSet& rows) : rows_(rows) {}
  void Append(std::wstring_view text);

 private:
  host::RowSet& rows_;
  std::string buffer_;  // grows to the longest text and stays
};

void TextConverter::Append(std::wstring_view text) {
  buffer_.clear();
  host::AppendNarrow(buffer_, text);
  rows_.AppendText(buffer_);
}

void AppendCell(host::RowSet& rows, TextConverter& text, const VARIANT& cell) {
  switch (cell.vt) {
    case VT_BSTR:
      return text.Append(com::ViewOf(cell.bstrVal));
    case VT_EMPTY:
    case VT_NULL:
      return rows.AppendNull();
    case VT_I4:
      return rows.AppendInteger(cell.lVal);
    case VT_I2:
      return rows.AppendInteger(cell.iVal);
    default:
      return rows.AppendText(com::ToValue(com::Variant(cell)).ToText());
  }
}

std::size_t Extent(const SAFEARRAY& array, int dimension) {
  // Bounds stand in reverse: the last dimension first.
  return array.rgsabound[array.cDims - dimension].cElements;
}

constexpr std::size_t kUsualLength = 8;  // bytes of a cell's text: a guess that saves growing

/// Memory runs through the fields of a record, then to the next record.
host::RowSet Read(SAFEARRAY& array, VARTYPE type) {
  const std::size_t fields = Extent(array, 1);
  const std::size_t cells = fields * Extent(array, 2);
  const LockedArray data(array);
  host::RowSet rows(fields);
  rows.Reserve(Extent(array, 2), cells * kUsualLength);
  TextConverter text(rows);
  if (type == VT_VARIANT) {
    const auto* cell = static_cast<const VARIANT*>(data.Data());
    for (const VARIANT* end = cell + cells; cell != end; ++cell) AppendCell(rows, text, *cell);
    return rows;
  }
  // An array of one type: each element as a value by reference.
  VARIANT cell{};
  cell.vt = static_cast<VARTYPE>(VT_BYREF | type);
  for (std::size_t i = 0; i < cells; ++i) {
    cell.byref = static_cast<char*>(data.Data()) + i * array.cbElements;
    AppendCell(rows, text, com::Variant(cell).Get());
  }
  return rows;
}

com::ComFailure NoRowTexts() {
  return {DISP_E_TYPEMISMATCH, "GetRowTexts 给出的行不完整"};
}

host::RowSet ReadTexts(std::size_t fields, SAFEARRAY& ends, std::wstring_view text) {
  const bool numbers = ends.cDims == 1 && ends.cbElements == sizeof(LONG);
  const std::size_t cells = numbers ? Extent(ends, 1) : 0;
  if (cells == 0 || cells % fields != 0) throw NoRowTexts();
  const LockedArray data(ends);
  host::RowSet rows(fields);
  rows.Reserve(cells / fields, text.size());
  TextConverter converter(rows);
  std::size_t start = 0;
  for (const LONG end : std::span(static_cast<const LONG*>(data.Data()), cells)) {
    if (end < 0) {
      rows.AppendNull();
      continue;
    }
    const auto behind = static_cast<std::size_t>(end);
    if (behind < start || behind > text.size()) throw NoRowTexts();
    converter.Append(text.substr(start, behind - start));
    start = behind;
  }
  return rows;
}

com::ComFailure NoRows() {
  return {DISP_E_TYPEMISMATCH, "GetRows 没有返回二维数组"};
}

com::LateObject ElementOf(const com::LateObject& array, std::int32_t index) {
  com::ComPtr<IDispatch> element = array.ObjectOf(std::to_wstring(index).c_str());
  if (!element) throw NoRows();
  return com::LateObject(std::move(element));
}

/// What JavaScript has in place of an array of two dimensions: an array of records, each an array
/// of as many fields.
host::RowSet ReadRecords(const com::LateObject& records) {
  const std::int32_t count = records.LongOf(L"length");
  const std::int32_t fields = count > 0 ? ElementOf(records, 0).LongOf(L"length") : 0;
  if (fields < 1) throw NoRows();
  host::RowSet rows(static_cast<std::size_t>(fields));
  TextConverter text(rows);
  for (std::int32_t i = 0; i < count; ++i) {
    const com::LateObject record = ElementOf(records, i);
    if (record.LongOf(L"length") != fields) throw NoRows();
    for (std::int32_t j = 0; j < fields; ++j) {
      AppendCell(rows, text, record.Get(std::to_wstring(j).c_str()).Get());
    }
  }
  return rows;
}

bool IsScriptArray(const com::LateObject& object) {
  try {
    return object.IsOfScript() && object.LongOf(L"length") >= 0;
  } catch (const com::ComFailure&) {  // an object of another kind
    return false;
  }
}

SAFEARRAY* ArrayOf(const VARIANT& value) {
  if ((value.vt & VT_ARRAY) == 0) return nullptr;
  return (value.vt & VT_BYREF) != 0 ? *value.pparray : value.parray;
}

}  // namespace

host::RowSet ToRowSet(const com::Variant& rows) {
  const VARIANT& value = com::Target(rows.Get());
  if (auto object = rows.Object()) {
    const com::LateObject records(std::move(object));
    if (IsScriptArray(records)) return ReadRecords(records);
  }
  SAFEARRAY* const array = ArrayOf(value);
  if (array == nullptr || array->cDims != 2) throw NoRows();
  return Read(*array, static_cast<VARTYPE>(value.vt & ~(VT_ARRAY | VT_BYREF)));
}

host::RowSet TakeRowTexts(IHostRowTexts& recordset) {
  long fields = 0;
  com::Variant ends;
  com::Bstr text;
  if (host::Tracing()) com::TraceHostCall(L"GetRowTexts", {});
  SetErrorInfo(0, nullptr);
  const HRESULT status = recordset.GetRowTexts(&fields, &ends.InPlace()->parray, text.Put());
  if (ends.Get().parray != nullptr) ends.InPlace()->vt = VT_ARRAY | VT_I4;
  com::CheckCall(status);
  if (ends.Type() == VT_EMPTY || fields < 1) throw NoRowTexts();
  return ReadTexts(static_cast<std::size_t>(fields), *ends.Get().parray, com::ViewOf(text.Get()));
}

}  // namespace tavrix::component
