#include "book/copy.h"

#include <array>
#include <bit>
#include <charconv>
#include <memory>
#include <utility>

#include "book/database/connection_string.h"
#include "book/database/row_loader.h"
#include "book/engines.h"
#include "book/session/journal_command.h"
#include "book/session/schema.h"
#include "book/session/session.h"

namespace desk::book {

namespace {

/// The version of the schema is the new book's own.
std::string Rest(const LoadPlan& part) {
  const bool identifiers = part.table == kIdentifierTableName;
  return " from " + part.table + (identifiers ? " where table_name<>'schema_version'" : "");
}

std::string Query(const LoadPlan& part) {
  std::string list;
  for (const Column& column : part.columns) {
    list += (list.empty() ? "" : ",") + std::string(column.name);
  }
  return "select " + list + Rest(part);
}

/// What the source has of `table`; without columns when it has nothing.
LoadPlan PartOf(Connection& source, const Table& table) {
  LoadPlan part{.table = std::string(table.name), .columns = {}};
  if (!source.HasTable(table.name)) return part;
  for (const Column& column : table.columns) {
    if (source.HasColumn(table.name, column.name)) part.columns.push_back(column);
  }
  return part;
}

std::vector<LoadPlan> PartsOf(Connection& source) {
  std::vector<LoadPlan> parts;
  for (const Table& table : SchemaTables()) parts.push_back(PartOf(source, table));
  parts.push_back(PartOf(source, IdentifierTable()));
  return parts;
}

std::int64_t RowsOf(Connection& connection, const LoadPlan& part) {
  if (part.columns.empty()) return 0;
  const auto rows = connection.Query("select count(*)" + Rest(part), Origin::kDesk);
  return rows->Next() ? rows->Get(0).ToLong() : 0;
}

DatabaseError Cancellation() {
  return {ErrorKind::kOther, "复制已取消"};
}

/// Tells how far the copy has come, also while a server is waited for.
class CopyProgress final : public WaitPort {
 public:
  explicit CopyProgress(const CopyWatch& watch) : watch_(watch) {}
  void Expect(std::int64_t rows) { state_.all = rows; }
  void Enter(std::string_view table, bool compares) {
    state_.table = table;
    state_.compares = compares;
    Tell();
  }
  void Row() {
    constexpr std::int64_t kStep = 1000;
    if (++state_.done % kStep == 0) Tell();
  }
  [[nodiscard]] bool OnWait(std::chrono::milliseconds) override {
    cancelled_ = cancelled_ || (watch_ && !watch_(state_));
    return !cancelled_;
  }
  void OnWaited() noexcept override {}
  [[nodiscard]] bool Cancelled() const { return cancelled_; }

 private:
  void Tell() {
    if (!OnWait({})) throw Cancellation();
  }

  const CopyWatch& watch_;
  CopyState state_;
  bool cancelled_ = false;
};

/// What is compared of a table: engines give its rows in different orders. A row is told by the
/// text of its cells, each with an end; the same text can be asked of a server (`TextOfRow`).
class Contents {
 public:
  void Add(std::string_view text) {
    for (const char c : text) hash_ = (hash_ ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  }
  void EndRow() {
    ++rows_;
    // A sum of hashes that differ little would let differences cancel out.
    sum_ += (hash_ ^ hash_ >> 32) * 0x9E3779B97F4A7C15;
    hash_ = kStart;
  }
  [[nodiscard]] std::int64_t Rows() const { return rows_; }
  friend bool operator==(const Contents&, const Contents&) = default;

 private:
  static constexpr std::uint64_t kStart = 0xCBF29CE484222325;
  std::uint64_t hash_ = kStart;
  std::uint64_t sum_ = 0;  ///< of a hash of each row
  std::int64_t rows_ = 0;
};

constexpr std::string_view kCellEnd = "\x1F";
constexpr std::string_view kNull = "\x01";

using Bits = std::array<char, 16>;

/// A number with a fraction as the bits that hold it: its decimal text is not everywhere the same.
Bits BitsText(double number) {
  auto bits = std::bit_cast<std::uint64_t>(number);
  Bits text;
  for (std::size_t i = text.size(); i-- > 0; bits >>= 4) text[i] = "0123456789abcdef"[bits & 15];
  return text;
}

/// As PostgreSQL gives what `Contents` takes of a row.
std::string TextOfRow(const LoadPlan& part) {
  std::string list;
  for (const Column& column : part.columns) {
    const std::string name(column.name);
    const std::string text = column.kind == ColumnKind::kNumber
                                 ? "encode(float8send(" + name + "),'hex')"
                                 : "cast(" + name + " as text)";
    list += ",coalesce(" + text + ",chr(1))";
  }
  return "select concat_ws(chr(31)" + list + ",'')" + Rest(part);
}

/// Takes the contents of a table while its cells pass, to `next` unless that is null.
class CellContents final : public CellSink {
 public:
  CellContents(const LoadPlan& part, CopyProgress& progress, CellSink* next)
      : columns_(part.columns), progress_(progress), next_(next) {}
  void OnNull() override {
    if (next_ != nullptr) next_->OnNull();
    EndCell(kNull);
  }
  void OnInteger(std::int64_t number) override {
    if (next_ != nullptr) next_->OnInteger(number);
    if (HoldsBits()) return EndBits(static_cast<double>(number));
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    EndCell({digits.begin(), end});
  }
  void OnNumber(double number) override {
    if (next_ != nullptr) next_->OnNumber(number);
    if (HoldsBits()) return EndBits(number);
    EndCell(host::Value(number).ToText());
  }
  void OnText(std::string_view text) override {
    if (next_ != nullptr) next_->OnText(text);
    EndCell(text);
  }
  [[nodiscard]] const Contents& Seen() const { return seen_; }

