#include "views/chart_print.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

#include "host/account.h"

namespace desk::views {

namespace {

namespace host = tavrix::host;

constexpr char kTitle[] = "会计科目表";

/// The columns of the statement; the flags of `kKinds` follow.
enum Field {
  kCode,
  kName,
  kEnglish,
  kLevel,
  kCategory,
  kSide,
  kCurrency,
  kUnit,
  kBook,
  kMnemonic,
  kSealed,
  kFirstKind
};

struct Kind {
  const char* column;
  const char* word;
};
constexpr std::array kKinds = {Kind{"bdept", "部门"}, Kind{"bperson", "个人"}, Kind{"bcus", "客户"},
                               Kind{"bsup", "供应商"}, Kind{"bitem", "项目"}};

struct Column {
  PrintColumn look;
  bool always;
};

const std::vector<Column>& AllColumns() {
  static const std::vector<Column> columns = {
      {{.caption = "科目编码"}, true},
      {{.caption = "科目名称", .wraps = true, .indented = true}, true},
      {{.caption = "英文名称", .wraps = true}, false},
      {{.caption = "类别", .align = PrintAlign::kCenter}, true},
      {{.caption = "方向", .align = PrintAlign::kCenter}, true},
      {{.caption = "外币"}, false},
      {{.caption = "计量单位"}, false},
      {{.caption = "辅助核算", .wraps = true}, false},
      {{.caption = "账页格式"}, false},
      {{.caption = "助记码"}, false},
      {{.caption = "状态", .align = PrintAlign::kCenter}, false}};
  return columns;
}

bool FlagAt(const book::Rows& rows, int column) {
  return rows.Get(column).ToNumber() != 0;
}

std::string KindsOf(const book::Rows& rows) {
  std::string text;
  for (std::size_t i = 0; i < kKinds.size(); ++i) {
    if (!FlagAt(rows, kFirstKind + static_cast<int>(i))) continue;
    text.append(text.empty() ? "" : "、").append(kKinds[i].word);
  }
  return text;
}

PrintRow RowOf(const book::Rows& rows) {
  const auto text = [&](int field) { return rows.Get(field).ToText(); };
  const int level = static_cast<int>(rows.Get(kLevel).ToNumber());
  // The usual form of pages is not worth a column.
  const std::string book = text(kBook) == host::book_type::kAmount ? std::string() : text(kBook);
  return {.cells = {text(kCode), text(kName), text(kEnglish), text(kCategory),
                    std::string(FlagAt(rows, kSide) ? host::kDebit : host::kCredit),
                    text(kCurrency), text(kUnit), KindsOf(rows), book, text(kMnemonic),
                    FlagAt(rows, kSealed) ? "封存" : ""},
          .level = std::max(0, level - 1)};
}

std::unique_ptr<book::Rows> Read(book::Session& session) {
  std::string sql =
      "select ccode,ccode_name,ccode_engl,igrade,cclass,bproperty,cexch_name,cmeasure,cbook_type,"
      "chelp,bclose";
  for (const Kind& kind : kKinds) sql.append(",").append(kind.column);
  return session.Own().Query(sql + " from gl_code order by ccode", book::Origin::kDesk);
}

/// Takes away what no account has.
PrintTable Made(std::vector<PrintRow> rows) {
  PrintTable table{.title = kTitle};
  std::vector<std::size_t> kept;
  for (std::size_t col = 0; col < AllColumns().size(); ++col) {
    const Column& column = AllColumns()[col];
    const auto has = [&](const PrintRow& row) { return !row.cells[col].empty(); };
    if (!column.always && std::ranges::none_of(rows, has)) continue;
    kept.push_back(col);
    table.columns.push_back(column.look);
  }
  for (PrintRow& row : rows) {
    std::vector<std::string> cells;
    cells.reserve(kept.size());
    for (const std::size_t col : kept) cells.push_back(std::move(row.cells[col]));
    row.cells = std::move(cells);
  }
  table.rows = std::move(rows);
  return table;
}

}  // namespace

PrintTable ChartTable(book::Session& session) {
  std::vector<PrintRow> rows;
  const auto read = Read(session);
  while (read->Next()) rows.push_back(RowOf(*read));
  return Made(std::move(rows));
}

PrintTable ChartTable(book::Session& session, const std::vector<std::string>& codes) {
  std::unordered_map<std::string, PrintRow> all;
  const auto read = Read(session);
  while (read->Next()) all.try_emplace(read->Get(kCode).ToText(), RowOf(*read));
  std::vector<PrintRow> rows;
  for (const std::string& code : codes) {
    const auto found = all.find(code);
    if (found != all.end()) rows.push_back(found->second);
  }
  return Made(std::move(rows));
}

}  // namespace desk::views
