#include "book/row_loader.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace desk::book {

namespace {

/// `columns` as they stand in a statement, each by way of `text_of`.
template <class TextOf>
std::string List(const std::vector<Column>& columns, TextOf&& text_of) {
  std::string list;
  for (const Column& column : columns) {
    if (!list.empty()) list += ",";
    list += text_of(column);
  }
  return list;
}

std::string InsertStart(const LoadPlan& plan) {
  const auto name = [](const Column& column) { return std::string(column.name); };
  return "insert into " + plan.table + "(" + List(plan.columns, name) + ")";
}

[[noreturn]] void Refuse(const LoadPlan& plan, const std::string& key, const DatabaseError& error) {
  throw DatabaseError(error.Reason(), "不能复制表 " + plan.table + " 中 " +
                                          std::string(plan.columns.front().name) + "=" + key +
                                          " 的行：" + error.what());
}

class SingleLoader final : public RowLoader {
 public:
  SingleLoader(Connection& connection, LoadPlan plan)
      : connection_(connection), plan_(std::move(plan)) {
    const auto mark = [](const Column&) { return std::string("?"); };
    insert_ = InsertStart(plan_) + "values(" + List(plan_.columns, mark) + ")";
  }
  void OnNull() override { Add({}); }
  void OnWhole(std::int64_t number) override { Add(number); }
  void OnNumber(double number) override { Add(number); }
  void OnText(std::string_view text) override { Add(text); }
  void Finish() override {}

 private:
  void Add(host::Value value) {
    row_.push_back(std::move(value));
    if (row_.size() < plan_.columns.size()) return;
    try {
      connection_.Execute(insert_, Origin::kDesk, row_);
    } catch (const DatabaseError& error) {
      Refuse(plan_, row_.front().ToText(), error);
    }
    row_.clear();
  }

  Connection& connection_;
  LoadPlan plan_;
  std::string insert_;
  std::vector<host::Value> row_;
};

/// Many rows as one array for each column: one statement, and the server reads each array in one
/// go. The arrays are taken apart among the columns of the select, not behind its `from`, where
/// each would be stored once more.
class ArrayLoader final : public RowLoader {
 public:
  ArrayLoader(Connection& connection, LoadPlan plan)
      : connection_(connection), plan_(std::move(plan)), columns_(plan_.columns.size()) {
    const auto array = [](const Column& column) {
      return "unnest(cast(? as " + std::string(TypeOf(column.kind)) + "[]))";
    };
    insert_ = InsertStart(plan_) + "select " + List(plan_.columns, array);
  }

  void OnNull() override {
    Cell().append("NULL");
    EndCell();
  }
  void OnWhole(std::int64_t number) override { AddNumber(number); }
  void OnNumber(double number) override { AddNumber(number); }
  void OnText(std::string_view text) override {
    std::string& cell = Cell();
    cell += '"';
    for (const char c : text) {
      if (c == '"' || c == '\\') cell += '\\';
      cell += c;
    }
    cell += '"';
    EndCell();
  }
  void Finish() override {
    if (rows_ == 0) return;
    connection_.Execute("savepoint loaded_rows", Origin::kDesk);
    Send(0, rows_);
    connection_.Execute("release savepoint loaded_rows", Origin::kDesk);
    for (Texts& column : columns_) column = {};
    rows_ = bytes_ = 0;
  }

 private:
  /// The cells of one column, separated by commas, and where each ends.
  struct Texts {
    std::string text;
    std::vector<std::size_t> ends;
  };

  static std::string_view TypeOf(ColumnKind kind) {
    switch (kind) {
      case ColumnKind::kKey:
      case ColumnKind::kWhole:
      case ColumnKind::kOptional:
        return "integer";
      case ColumnKind::kFlag:
        return "smallint";
      case ColumnKind::kMoney:
        return "bigint";
      case ColumnKind::kNumber:
        return "double precision";
      case ColumnKind::kText:
      case ColumnKind::kCode:
      case ColumnKind::kKeyText:
        break;
    }
    return "text";
  }

  std::string& Cell() {
    std::string& text = columns_[next_].text;
    if (rows_ > 0) text += ',';
    return text;
  }
  template <class Number>
  void AddNumber(Number number) {
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    Cell().append(std::begin(digits), end);
    EndCell();
  }
  void EndCell() {
    Texts& column = columns_[next_];
    bytes_ += column.text.size() - (column.ends.empty() ? 0 : column.ends.back());
    column.ends.push_back(column.text.size());
    if (++next_ < columns_.size()) return;
    next_ = 0;
    ++rows_;
    if (rows_ >= kMostRows || bytes_ >= kMostBytes) Finish();
  }
  /// An array of the cells of the rows from `first` on and before `end`.
  static std::string Array(const Texts& column, std::size_t first, std::size_t end) {
    const std::size_t start = first == 0 ? 0 : column.ends[first - 1] + 1;
    return "{" + column.text.substr(start, column.ends[end - 1] - start) + "}";
  }
  /// When the server refuses them, half of them, and so on, until it is known which row it is.
  void Send(std::size_t first, std::size_t end) {
    std::vector<host::Value> arrays;
    for (const Texts& column : columns_) arrays.emplace_back(Array(column, first, end));
    try {
      connection_.Execute(insert_, Origin::kDesk, arrays);
      return;
    } catch (const DatabaseError& error) {
      if (error.Reason() == Trouble::kGone) throw;
      if (end - first == 1) {
        const std::string key = Array(columns_.front(), first, end);
        Refuse(plan_, key.substr(1, key.size() - 2), error);
      }
    }
    connection_.Execute("rollback to savepoint loaded_rows", Origin::kDesk);
    const std::size_t middle = first + (end - first) / 2;
    Send(first, middle);
    Send(middle, end);
  }

  static constexpr std::size_t kMostRows = 5000;
  static constexpr std::size_t kMostBytes = std::size_t{1} << 20;

  Connection& connection_;
  LoadPlan plan_;
  std::string insert_;
  std::vector<Texts> columns_;
  std::size_t next_ = 0;  ///< column of the next cell
  std::size_t rows_ = 0;  ///< whole ones that have not been sent
  std::size_t bytes_ = 0;
};

}  // namespace

std::unique_ptr<RowLoader> NewRowLoader(Connection& connection, LoadPlan plan) {
  if (connection.Makes() == Flavor::kPostgres) {
    return std::make_unique<ArrayLoader>(connection, std::move(plan));
  }
  return std::make_unique<SingleLoader>(connection, std::move(plan));
}

}  // namespace desk::book
