#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/objects.h"

namespace tavrix::test {

/// How a call of the host is made to fail.
enum class Fault {
  kThrow,      ///< it throws `HostError`
  kErrorText,  ///< it gives an error text where a caller reads one
  kNull,       ///< it gives no object, a null value, or an identifier that no row has
  kObject,     ///< it gives an object where a value is wanted
};

/// One call that went through a `Recorder`.
struct HostCall {
  std::string name;  ///< the contract's name, as in "GetDatabase" or "Statement.Execute"
  /// Besides throwing, which every call may do.
  bool can_give_null = false;
  bool can_give_error_text = false;
  bool can_give_object = false;
  /// What was asked for: "section|key" of a settings file, "table|column" of an identifier.
  std::string detail = {};

  [[nodiscard]] bool Allows(Fault fault) const {
    switch (fault) {
      case Fault::kErrorText:
        return can_give_error_text;
      case Fault::kNull:
        return can_give_null;
      case Fault::kObject:
        return can_give_object;
      default:
        return true;
    }
  }
};

struct RecorderLog;

/// A layer around a system object and everything that it gives out. It keeps the statements in the
/// order in which they ran, keeps every call, and makes one chosen call fail.
///
/// To sweep: run a command once over a fresh recorder and read `Calls`; then, for each call n and
/// each fault that it allows, run the command again after `FailAt(n, fault)`.
class Recorder {
 public:
  explicit Recorder(std::shared_ptr<host::SystemObject> inner);

  /// The wrapped object to hand to a view.
  [[nodiscard]] std::shared_ptr<host::SystemObject> System() const { return system_; }

  /// The statements that ran, not those that were only opened.
  [[nodiscard]] const std::vector<std::string>& Statements() const;
  [[nodiscard]] const std::vector<HostCall>& Calls() const;
  /// How often a call of that name was made.
  [[nodiscard]] int Count(const std::string& name) const;
  /// Recordsets that were given out and are not closed yet.
  [[nodiscard]] int OpenRecordsets() const;
  /// Forgets statements, calls and a planned fault. Objects that were given out stay wrapped.
  void Clear();

  /// Calls `deed` with each statement, just before it runs.
  void BeforeEach(std::function<void(const std::string&)> deed);

  /// Calls `deed` with each call, just before it is made.
  void OnCall(std::function<void(const HostCall&)> deed);

  /// Lets the n-th call from now on fail (0: the next), once. A call that does not allow the fault
  /// passes unharmed; `Fired` tells.
  void FailAt(int n, Fault fault, std::string text = kFaultText);
  /// Lets the next call of that name fail, once.
  void FailNext(const std::string& name, Fault fault, std::string text = kFaultText);
  [[nodiscard]] bool Fired() const;

  /// Calls `deed` with the name of each object that was given out, when it has ended.
  void OnRelease(std::function<void(const std::string&)> deed);

  static constexpr const char* kFaultText = "测试错误";

 private:
  std::shared_ptr<RecorderLog> log_;
  std::shared_ptr<host::SystemObject> system_;
};

}  // namespace tavrix::test
