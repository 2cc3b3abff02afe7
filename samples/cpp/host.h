// A whole host: what the library asks of the program around it. Five accounts stand in place of a
// database; `Rows` is where yours is asked.
#pragma once

#include <cwchar>
#include <map>
#include <string>
#include <vector>

#include "object.h"
#include "qnSystem.h"
#include "tavrix.h"

using Account = std::map<std::wstring, std::wstring>;  // column, value

inline const std::vector<Account>& AllAccounts() {
  static const auto account = [](const wchar_t* id, const wchar_t* code, const wchar_t* name,
                                 const wchar_t* category, const wchar_t* level,
                                 const wchar_t* leaf) {
    return Account{{L"i_id", id},         {L"ccode", code},   {L"ccode_name", name},
                   {L"cclass", category}, {L"igrade", level}, {L"bend", leaf},
                   {L"bproperty", L"1"},  {L"bclose", L"0"},  {L"bpr", L"\u501F"}};
  };
  static const std::vector<Account> all = {
      account(L"1", L"1001", L"Cash", L"\u8D44\u4EA7", L"1", L"1"),
      account(L"2", L"1002", L"Bank", L"\u8D44\u4EA7", L"1", L"0"),
      account(L"3", L"100201", L"Current account", L"\u8D44\u4EA7", L"2", L"1"),
      account(L"4", L"100202", L"Savings account", L"\u8D44\u4EA7", L"2", L"1"),
      account(L"5", L"2202", L"Payables", L"\u8D1F\u503A", L"1", L"1")};
  return all;
}

