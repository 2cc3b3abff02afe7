#include "book/database/row_loader.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace desk::book {

namespace {

void AppendQuoted(std::string& array, std::string_view text) {
  array += '"';
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t special = std::min(text.find_first_of("\"\\", at), text.size());
    array.append(text, at, special - at);
    if (special < text.size()) array.append({'\\', text[special]});
    at = special + 1;
  }
  array += '"';
}

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

[[noreturn]] void Refuse(const LoadPlan& plan, std::size_t row, const std::string& key,
                         const DatabaseError& error) {
  throw RowError(error.Kind(),
                 "不能写入表 " + plan.table + " 中 " + std::string(plan.columns.front().name) +
                     "=" + key + " 的行：" + error.what(),
                 row, error.what());
}

class SingleLoader final : public RowLoader {
 public:
  SingleLoader(Connection& connection, LoadPlan plan)
      : connection_(connection), plan_(std::move(plan)) {
    const auto mark = [](const Column&) { return std::string("?"); };
    if (plan_.kind == LoadKind::kAdd) {
      statement_ = InsertStart(plan_) + "values(" + List(plan_.columns, mark) + ")";
    }
  }
  void OnNull() override { Add({}); }
  void OnInteger(std::int64_t number) override { Add(number); }
  void OnNumber(double number) override { Add(number); }
  void OnText(std::string_view text) override { Add(text); }
  void Finish() override {}

 private:
  void Add(host::Value value) {
    row_.push_back(std::move(value));
    if (row_.size() < plan_.columns.size()) return;
    const std::string key = row_.front().ToText();
    try {
      if (plan_.kind == LoadKind::kChange) PrepareChange();
      if (!statement_.empty()) connection_.Execute(statement_, Origin::kDesk, row_);
    } catch (const DatabaseError& error) {
      Refuse(plan_, rows_, key, error);
    }
    row_.clear();
    ++rows_;
  }
  /// The statement for the cells that change, and these, with the key behind them; none when there
  /// are none.
  void PrepareChange() {
    statement_.clear();
    std::vector<host::Value> cells;
    for (std::size_t i = 1; i < row_.size(); ++i) {
      if (row_[i].IsNull()) continue;
      statement_ += (cells.empty() ? "update " + plan_.table + " set " : ",") +
                    std::string(plan_.columns[i].name) + "=?";
      cells.push_back(std::move(row_[i]));
    }
    cells.push_back(std::move(row_.front()));
    row_ = std::move(cells);
    if (statement_.empty()) return;
    statement_ += " where " + std::string(plan_.columns.front().name) + "=?";
  }

  Connection& connection_;
  LoadPlan plan_;
  std::string statement_;
  std::vector<host::Value> row_;
  std::size_t rows_ = 0;  ///< that have been written
};

/// As the server takes them in arrays, in the order of `ColumnKind`.
constexpr std::string_view kArrayTypes[] = {"integer", "integer", "integer", "smallint",
                                            "text",    "text",    "bigint",  "double precision",
                                            "text"};

std::string_view TypeOf(ColumnKind kind) {
  return kArrayTypes[static_cast<std::size_t>(kind)];
}

/// Rows as the texts of arrays, one for each column.
class RowArrays {
 public:
  explicit RowArrays(std::size_t columns) : columns_(columns) {}
  [[nodiscard]] std::size_t Rows() const { return rows_; }
  [[nodiscard]] std::size_t Bytes() const { return bytes_; }
  /// Without rows, but with the room that it had.
  void Clear() {
    for (Texts& column : columns_) {
      column.text.clear();
      column.ends.clear();
      column.same = true;
    }
    rows_ = bytes_ = 0;
  }

  void AddPlain(std::string_view text) {
    Cell().append(text);
    EndCell();
  }
  void AddQuoted(std::string_view text) {
    AppendQuoted(Cell(), text);
    EndCell();
  }

  /// An array of the cells of a column in the rows from `first` on and before `end`.
  [[nodiscard]] std::string Array(std::size_t column, std::size_t first, std::size_t end) const {
    const auto [start, length] = Place(column, first, end);
    std::string array;
    array.reserve(length + 2);
    return array.append("{").append(columns_[column].text, start, length).append("}");
  }
  /// Whether all rows have the same there.
  [[nodiscard]] bool IsSame(std::size_t column) const { return columns_[column].same; }
  /// The cell that names a row in messages.
  [[nodiscard]] std::string Key(std::size_t row) const {
    const auto [start, length] = Place(0, row, row + 1);
    return columns_.front().text.substr(start, length);
  }

 private:
  /// The cells of one column, separated by commas, and where each ends.
  struct Texts {
    std::string text;
    std::vector<std::size_t> ends;
    bool same = true;
  };

  std::string& Cell() {
    std::string& text = columns_[next_].text;
    if (rows_ > 0) text += ',';
    return text;
  }
  void EndCell() {
    Texts& column = columns_[next_];
    bytes_ += column.text.size() - (column.ends.empty() ? 0 : column.ends.back());
    column.ends.push_back(column.text.size());
    if (column.same && rows_ > 0) {
      const std::string_view text(column.text);
      column.same = text.substr(column.ends[rows_ - 1] + 1) == text.substr(0, column.ends.front());
    }
    if (++next_ < columns_.size()) return;
    next_ = 0;
    ++rows_;
  }
  /// Where the cells of some rows stand, and how long they are.
  [[nodiscard]] std::pair<std::size_t, std::size_t> Place(std::size_t column, std::size_t first,
                                                          std::size_t end) const {
    const std::vector<std::size_t>& ends = columns_[column].ends;
    const std::size_t start = first == 0 ? 0 : ends[first - 1] + 1;
    return {start, ends[end - 1] - start};
  }

