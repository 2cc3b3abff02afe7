#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "component/named_object.h"

namespace tavrix::test {

/// A host of a few lines: what its objects answer, and what they were asked. Every object knows its
/// members by name only.
struct StubHost {
  /// As wide as what the caller's query asks for.
  using Row = std::vector<Variant>;

  std::vector<Row> rows;
  /// The names of their columns, for callers that ask by name.
  std::vector<std::string> columns{"ccode", "ccode_name", "cexch_name", "",
                                   "i_id",  "igrade",     "cclass"};
  /// Given by every `GetRows` instead of `rows`, when set.
  Variant whole_result;
  /// Given by every `ScalarValue`.
  Variant scalar{std::int32_t{0}};
  std::map<std::string, std::string> settings{{"kmbm", "4222"}, {"mouseeventscrollrate", "2.5"}};
  /// What a recordset hands out in one piece; only when set does it offer that.
  struct RowTexts {
    long fields = 0;
    std::vector<LONG> ends;
    std::wstring text;
    HRESULT status = S_OK;
    VARTYPE type = VT_I4;  ///< of `ends`, which stay zero in any other
  };
  std::optional<RowTexts> row_texts;
  /// Called with the name of each member before it answers.
  NamedObject::Gate gate;
  /// Other things that `CreateHelper` shall give, by name.
  std::map<std::string, ComPtr<IDispatch>> helpers;

  std::vector<std::string> statements;
  std::vector<std::string> executed;  ///< those of them that were to change data
  std::vector<std::string> wheel_calls;
  long wheel_window = 0;
  std::vector<std::string> navigator_calls;

  /// `pcSystem` over `host`.
  [[nodiscard]] static ComPtr<IDispatch> System(const std::shared_ptr<StubHost>& host);
};

[[nodiscard]] StubHost::Row AccountRow(std::string_view code, std::string_view name, int level,
                                       std::string_view category, int id);

/// 1001 库存现金, 1002 银行存款 (100201 工行, 100202 建行), 2202 应付账款, in another order.
[[nodiscard]] std::shared_ptr<StubHost> FewAccounts();

/// A two-dimensional array (field, record) of VARIANTs, which are stored as they are.
[[nodiscard]] Variant RowArray(const std::vector<std::vector<VARIANT>>& records);

}  // namespace tavrix::test
