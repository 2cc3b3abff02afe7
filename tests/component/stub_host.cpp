#include "component/stub_host.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string_view>

#include "com/bstr.h"
#include "com/com_object.h"
#include "com/failure.h"
#include "qnSystem.h"

namespace tavrix::test {

namespace {

using Shared = std::shared_ptr<StubHost>;
using Members = NamedObject::Members;

ComPtr<IDispatch> Object(const Shared& host, Members members) {
  return NamedObject::Make(std::move(members), [host](const std::wstring& member) {
    if (host->gate) host->gate(member);
  });
}

Variant Text(std::string_view text) {
  return Variant(text);
}

/// An object with nothing but a `Value`.
Variant ValueObject(const Shared& host, const Variant& value) {
  return Variant(Object(host, {{L"Value", [value](const StubCall&) { return value; }}}));
}

/// Where a column stands, whatever its case; past the end for none.
std::size_t ColumnOf(const StubHost& host, const std::string& name) {
  const auto found = std::ranges::find_if(host.columns, [&](const std::string& column) {
    return _stricmp(column.c_str(), name.c_str()) == 0;
  });
  return static_cast<std::size_t>(found - host.columns.begin());
}

/// What stands behind `start` up to the next quote or blank; nothing when `start` is not there.
std::optional<std::string> Behind(const std::string& sql, std::string_view start) {
  const std::size_t found = sql.find(start);
  if (found == std::string::npos) return {};
  const std::size_t from = found + start.size();
  return sql.substr(from, sql.find_first_of("' ", from) - from);
}

std::string Cell(const StubHost& host, const StubHost::Row& row, const std::string& column) {
  const std::size_t position = ColumnOf(host, column);
  return position < row.size() ? TextOf(row[position]) : std::string();
}

std::string Lower(std::string text) {
  for (char& letter : text) letter = letter >= 'A' && letter <= 'Z' ? letter | ' ' : letter;
  return text;
}

/// The rows of `gl_code` that meet the conditions of a statement, as far as they are known here;
/// from the highest code on where that is asked for.
std::vector<StubHost::Row> RowsFor(const StubHost& host, const std::string& statement) {
  const std::string sql = Lower(statement);
  if (sql.find("gl_code") == std::string::npos) return {};
  const auto category = Behind(sql, "cclass='");
  const auto code = Behind(sql, "ccode='");
  const auto id = Behind(sql, "i_id=");
  auto start = Behind(sql, "ccode like '");
  if (const auto parent = Behind(sql, ")='")) start = parent;  // left(ccode,4)='1002'
  if (start && start->ends_with('%')) start->pop_back();
  std::vector<StubHost::Row> rows;
  for (const StubHost::Row& row : host.rows) {
    if (category && Cell(host, row, "cclass") != *category) continue;
    if (code && Cell(host, row, "ccode") != *code) continue;
    if (id && Cell(host, row, "i_id") != *id) continue;
    if (start && !Cell(host, row, "ccode").starts_with(*start)) continue;
    rows.push_back(row);
  }
  if (sql.find("max(") != std::string::npos) {
    std::ranges::sort(rows, std::greater(),
                      [&](const StubHost::Row& row) { return Cell(host, row, "ccode"); });
  }
  return rows;
}

Variant ArrayOf(const std::vector<StubHost::Row>& rows) {
  std::vector<std::vector<VARIANT>> records;
  for (const StubHost::Row& row : rows) {
    std::vector<VARIANT> record;
    for (const Variant& cell : row) record.push_back(cell.Get());
    records.push_back(std::move(record));
  }
  return records.empty() ? Variant() : RowArray(records);
}

/// A recordset's rows and where it stands.
struct Cursor {
  std::vector<StubHost::Row> rows;
  std::size_t at = 0;

  [[nodiscard]] bool End() const { return at >= rows.size(); }
  /// Null for a name that no column has.
  [[nodiscard]] Variant Field(const StubHost& host, const std::string& name) const {
    const std::size_t position = ColumnOf(host, name);
    return End() || position >= rows[at].size() ? Variant::Null() : rows[at][position];
  }
  /// "column='text'" or "column=number".
  void Find(const StubHost& host, const std::string& criteria) {
    const std::size_t equals = criteria.find('=');
    const std::size_t start = criteria.find_first_not_of(' ');
    const std::string column = criteria.substr(start, equals - start);
    std::string wanted = criteria.substr(equals + 1);
    std::erase(wanted, '\'');
    while (!End() && Cell(host, rows[at], column) != wanted) ++at;
  }
};

/// A recordset that also hands out its rows in one piece.
class TextRecordset : public NamedObject, public com::InterfaceImpl<IHostRowTexts> {
 public:
  TextRecordset(Members members, StubHost::RowTexts texts)
      : NamedObject(std::move(members)),
        com::InterfaceImpl<IHostRowTexts>(static_cast<com::ComObject&>(*this)),
        texts_(std::move(texts)) {
    AddInterface(IID_IHostRowTexts, static_cast<IHostRowTexts*>(this));
  }