  std::vector<Texts> columns_;
  std::size_t next_ = 0;  ///< column of the next cell
  std::size_t rows_ = 0;  ///< whole ones
  std::size_t bytes_ = 0;
};

/// Many rows as one array for each column: one statement, and the server reads each array in one
/// go. For new rows the arrays are taken apart among the columns of the select, not behind its
/// `from`, where each would be stored once more. While the server stores some rows, the next are
/// gathered.
class ArrayLoader final : public RowLoader {
 public:
  ArrayLoader(Connection& connection, LoadPlan plan)
      : connection_(connection),
        plan_(std::move(plan)),
        gathered_(plan_.columns.size()),
        sent_(plan_.columns.size()) {}

  void OnNull() override {
    gathered_.AddPlain("NULL");
    SendWhenMany();
  }
  void OnInteger(std::int64_t number) override { AddNumber(number); }
  void OnNumber(double number) override { AddNumber(number); }
  void OnText(std::string_view text) override {
    gathered_.AddQuoted(text);
    SendWhenMany();
  }
  void Finish() override {
    Send();
    Await();
  }

 private:
  template <class Number>
  void AddNumber(Number number) {
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    gathered_.AddPlain({std::begin(digits), end});
    SendWhenMany();
  }
  void SendWhenMany() {
    if (gathered_.Rows() >= kMaxRows || gathered_.Bytes() >= kMaxBytes) Send();
  }
  void Send() {
    Await();
    if (gathered_.Rows() == 0) return;
    std::swap(gathered_, sent_);
    statement_ = Statement();
    under_way_.push_back(connection_.Start("savepoint loaded_rows"));
    under_way_.push_back(connection_.Start(statement_, Arrays(0, sent_.Rows())));
  }
  void Await() {
    if (under_way_.empty()) return;
    try {
      for (const Ending& end : std::exchange(under_way_, {})) end();
    } catch (const DatabaseError& error) {
      Divide(0, sent_.Rows(), error);
    }
    connection_.Execute("release savepoint loaded_rows", Origin::kDesk);
    written_ += sent_.Rows();
    sent_.Clear();
  }
  /// The server has refused these rows. It is asked for half of them, and so on, until it is known
  /// which row it is. Where it then takes both halves they cannot stay either: what stood before
  /// them in the batch has been rolled back.
  [[noreturn]] void Divide(std::size_t first, std::size_t end, const DatabaseError& error) {
    if (error.Kind() == ErrorKind::kGone) throw DatabaseError(error);
    if (end - first == 1) Refuse(plan_, written_ + first, sent_.Key(first), error);
    connection_.Execute("rollback to savepoint loaded_rows", Origin::kDesk);
    const std::size_t middle = first + (end - first) / 2;
    Write(first, middle);
    Write(middle, end);
    throw DatabaseError(error);
  }
  void Write(std::size_t first, std::size_t end) {
    try {
      connection_.Execute(statement_, Origin::kDesk, Arrays(first, end));
    } catch (const DatabaseError& error) {
      Divide(first, end, error);
    }
  }
  /// Where all rows have the same, as in columns that a book does not use, an array of one does.
  /// The first column tells how many rows there are.
  [[nodiscard]] bool IsOneForAll(std::size_t column) const {
    return column > 0 && sent_.IsSame(column);
  }
  [[nodiscard]] std::string Selected() const {
    std::size_t next = 0;
    return List(plan_.columns, [&](const Column& column) {
      const std::string array = "cast(? as " + std::string(TypeOf(column.kind)) + "[])";
      const bool one = IsOneForAll(next++);
      return (one ? "(" + array + ")[1]" : "unnest(" + array + ")") + " as " +
             std::string(column.name);
    });
  }
  [[nodiscard]] std::string Statement() const {
    if (plan_.kind == LoadKind::kAdd) return InsertStart(plan_) + "select " + Selected();
    const std::string key(plan_.columns.front().name);
    const std::vector<Column> changed(plan_.columns.begin() + 1, plan_.columns.end());
    const auto assignment = [](const Column& column) {
      const std::string name(column.name);
      return name + "=coalesce(n." + name + ",t." + name + ")";
    };
    return "update " + plan_.table + " t set " + List(changed, assignment) + " from(select " +
           Selected() + ")n where t." + key + "=n." + key;
  }
  [[nodiscard]] std::vector<host::Value> Arrays(std::size_t first, std::size_t end) const {
    std::vector<host::Value> arrays;
    for (std::size_t column = 0; column < plan_.columns.size(); ++column) {
      arrays.emplace_back(sent_.Array(column, first, IsOneForAll(column) ? first + 1 : end));
    }
    return arrays;
  }

  static constexpr std::size_t kMaxRows = 5000;
  static constexpr std::size_t kMaxBytes = std::size_t{1} << 20;

  Connection& connection_;
  LoadPlan plan_;
  std::string statement_;  ///< of the rows that were sent
  RowArrays gathered_;
  RowArrays sent_;
  std::size_t written_ = 0;        ///< rows before those that were sent
  std::vector<Ending> under_way_;  ///< what stores the rows that were sent
};

}  // namespace

std::unique_ptr<RowLoader> NewRowLoader(Connection& connection, LoadPlan plan) {
  if (connection.Dialect() == SqlDialect::kPostgres) {
    return std::make_unique<ArrayLoader>(connection, std::move(plan));
  }
  return std::make_unique<SingleLoader>(connection, std::move(plan));
}

void AppendToArray(std::string& array, std::string_view text) {
  if (!array.empty()) array += ',';
  AppendQuoted(array, text);
}

}  // namespace desk::book
