#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "book/exchange/column_match.h"
#include "book/exchange/field_info.h"
#include "book/exchange/source_table.h"
#include "book/session/session.h"

/// What an import would do, line by line, before anything is written.
namespace desk::book {

/// How the rows of a file are to be read.
struct ImportOptions {
  ColumnMap columns = {};
  /// Place of the header among the table's rows; it and what stands above it are no accounts.
  std::optional<std::size_t> header = {};
  /// For a book without accounts, which takes it over; empty: the book's own.
  std::string code_rule = {};
  /// Accounts that would have no mnemonic get the proposed one.
  bool fill_mnemonics = false;
};

enum class ImportState : std::uint8_t { kAdd, kChange, kSame, kRefuse };

struct ImportLine {
  int number = 0;  ///< in the file
  ImportState state = ImportState::kRefuse;
  AccountRecord account = {};  ///< as it will be; of a refused line what could be read
  AccountRecord before = {};   ///< in the book; meaningful for `kChange`
  std::int64_t id = 0;         ///< of the account in the book; 0 for a new one
  std::vector<AccountField> changed = {};
  std::string why = {};  ///< of a refusal, for users

  friend bool operator==(const ImportLine&, const ImportLine&) = default;
};

struct ImportPlan {
  std::string rule;           ///< by which codes are judged
  bool empty_book = false;    ///< without accounts: it can have another rule
  bool changes_rule = false;  ///< the book is to get it
  std::vector<ImportLine> lines;
  /// Leaf accounts of the book that others will stand below.
  std::vector<std::string> new_parents;

  [[nodiscard]] std::size_t Count(ImportState state) const;
  friend bool operator==(const ImportPlan&, const ImportPlan&) = default;
};

/// What the codes' lengths say of the levels; empty when they make no rule.
[[nodiscard]] std::string ProposeCodeRule(const SourceTable& table, const ImportOptions& options);

/// Judges each row against the book as it is now; the rows stay in the file's order. A field whose
/// column the file does not have stays as it is, and a new account gets it from its parent or from
/// its other fields. `DatabaseError` when the book cannot be read.
[[nodiscard]] ImportPlan PlanImport(Session& session, const SourceTable& table,
                                    const ImportOptions& options);

/// What will change in an account of the book: "名称：库存 → 现金；封存：是 → 否"; why a line is
/// refused; nothing for others.
[[nodiscard]] std::string NoteOf(const ImportLine& line);

}  // namespace desk::book