/// A value under any of the host's names for one.
class Entry : public Object<IHostSetting, IHostProperty, IHostField, IHostParameter> {
 public:
  explicit Entry(std::wstring value) : value_(std::move(value)) {}
  HRESULT STDMETHODCALLTYPE get_Value(BSTR* result) override {
    *result = SysAllocString(value_.c_str());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Value(VARIANT* result) override {
    result->vt = VT_BSTR;
    return get_Value(&result->bstrVal);
  }
  HRESULT STDMETHODCALLTYPE put_Value(VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Name(BSTR*) override { return E_NOTIMPL; }

 private:
  std::wstring value_;
};

template <class Made, class... Arguments>
HRESULT GiveNew(IDispatch** result, Arguments&&... arguments) {
  void* made = nullptr;
  auto* object = new Made(std::forward<Arguments>(arguments)...);
  object->QueryInterface(IID_IDispatch, &made);
  object->Release();
  *result = static_cast<IDispatch*>(made);
  return S_OK;
}

/// What a statement gives.
class Rows : public Object<IHostRecordset> {
 public:
  explicit Rows(const std::wstring& sql) {
    if (sql.find(L"select ccode,") == 0)
      columns_ = {L"ccode", L"ccode_name", L"", L"", L"i_id", L"igrade", L"cclass"};
    else
      columns_ = {L"i_id", L"ccode", L"ccode_name", L"", L"bpr", L"cclass", L"bclose", L"bend"};
    if (sql.find(L"gl_code") == std::wstring::npos) return;
    for (const Account& account : AllAccounts())
      if (Fits(account, sql)) found_.push_back(&account);
  }
  HRESULT STDMETHODCALLTYPE get_EOF(VARIANT_BOOL* result) override {
    *result = position_ >= found_.size() ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_BOF(VARIANT_BOOL* result) override {
    *result = found_.empty() ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }
  /// (field, record)
  HRESULT STDMETHODCALLTYPE GetRows(VARIANT, VARIANT, VARIANT, VARIANT* result) override {
    SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(columns_.size()), 0},
                               {static_cast<ULONG>(found_.size()), 0}};
    SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, 2, bounds);
    if (array == nullptr) return E_OUTOFMEMORY;
    for (LONG record = 0; record < static_cast<LONG>(found_.size()); ++record) {
      for (LONG field = 0; field < static_cast<LONG>(columns_.size()); ++field) {
        const Text text(ValueOf(*found_[static_cast<std::size_t>(record)],
                                columns_[static_cast<std::size_t>(field)]));
        VARIANT cell{};
        cell.vt = VT_BSTR;
        cell.bstrVal = text.Get();
        LONG place[] = {field, record};
        SafeArrayPutElement(array, place, &cell);
      }
    }
    position_ = found_.size();
    result->vt = VT_ARRAY | VT_VARIANT;
    result->parray = array;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Find(BSTR) override {
    position_ = found_.size();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Fields(IDispatch** result) override;
  HRESULT STDMETHODCALLTYPE MoveFirst() override {
    position_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Close() override { return S_OK; }

 private:
  static std::wstring ValueOf(const Account& account, const std::wstring& column) {
    const auto found = account.find(column);
    return found == account.end() ? L"" : found->second;
  }
  /// Whether the account has what the statement asks for, as cclass='...' or i_id=7.
  static bool Fits(const Account& account, const std::wstring& sql) {
    for (const wchar_t* column : {L"cclass", L"ccode", L"i_id"}) {
      std::size_t start = sql.find(std::wstring(column) + L"=");
      if (start == std::wstring::npos) start = sql.find(std::wstring(column) + L" =");
      if (start == std::wstring::npos) continue;
      start = sql.find_first_not_of(L" ='", start + std::wcslen(column));
      const std::size_t end = sql.find_first_of(L"' )", start);
      if (ValueOf(account, column) != sql.substr(start, end - start)) return false;
    }
    return true;
  }
  friend class FieldsOfRow;

  std::vector<std::wstring> columns_;
  std::vector<const Account*> found_;
  std::size_t position_ = 0;
};

/// The fields of one row, by name.
class FieldsOfRow : public Object<IHostFields> {
 public:
  explicit FieldsOfRow(const Account& account) : account_(account) {}
  HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, IDispatch** result) override {
    if (index.vt != VT_BSTR) return DISP_E_BADINDEX;
    return GiveNew<Entry>(result, Rows::ValueOf(account_, index.bstrVal));
  }
  HRESULT STDMETHODCALLTYPE get_Count(long*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown**) override { return E_NOTIMPL; }

 private:
  const Account& account_;
};

inline HRESULT Rows::get_Fields(IDispatch** result) {
  if (position_ >= found_.size()) return DISP_E_BADINDEX;
  return GiveNew<FieldsOfRow>(result, *found_[position_]);
}

class Statement : public Object<IHostStatement> {
 public:
  explicit Statement(std::wstring sql) : sql_(std::move(sql)) {}
  HRESULT STDMETHODCALLTYPE Execute() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ScalarValue(VARIANT, VARIANT* result) override {
    result->vt = VT_I4;
    result->lVal = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Recordset(VARIANT, IDispatch** result) override {
    return GiveNew<Rows>(result, sql_);
  }

 private:
  std::wstring sql_;
};

/// Yours keeps the values in the file, for each user.
class SettingsFile : public Object<IHostSettingsFile> {
 public:
  HRESULT STDMETHODCALLTYPE get_FileName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_FileName(BSTR) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ReadValue(BSTR, BSTR, BSTR fallback, BSTR* result) override {
    *result = SysAllocString(fallback);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE WriteValue(BSTR, BSTR, BSTR) override { return S_OK; }
};

class Parameters : public Object<IHostParameters> {
 public:
  void Add(const std::wstring& key, const std::wstring& value) { entries_[key] = value; }
  HRESULT STDMETHODCALLTYPE Exists(VARIANT key, VARIANT_BOOL* result) override {
    *result = key.vt == VT_BSTR && entries_.count(key.bstrVal) > 0 ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Item(VARIANT key, IDispatch** result) override {
    if (key.vt != VT_BSTR || entries_.count(key.bstrVal) == 0) return DISP_E_BADINDEX;
    return GiveNew<Entry>(result, entries_[key.bstrVal]);
  }
  HRESULT STDMETHODCALLTYPE Clear() override {
    entries_.clear();
    return S_OK;
  }

 private:
  std::map<std::wstring, std::wstring> entries_;
};

/// The system object, and most of what it hands out: one object may play many parts.
class Host : public Object<IHostSystem, IHostRights, IHostFolders, IHostDatabase, IHostError,
                           IHostPropertySet, IHostCodeRule, IHostLogHelper, IHostDataHelper,
                           IHostGridNavigator, IHostMouseEvent> {
 public:
  HRESULT STDMETHODCALLTYPE GetDatabase(IDispatch** result) override {
    return Give<IHostDatabase>(result);
  }
  HRESULT STDMETHODCALLTYPE GetSetting(VARIANT key, BSTR, IDispatch** result) override {
    const bool rule = key.vt == VT_BSTR && std::wcscmp(key.bstrVal, L"kmbm") == 0;
    return GiveNew<Entry>(result, rule ? L"4222" : L"");
  }
  /// Yours: the next free one of that table.
  HRESULT STDMETHODCALLTYPE NewIdentifier(BSTR, BSTR, VARIANT*, long* result) override {
    *result = 100;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Rights(long, IDispatch** result) override {
    return Give<IHostRights>(result);
  }
  HRESULT STDMETHODCALLTYPE get_Folders(IDispatch** result) override {
    return Give<IHostFolders>(result);
  }
  HRESULT STDMETHODCALLTYPE CreateHelper(BSTR name, IDispatch** result) override {
    const std::wstring wanted = name == nullptr ? L"" : name;
    if (wanted == L"SettingsFile") return GiveNew<SettingsFile>(result);
    if (wanted == L"Parameters") return GiveNew<Parameters>(result);
    return Give<IHostCodeRule>(result);  // any interface: the library asks for the one it wants
  }
  HRESULT STDMETHODCALLTYPE get_CanAdd(VARIANT_BOOL* result) override {
    return Answer(true, result);
  }
  HRESULT STDMETHODCALLTYPE get_CanEdit(VARIANT_BOOL* result) override {
    return Answer(true, result);
  }
  HRESULT STDMETHODCALLTYPE get_UserFolder(BSTR* result) override { return Words(L".", result); }

  // The database
  HRESULT STDMETHODCALLTYPE OpenSql(BSTR sql, long, IDispatch** result) override {
    return GiveNew<Statement>(result, std::wstring(sql == nullptr ? L"" : sql));
  }
  HRESULT STDMETHODCALLTYPE get_LastError(IDispatch** result) override {
    return Give<IHostError>(result);
  }
  HRESULT STDMETHODCALLTYPE get_ConnectionProperties(IDispatch** result) override {
    return Give<IHostPropertySet>(result);
  }
  HRESULT STDMETHODCALLTYPE get_Description(BSTR* result) override { return Words(L"", result); }
  HRESULT STDMETHODCALLTYPE Clear() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE get_Item(VARIANT, IDispatch** result) override {
    return GiveNew<Entry>(result, L"");  // "jet" for an Access database
  }

  // Helpers: codes by the rule 4222, the grid's current row, the wheel
  HRESULT STDMETHODCALLTYPE ParentCode(BSTR code, BSTR, BSTR* result) override {
    const std::wstring all = code == nullptr ? L"" : code;
    return Words(all.size() > 4 ? all.substr(0, all.size() - 2) : L"", result);
  }
  HRESULT STDMETHODCALLTYPE LevelOf(BSTR code, BSTR, long* result) override {
    const auto length = static_cast<long>(SysStringLen(code));
    *result = length >= 4 && length % 2 == 0 ? (length - 2) / 2 : 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE LengthAtLevel(long level, BSTR, long* result) override {
    *result = level > 0 ? 2 + 2 * level : 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetDatabase(IDispatch*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE MoveTop(IDispatch* grid, VARIANT_BOOL* result) override {
    return Move(grid, result, [](long, long first, long) { return first; });
  }
  HRESULT STDMETHODCALLTYPE MovePrevious(IDispatch* grid, VARIANT_BOOL* result) override {
    return Move(grid, result,
                [](long row, long first, long) { return row > first ? row - 1 : first; });
  }
  HRESULT STDMETHODCALLTYPE MoveNext(IDispatch* grid, VARIANT_BOOL* result) override {
    return Move(grid, result,
                [](long row, long, long last) { return row < last ? row + 1 : last; });
  }
  HRESULT STDMETHODCALLTYPE MoveBottom(IDispatch* grid, VARIANT_BOOL* result) override {
    return Move(grid, result, [](long, long, long last) { return last; });
  }
  HRESULT STDMETHODCALLTYPE FindNext(IDispatch*, VARIANT_BOOL* result) override {
    return Answer(false, result);
  }
  HRESULT STDMETHODCALLTYPE Find(IDispatch*, VARIANT, VARIANT_BOOL* result) override {
    return Answer(false, result);
  }
  HRESULT STDMETHODCALLTYPE Filter(IDispatch*, VARIANT, VARIANT_BOOL* result) override {
    return Answer(false, result);
  }
  HRESULT STDMETHODCALLTYPE SetRange(long, VARIANT) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Attach(long window) override {
    window_ = window;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Detach() override { return Attach(0); }
  HRESULT STDMETHODCALLTYPE get_AttachedTo(long* result) override {
    *result = window_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE put_Position(long) override { return S_OK; }

 private:
  static HRESULT Answer(bool yes, VARIANT_BOOL* result) {
    *result = yes ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }
  /// Makes the row current that `target` gives for the current, the first and the last data row.
  template <class Target>
  static HRESULT Move(IDispatch* object, VARIANT_BOOL* result, Target target) {
    Ref<IFlexGrid> grid;
    object->QueryInterface(__uuidof(IFlexGrid), reinterpret_cast<void**>(grid.Put()));
    if (!grid) return E_INVALIDARG;
    long row = 0;
    long first = 0;
    long rows = 0;
    grid->get_Row(&row);
    grid->get_FixedRows(&first);
    grid->get_Rows(&rows);
    if (rows > first) grid->put_Row(target(row, first, rows - 1));
    return Answer(true, result);
  }
  static HRESULT Words(const std::wstring& text, BSTR* result) {
    *result = SysAllocString(text.c_str());
    return S_OK;
  }

  long window_ = 0;
};
