#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "support/recorder_log.h"

namespace tavrix::test {

using Log = std::shared_ptr<RecorderLog>;

/// What is no value at all.
class SomeObject : public host::ForeignValue {
 public:
  [[nodiscard]] std::string ToText() const override { return {}; }
  [[nodiscard]] double ToNumber() const override { return 0; }
  [[nodiscard]] bool IsObject() const override { return true; }
};

inline host::Value WrongValue(Fault fault) {
  return fault == Fault::kObject ? host::Value(std::make_shared<SomeObject>()) : host::Value();
}

/// A wrapper of one host object. `Inner` is what it wraps.
template <class Inner>
class Wrapper : public Inner {
 public:
  Wrapper(std::shared_ptr<Inner> inner, Log log) : inner_(std::move(inner)), log_(std::move(log)) {}

 protected:
  /// A call that gives nothing, or something that has no null.
  template <class Body>
  auto Plain(const char* name, const Body& body) {
    (void)log_->Note({.name = name});
    return body();
  }
  host::Value Nullable(const char* name, const std::function<host::Value()>& body) {
    const auto fault = log_->Note({.name = name, .can_give_null = true, .can_give_object = true});
    return fault ? WrongValue(fault->fault) : body();
  }
  /// A call that gives an object, which is wrapped in turn.
  template <class Wrapped, class Body>
  std::invoke_result_t<Body> Object(const char* name, const Body& body) {
    if (log_->Note({.name = name, .can_give_null = true})) return nullptr;
    auto object = body();
    if (!object) return nullptr;
    auto wrapped = std::make_shared<Wrapped>(std::move(object), log_);
    Wrapped* const bare = wrapped.get();
    return {bare, [wrapped = std::move(wrapped), log = log_, name](Wrapped*) mutable {
              wrapped.reset();
              if (log->on_release) log->on_release(name);
            }};
  }

  std::shared_ptr<Inner> inner_;
  Log log_;
};

}  // namespace tavrix::test
