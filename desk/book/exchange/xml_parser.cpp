#include "book/exchange/xml_parser.h"

#include <expat.h>

#include <exception>

#include "book/exchange/source_table.h"

namespace desk::book {

namespace {

std::string_view WithoutPrefix(std::string_view name) {
  return name.substr(name.find(':') + 1);  // none: from the start
}

}  // namespace

struct XmlParser::State {
  XmlSink& sink;
  XML_Parser parser = nullptr;
  std::exception_ptr failure = nullptr;

  /// No exception passes through the library.
  template <class Body>
  void Guard(Body&& body) {
    if (failure) return;
    try {
      body();
    } catch (...) {
      failure = std::current_exception();
      XML_StopParser(parser, XML_FALSE);
    }
  }
  static State& Of(void* user) { return *static_cast<State*>(user); }
  static void XMLCALL OnStart(void* user, const XML_Char* name, const XML_Char** attributes) {
    State& state = Of(user);
    state.Guard([&] { state.sink.OnStart(WithoutPrefix(name), XmlAttributes(attributes)); });
  }
  static void XMLCALL OnEnd(void* user, const XML_Char* name) {
    State& state = Of(user);
    state.Guard([&] { state.sink.OnEnd(WithoutPrefix(name)); });
  }
  static void XMLCALL OnText(void* user, const XML_Char* text, int length) {
    State& state = Of(user);
    state.Guard([&] { state.sink.OnText({text, static_cast<std::size_t>(length)}); });
  }
  static void XMLCALL OnDoctype(void* user, const XML_Char* /*name*/, const XML_Char* /*system*/,
                                const XML_Char* /*id*/, int /*internal*/) {
    Of(user).Guard([] { throw SourceError("工作簿中有不允许的声明"); });
  }
};

std::string_view XmlAttributes::Get(std::string_view name) const {
  for (const char* const* pair = pairs_; *pair != nullptr; pair += 2) {
    if (WithoutPrefix(pair[0]) == name) return pair[1];
  }
  return {};
}

XmlParser::XmlParser(XmlSink& sink) : state_(std::make_unique<State>(State{.sink = sink})) {
  state_->parser = XML_ParserCreate(nullptr);
  if (state_->parser == nullptr) throw std::bad_alloc();
  XML_SetUserData(state_->parser, state_.get());
  XML_SetElementHandler(state_->parser, State::OnStart, State::OnEnd);
  XML_SetCharacterDataHandler(state_->parser, State::OnText);
  XML_SetStartDoctypeDeclHandler(state_->parser, State::OnDoctype);
}

XmlParser::~XmlParser() {
  XML_ParserFree(state_->parser);
}

void XmlParser::Feed(std::string_view piece) {
  const bool good =
      XML_Parse(state_->parser, piece.data(), static_cast<int>(piece.size()), 0) == XML_STATUS_OK;
  if (state_->failure) std::rethrow_exception(state_->failure);
  if (!good) throw SourceError("工作簿的内容有错误，不能读取");
}

void XmlParser::Finish() {
  const bool good = XML_Parse(state_->parser, "", 0, 1) == XML_STATUS_OK;
  if (state_->failure) std::rethrow_exception(state_->failure);
  if (!good) throw SourceError("工作簿的内容不完整");
}

}  // namespace desk::book
