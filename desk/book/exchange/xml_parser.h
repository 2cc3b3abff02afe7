#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/non_copyable.h"

/// XML as far as workbooks have it.
namespace desk::book {

/// The attributes of an element.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char* const* pairs) : pairs_(pairs) {}
  /// By its name without a prefix; empty when there is none.
  [[nodiscard]] std::string_view Get(std::string_view name) const;

 private:
  const char* const* pairs_;
};

/// Takes what a document holds, in its order. Names come without prefixes.
class XmlSink {
 public:
  virtual ~XmlSink() = default;
  virtual void OnStart(std::string_view name, const XmlAttributes& attributes) = 0;
  virtual void OnEnd(std::string_view name) = 0;
  /// A piece of the text between the elements.
  virtual void OnText(std::string_view text) = 0;
};

/// Reads one document. `SourceError` when it is none, and when it declares types or entities, as no
/// workbook does; what the sink throws passes through.
class XmlParser : private tavrix::host::NonCopyable {
 public:
  /// `sink` must outlive it.
  explicit XmlParser(XmlSink& sink);
  ~XmlParser();

  void Feed(std::string_view piece);
  /// The document must be whole.
  void Finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace desk::book