  STDMETHODIMP GetRowTexts(long* fields, SAFEARRAY** ends, BSTR* text) noexcept override {
    *fields = texts_.fields;
    *ends = SafeArrayCreateVector(texts_.type, 0, static_cast<ULONG>(texts_.ends.size()));
    if (texts_.type == VT_I4) {
      std::ranges::copy(texts_.ends, static_cast<LONG*>((*ends)->pvData));
    }
    *text = com::Bstr(std::wstring_view(texts_.text)).Detach();
    return texts_.status;
  }

 private:
  StubHost::RowTexts texts_;
};

Variant Recordset(const Shared& host, const std::string& sql) {
  const bool given = host->whole_result.Type() != VT_EMPTY;
  auto cursor = std::make_shared<Cursor>(Cursor{RowsFor(*host, sql)});
  const Variant rows = given ? host->whole_result : ArrayOf(cursor->rows);
  const auto end = [given, cursor](const StubCall&) { return Variant(!given && cursor->End()); };
  const auto nothing = [](const StubCall&) { return Variant(); };
  if (host->row_texts) {
    Members members{{L"EOF", [](const StubCall&) { return Variant(false); }}, {L"Close", nothing}};
    return Variant(
        com::MakeObject<TextRecordset>(std::move(members), *host->row_texts).As<IDispatch>());
  }
  return Variant(Object(host, {{L"EOF", end},
                               {L"BOF", end},
                               {L"GetRows", [rows](const StubCall&) { return rows; }},
                               {L"MoveFirst",
                                [cursor](const StubCall&) {
                                  cursor->at = 0;
                                  return Variant();
                                }},
                               {L"Find",
                                [host, cursor](const StubCall& call) {
                                  cursor->Find(*host, call.Text(0));
                                  return Variant();
                                }},
                               {L"Fields",
                                [host, cursor](const StubCall& call) {
                                  return ValueObject(host, cursor->Field(*host, call.Text(0)));
                                }},
                               {L"Close", nothing}}));
}

Variant Statement(const Shared& host, const std::string& sql) {
  host->statements.push_back(sql);
  return Variant(
      Object(host, {{L"Recordset", [host, sql](const StubCall&) { return Recordset(host, sql); }},
                    {L"ScalarValue", [host](const StubCall&) { return host->scalar; }},
                    {L"Execute", [host, sql](const StubCall&) {
                       host->executed.push_back(sql);
                       return Variant();
                     }}}));
}

Variant Database(const Shared& host) {
  return Variant(Object(
      host, {{L"OpenSql", [host](const StubCall& call) { return Statement(host, call.Text(0)); }},
             {L"ConnectionProperties",
              [host](const StubCall&) {
                return Variant(Object(host, {{L"Item", [host](const StubCall&) {
                                                return ValueObject(host, Text("sqlite"));
                                              }}}));
              }},
             {L"LastError", [host](const StubCall&) {
                return Variant(
                    Object(host, {{L"Description", [](const StubCall&) { return Text(""); }},
                                  {L"Clear", [](const StubCall&) { return Variant(); }}}));
              }}}));
}

Variant Wheel(const Shared& host) {
  const auto log = [host](const StubCall& call, std::string line) {
    for (std::size_t i = 0; i < call.Count(); ++i) line += " " + call.Text(i);
    host->wheel_calls.push_back(line);
    return Variant();
  };
  return Variant(Object(
      host,
      {{L"SetRange", [log](const StubCall& call) { return log(call, "SetRange"); }},
       {L"Attach",
        [host](const StubCall& call) {
          host->wheel_window = call.Number(0);
          host->wheel_calls.emplace_back("Attach");
          return Variant();
        }},
       {L"Detach", [log](const StubCall& call) { return log(call, "Detach"); }},
       {L"AttachedTo",
        [host](const StubCall&) { return Variant(static_cast<std::int32_t>(host->wheel_window)); }},
       {L"Position", [log](const StubCall& call) { return log(call, "Position"); }}}));
}

Variant Navigator(const Shared& host) {
  const auto note = [host](const char* name) {
    return [host, name](const StubCall& call) {
      std::string line = name;
      const auto grid = call.At(0).Object();
      line += grid ? " grid" : " nothing";
      for (std::size_t i = 1; i < call.Count(); ++i) line += " " + call.Text(i);
      host->navigator_calls.push_back(line);
      return Variant(true);
    };
  };
  return Variant(Object(host, {{L"MoveTop", note("MoveTop")},
                               {L"MovePrevious", note("MovePrevious")},
                               {L"MoveNext", note("MoveNext")},
                               {L"MoveBottom", note("MoveBottom")},
                               {L"Find", note("Find")},
                               {L"FindNext", note("FindNext")},
                               {L"Filter", note("Filter")}}));
}

/// The rule 4222.
Variant Rule(const Shared& host) {
  return Variant(Object(
      host, {{L"ParentCode",
              [](const StubCall& call) {
                const std::string code = call.Text(0);
                return Text(code.size() > 4 ? code.substr(0, code.size() - 2) : std::string());
              }},
             {L"LevelOf",
              [](const StubCall& call) {
                return Variant(static_cast<std::int32_t>(call.Text(0).size()) / 2 - 1);
              }},
             {L"LengthAtLevel", [](const StubCall& call) {
                const long level = call.Number(0);
                return Variant(static_cast<std::int32_t>(level == 0 ? 0 : 2 + 2 * level));
              }}}));
}

Variant Helper(const Shared& host, const std::string& name) {
  const auto given = host->helpers.find(name);
  if (given != host->helpers.end()) return Variant(given->second);
  if (name == "MouseEvent") return Wheel(host);
  if (name == "GridNavigator") return Navigator(host);
  if (name == "CodeRule") return Rule(host);
  const auto nothing = [](const StubCall&) { return Variant(); };
  return Variant(Object(host, {{L"SetDatabase", nothing},
                               {L"FileName", nothing},
                               {L"ReadValue", [](const StubCall& call) { return call.At(2); }},
                               {L"WriteValue", nothing},
                               {L"Exists", [](const StubCall&) { return Variant(false); }},
                               {L"Clear", nothing}}));
}

Variant Rights(const Shared& host) {
  return Variant(Object(host, {{L"CanAdd", [](const StubCall&) { return Variant(true); }},
                               {L"CanEdit", [](const StubCall&) { return Variant(true); }}}));
}

}  // namespace

ComPtr<IDispatch> StubHost::System(const Shared& host) {
  return Object(
      host,
      {{L"GetDatabase", [host](const StubCall&) { return Database(host); }},
       {L"GetSetting",
        [host](const StubCall& call) {
          return ValueObject(host, Text(host->settings[call.Text(0)]));
        }},
       {L"NewIdentifier", [](const StubCall&) { return Variant(std::int32_t{100}); }},
       {L"Rights", [host](const StubCall&) { return Rights(host); }},
       {L"Folders",
        [host](const StubCall&) {
          return Variant(
              Object(host, {{L"UserFolder", [](const StubCall&) { return Text("C:\\users"); }}}));
        }},
       {L"CreateHelper", [host](const StubCall& call) { return Helper(host, call.Text(0)); }}});
}

StubHost::Row AccountRow(std::string_view code, std::string_view name, int level,
                         std::string_view category, int id) {
  return {Text(code),
          Text(name),
          Variant::Null(),
          Text(""),
          Variant(std::int32_t{id}),
          Variant(std::int32_t{level}),
          Text(category)};
}

std::shared_ptr<StubHost> FewAccounts() {
  auto host = std::make_shared<StubHost>();
  host->rows = {
      AccountRow("100202", "建行", 2, "资产", 4), AccountRow("1001", "库存现金", 1, "资产", 1),
      AccountRow("1002", "银行存款", 1, "资产", 2), AccountRow("100201", "工行", 2, "资产", 3),
      AccountRow("2202", "应付账款", 1, "负债", 5)};
  return host;
}

Variant RowArray(const std::vector<std::vector<VARIANT>>& records) {
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(records.front().size()), 0},
                              {static_cast<ULONG>(records.size()), 0}};
  Variant result;
  result.InPlace()->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  result.InPlace()->vt = VT_ARRAY | VT_VARIANT;
  for (std::size_t record = 0; record < records.size(); ++record) {
    for (std::size_t field = 0; field < records[record].size(); ++field) {
      LONG position[2] = {static_cast<LONG>(field), static_cast<LONG>(record)};
      com::Check(SafeArrayPutElement(result.Get().parray, position,
                                     com::Readable(records[record][field])));
    }
  }
  return result;
}

}  // namespace tavrix::test