 private:
  [[nodiscard]] bool HoldsBits() const { return columns_[column_].kind == ColumnKind::kNumber; }
  void EndBits(double number) {
    const Bits text = BitsText(number);
    EndCell({text.begin(), text.end()});
  }
  void EndCell(std::string_view text) {
    seen_.Add(text);
    seen_.Add(kCellEnd);
    if (++column_ < columns_.size()) return;
    column_ = 0;
    seen_.EndRow();
    progress_.Row();
  }

  const std::vector<Column>& columns_;
  CopyProgress& progress_;
  CellSink* next_;
  std::size_t column_ = 0;
  Contents seen_;
};

/// Takes the contents of a table from the texts of its rows.
class RowContents final : public CellSink {
 public:
  explicit RowContents(CopyProgress& progress) : progress_(progress) {}
  void OnNull() override { OnText({}); }
  void OnInteger(std::int64_t) override { OnText({}); }
  void OnNumber(double) override { OnText({}); }
  void OnText(std::string_view text) override {
    seen_.Add(text);
    seen_.EndRow();
    progress_.Row();
  }
  [[nodiscard]] const Contents& Seen() const { return seen_; }

 private:
  CopyProgress& progress_;
  Contents seen_;
};

/// Its driver would keep all rows of a result in memory; a cursor brings them in portions.
void PassByCursor(Connection& connection, const std::string& query, CellSink& sink) {
  connection.Execute("declare copied_rows no scroll cursor for " + query, Origin::kDesk);
  for (;;) {
    const auto rows = connection.Query("fetch 10000 from copied_rows", Origin::kDesk);
    if (!rows->Next()) break;
    rows->ReadAll(sink);
  }
  connection.Execute("close copied_rows", Origin::kDesk);
}

void Pass(Connection& connection, const std::string& query, CellSink& sink) {
  if (connection.Dialect() == SqlDialect::kPostgres) return PassByCursor(connection, query, sink);
  if (const auto rows = connection.Query(query, Origin::kDesk); rows->Next()) rows->ReadAll(sink);
}

Contents Load(Connection& source, Connection& target, const LoadPlan& part,
              CopyProgress& progress) {
  if (part.columns.empty()) return {};
  progress.Enter(part.table, false);
  const auto loader = NewRowLoader(target, part);
  CellContents sent(part, progress, loader.get());
  Pass(source, Query(part), sent);
  loader->Finish();
  return sent.Seen();
}

Contents ContentsOf(Connection& target, const LoadPlan& part, CopyProgress& progress) {
  if (part.columns.empty()) return {};
  progress.Enter(part.table, true);
  if (target.Dialect() == SqlDialect::kPostgres) {
    RowContents kept(progress);
    Pass(target, TextOfRow(part), kept);
    return kept.Seen();
  }
  CellContents kept(part, progress, nullptr);
  Pass(target, Query(part), kept);
  return kept.Seen();
}

/// The source as it is at one moment. What others may write to waits until it ends.
class StillSource {
 public:
  explicit StillSource(Session& source) : connection_(source.Own()) {
    if (!connection_.ReadOnly()) {
      transaction_ = std::make_unique<Transaction>(source);
    } else if (connection_.Dialect() == SqlDialect::kPostgres) {
      connection_.Execute("begin isolation level repeatable read read only", Origin::kDesk);
    }
  }

 private:
  Connection& connection_;
  std::unique_ptr<Transaction> transaction_;
};

std::vector<CopiedTable> Fill(Session& source, Session& target, CopyProgress& progress) {
  const StillSource still(source);
  const std::vector<LoadPlan> parts = PartsOf(source.Own());
  std::int64_t rows = 0;
  for (const LoadPlan& part : parts) rows += RowsOf(source.Own(), part);
  progress.Expect(2 * rows);
  std::vector<Contents> sent;
  Transaction transaction(target);
  CreateSchema(target.Own(), [&] {
    for (const LoadPlan& part : parts) {
      sent.push_back(Load(source.Own(), target.Own(), part, progress));
    }
  });
  std::vector<CopiedTable> copied;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (sent[i] != ContentsOf(target.Own(), parts[i], progress)) {
      throw DatabaseError(ErrorKind::kOther, "复制后的数据与原来的不一致：" + parts[i].table);
    }
    copied.push_back({parts[i].table, sent[i].Rows()});
  }
  ForgetHistory(target);  // tables that were there already have noted what came
  transaction.Commit();
  return copied;
}

}  // namespace

std::vector<CopiedTable> CopyBook(const std::string& from, const std::string& to,
                                  const CopyWatch& watch) {
  const auto progress = std::make_shared<CopyProgress>(watch);
  const auto place = [&](const std::string& path) {
    constexpr std::chrono::minutes kLimit(10);  // the index of a large table takes its time
    return Place{.path = path, .time_limit = kLimit, .waiting = progress};
  };
  try {
    Session source(EngineFor(from).Open(place(from)));
    (void)CheckSchema(source.Own(), ShownPlace(from));
    std::vector<CopiedTable> copied;
    (void)EngineFor(to).Make(place(to),
                             [&](Session& target) { copied = Fill(source, target, *progress); });
    return copied;
  } catch (const DatabaseError&) {
    if (!progress->Cancelled()) throw;
    throw Cancellation();
  }
}

}  // namespace desk::book
