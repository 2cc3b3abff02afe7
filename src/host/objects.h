#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "host/row_set.h"
#include "host/value.h"

/// What a host offers to the library, one abstract class for each object of the contract.
///
/// Every operation may throw `HostError`. An operation that returns an object may return null when
/// the host has none to give; the functions of `host/calls.h` turn that into a `HostError`.
/// Objects are shared: whoever holds one keeps it alive. All calls come on one thread.
namespace tavrix::host {

class Grid;

/// The rows of a query, scrollable. Field names compare without regard to case; positions count
/// from 0.
class Recordset {
 public:
  virtual ~Recordset() = default;
  [[nodiscard]] virtual bool EndOfFile() = 0;
  [[nodiscard]] virtual bool BeginningOfFile() = 0;
  /// All rows from the current one on; the recordset stands at its end afterwards.
  [[nodiscard]] virtual RowSet GetRows() = 0;
  /// Moves to the first row from the current one on that meets `criteria`, in the form
  /// "column='text'" or "column=number"; to the end when there is none.
  virtual void Find(const std::string& criteria) = 0;
  virtual void MoveFirst() = 0;
  [[nodiscard]] virtual Value Field(const std::string& name) = 0;
  [[nodiscard]] virtual Value Field(int position) = 0;
  virtual void Close() = 0;
};

class Statement {
 public:
  virtual ~Statement() = default;
  /// Runs a statement that changes data. Sets the database's last error and need not throw.
  virtual void Execute() = 0;
  /// First column of the first row; null when there is no row.
  [[nodiscard]] virtual Value ScalarValue() = 0;
  [[nodiscard]] virtual std::shared_ptr<Recordset> OpenRecordset() = 0;
};

class ErrorEntry {
 public:
  virtual ~ErrorEntry() = default;
  /// Empty when the last statement succeeded.
  [[nodiscard]] virtual std::string Description() = 0;
  virtual void Clear() = 0;
};

class Property {
 public:
  virtual ~Property() = default;
  [[nodiscard]] virtual Value Get() = 0;
};

class PropertySet {
 public:
  virtual ~PropertySet() = default;
  [[nodiscard]] virtual std::shared_ptr<Property> Item(const std::string& key) = 0;
};

class Database {
 public:
  virtual ~Database() = default;
  /// `mode` is always `kStatementMode`.
  [[nodiscard]] virtual std::shared_ptr<Statement> OpenSql(const std::string& sql, int mode) = 0;
  [[nodiscard]] virtual std::shared_ptr<ErrorEntry> LastError() = 0;
  [[nodiscard]] virtual std::shared_ptr<PropertySet> ConnectionProperties() = 0;
};
inline constexpr int kStatementMode = 1;

class SettingEntry {
 public:
  virtual ~SettingEntry() = default;
  /// An absent setting reads as empty.
  [[nodiscard]] virtual std::string Get() = 0;
};

class RightsObject {
 public:
  virtual ~RightsObject() = default;
  [[nodiscard]] virtual bool CanAdd() = 0;
  [[nodiscard]] virtual bool CanEdit() = 0;
};

class FoldersObject {
 public:
  virtual ~FoldersObject() = default;
  /// The current user's folder, without a trailing separator.
  [[nodiscard]] virtual std::string UserFolder() = 0;
};

/// Code-rule arithmetic. A rule holds one digit for each level: the length of its segment.
class CodeRule {
 public:
  virtual ~CodeRule() = default;
  /// Empty for a first-level code, an empty code and a code of no level.
  [[nodiscard]] virtual std::string ParentCode(const std::string& code,
                                               const std::string& rule) = 0;
  /// 0 when no level has that length.
  [[nodiscard]] virtual std::int32_t LevelOf(const std::string& code, const std::string& rule) = 0;
  /// Characters of a code at `level`; 0 for level 0, the whole length past the last level.
  [[nodiscard]] virtual std::int32_t LengthAtLevel(std::int32_t level, const std::string& rule) = 0;
};

/// A helper that the library creates and releases, and asks for nothing.
class LogHelper {
 public:
  virtual ~LogHelper() = default;
};

class DataHelper {
 public:
  virtual ~DataHelper() = default;
  virtual void SetDatabase(const std::shared_ptr<Database>& database) = 0;
};

/// Moves through a grid, searches it and filters it; how is the host's own business.
class GridNavigator {
 public:
  virtual ~GridNavigator() = default;
  [[nodiscard]] virtual bool MoveTop(Grid& grid) = 0;
  [[nodiscard]] virtual bool MovePrevious(Grid& grid) = 0;
  [[nodiscard]] virtual bool MoveNext(Grid& grid) = 0;
  [[nodiscard]] virtual bool MoveBottom(Grid& grid) = 0;
  [[nodiscard]] virtual bool Find(Grid& grid, const Value& data) = 0;
  [[nodiscard]] virtual bool FindNext(Grid& grid) = 0;
  [[nodiscard]] virtual bool Filter(Grid& grid, const Value& data) = 0;
};

/// The source of wheel movements over one window.
class MouseEvent {
 public:
  virtual ~MouseEvent() = default;
  virtual void SetRange(std::int32_t maximum) = 0;
  virtual void SetRange(std::int32_t maximum, std::int32_t first_row) = 0;
  virtual void Attach(std::intptr_t window) = 0;
  virtual void Detach() = 0;
  /// The window that the source is attached to; 0 for none.
  [[nodiscard]] virtual std::intptr_t AttachedTo() = 0;
  virtual void SetPosition(std::int32_t position) = 0;
  /// `handler` gets every wheel value from now on and replaces the one before; an empty one ends
  /// it.
  virtual void OnWheel(std::function<void(std::int32_t value)> handler) = 0;
};

/// A text file of sections and keys. Objects on one file see each other's writes at once.
class SettingsFile {
 public:
  virtual ~SettingsFile() = default;
  virtual void SetFileName(const std::string& path) = 0;
  [[nodiscard]] virtual std::string ReadValue(const std::string& section, const std::string& key,
                                              const std::string& fallback) = 0;
  virtual void WriteValue(const std::string& section, const std::string& key,
                          const std::string& value) = 0;
};

/// A keyed collection of named values.
class Parameters {
 public:
  virtual ~Parameters() = default;
  [[nodiscard]] virtual bool Exists(const std::string& key) = 0;
  /// The value of an existing key.
  [[nodiscard]] virtual Value Item(const std::string& key) = 0;
  virtual void Clear() = 0;
};

/// `pcSystem`: the one object that a host hands to a control, and the source of all the others.
class SystemObject {
 public:
  virtual ~SystemObject() = default;
  [[nodiscard]] virtual std::shared_ptr<Database> GetDatabase() = 0;
  [[nodiscard]] virtual std::shared_ptr<SettingEntry> GetSetting(const std::string& key,
                                                                 const std::string& section) = 0;
  struct Identifier {
    std::int32_t id = 0;
    std::string error;  ///< empty when `id` was given
  };
  [[nodiscard]] virtual Identifier NewIdentifier(const std::string& table,
                                                 const std::string& column) = 0;
  [[nodiscard]] virtual std::shared_ptr<RightsObject> Rights(std::int32_t program) = 0;
  [[nodiscard]] virtual std::shared_ptr<FoldersObject> Folders() = 0;

  [[nodiscard]] virtual std::shared_ptr<CodeRule> CreateCodeRule() = 0;
  [[nodiscard]] virtual std::shared_ptr<LogHelper> CreateLogHelper() = 0;
  [[nodiscard]] virtual std::shared_ptr<GridNavigator> CreateGridNavigator() = 0;
  [[nodiscard]] virtual std::shared_ptr<DataHelper> CreateDataHelper() = 0;
  [[nodiscard]] virtual std::shared_ptr<MouseEvent> CreateMouseEvent() = 0;
  [[nodiscard]] virtual std::shared_ptr<SettingsFile> CreateSettingsFile() = 0;
  [[nodiscard]] virtual std::shared_ptr<Parameters> CreateParameters() = 0;
};

}  // namespace tavrix::host
