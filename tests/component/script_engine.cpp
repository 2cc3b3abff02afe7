#include "component/script_engine.h"

#include <map>
#include <memory>
#include <utility>

#include "com/bstr.h"
#include "com/com_object.h"
#include "com/failure.h"
#include "com/late_object.h"
#include "component/event_sink.h"

namespace tavrix::test {

using com::Bstr;
using com::Check;
using com::ComFailure;
using com::LateObject;
using com::Query;

/// What the engine asks its host for.
class ScriptEngine::Site : public com::Implements<IActiveScriptSite> {
 public:
  void Add(const std::wstring& name, const ComPtr<IDispatch>& object) { objects_[name] = object; }
  void Begin(const std::string& file) {
    file_ = file;
    error_.clear();
  }
  [[nodiscard]] const std::string& Error() const { return error_; }

  STDMETHODIMP GetLCID(LCID*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetItemInfo(LPCOLESTR name, DWORD mask, IUnknown** object,
                           ITypeInfo** info) noexcept override {
    if ((mask & SCRIPTINFO_ITYPEINFO) != 0 && info != nullptr) *info = nullptr;
    if ((mask & SCRIPTINFO_IUNKNOWN) == 0) return S_OK;
    *object = nullptr;
    const auto found = objects_.find(name);
    if (found == objects_.end()) return TYPE_E_ELEMENTNOTFOUND;
    return found->second->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(object));
  }
  STDMETHODIMP GetDocVersionString(BSTR*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP OnScriptTerminate(const VARIANT*, const EXCEPINFO*) noexcept override {
    return S_OK;
  }
  STDMETHODIMP OnStateChange(SCRIPTSTATE) noexcept override { return S_OK; }
  STDMETHODIMP OnScriptError(IActiveScriptError* error) noexcept override {
    DWORD context = 0;
    ULONG line = 0;
    LONG column = 0;
    error->GetSourcePosition(&context, &line, &column);
    EXCEPINFO exception{};
    error->GetExceptionInfo(&exception);
    const auto source = Owned(exception.bstrSource);
    const auto text = Owned(exception.bstrDescription);
    const auto help = Owned(exception.bstrHelpFile);
    error_ = file_ + "(" + std::to_string(line + 1) +
             "): " + (text.empty() ? com::MeaningOf(exception.scode) : text);
    return S_OK;  // the error has been dealt with
  }
  STDMETHODIMP OnEnterScript() noexcept override { return S_OK; }
  STDMETHODIMP OnLeaveScript() noexcept override { return S_OK; }

 private:
  /// The text of a string that this side has to free.
  [[nodiscard]] static std::string Owned(BSTR string) {
    Bstr owner;
    *owner.Put() = string;
    return com::TextOf(string);
  }

  std::map<std::wstring, ComPtr<IDispatch>> objects_;
  std::string file_;
  std::string error_;
};

ScriptEngine::ScriptEngine(const wchar_t* language) {
  auto site = std::make_unique<Site>();
  site_ = site.get();
  site_owner_ = ComPtr<IUnknown>::Attach(&site.release()->Inner());
  CLSID engine{};
  Check(CLSIDFromProgID(language, &engine));
  Check(CoCreateInstance(engine, nullptr, CLSCTX_INPROC_SERVER, IID_IActiveScript,
                         engine_.PutVoid()));
  parser_ = engine_.As<IActiveScriptParse>();
  if (!parser_) throw ComFailure(E_NOINTERFACE);
  Check(engine_->SetScriptSite(site_));
  Check(parser_->InitNew());
  Check(engine_->SetScriptState(SCRIPTSTATE_STARTED));
}

ScriptEngine::~ScriptEngine() {
  engine_->Close();
}

void ScriptEngine::AddObject(const std::wstring& name, const ComPtr<IDispatch>& object) {
  site_->Add(name, object);
  Check(engine_->AddNamedItem(name.c_str(), SCRIPTITEM_ISVISIBLE));
}

std::string ScriptEngine::Run(const std::string& file, std::string_view source) {
  site_->Begin(file);
  const Bstr text(source);
  const HRESULT result = parser_->ParseScriptText(text.Get(), nullptr, nullptr, nullptr, 0, 0,
                                                  SCRIPTTEXT_ISVISIBLE, nullptr, nullptr);
  // Errors that a caller of the script's functions has dealt with may have been told too.
  if (SUCCEEDED(result)) return {};
  if (!site_->Error().empty()) return site_->Error();
  return file + ": " + com::MeaningOf(result);
}

namespace {

/// The default source interface of an object, as its class information tells it.
struct SourceInterface {
  IID iid{};
  ComPtr<ITypeInfo> members;
};

SourceInterface SourceOf(IUnknown* object) {
  const auto provider = Query<IProvideClassInfo2>(object);
  if (!provider) throw ComFailure(E_NOINTERFACE);
  SourceInterface source;
  Check(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source.iid));
  ComPtr<ITypeInfo> info;
  Check(provider->GetClassInfo(info.Put()));
  ComPtr<ITypeLib> library;
  UINT index = 0;
  Check(info->GetContainingTypeLib(library.Put(), &index));
  Check(library->GetTypeInfoOfGuid(source.iid, source.members.Put()));
  return source;
}

void CallHandler(const LateObject& handler, const wchar_t* name,
                 const std::vector<Variant>& given) {
  switch (given.size()) {
    case 0:
      return handler.Call(name);
    case 1:
      return handler.Call(name, {given[0]});
    case 3:
      return handler.Call(name, {given[0], given[1], given[2]});
    default:
      throw ComFailure(DISP_E_BADPARAMCOUNT);
  }
}

std::unique_ptr<EventSink> Forward(const ComPtr<IDispatch>& object,
                                   const ComPtr<IDispatch>& handler) {
  const SourceInterface source = SourceOf(object.Get());
  const auto forward = [members = source.members, target = LateObject(handler)](
                           DISPID id, const std::vector<Variant>& arguments) -> HRESULT {
    Bstr name;
    UINT count = 0;
    const HRESULT found = members->GetNames(id, name.Put(), 1, &count);
    if (FAILED(found)) return found;
    try {
      CallHandler(target, name.Get(), arguments);
      return S_OK;
    } catch (const ComFailure& failure) {
      return failure.Code();
    }
  };
  return std::make_unique<EventSink>(object.Get(), source.iid, forward);
}

}  // namespace

ComPtr<IDispatch> MakeEvents() {
  auto sinks = std::make_shared<std::vector<std::unique_ptr<EventSink>>>();
  return NamedObject::Make({{L"Connect",
                             [sinks](const StubCall& call) {
                               sinks->push_back(Forward(call.At(0).Object(), call.At(1).Object()));
                               return Variant(static_cast<std::int32_t>(sinks->size()));
                             }},
                            {L"Disconnect", [sinks](const StubCall& call) {
                               sinks->at(static_cast<std::size_t>(call.Number(0)) - 1).reset();
                               return Variant();
                             }}});
}

ComPtr<IDispatch> MakeAssert(ScriptFindings& findings) {
  return NamedObject::Make({{L"Equal",
                             [&findings](const StubCall& call) {
                               ++findings.checks;
                               const std::string actual = call.Text(0);
                               const std::string expected = call.Text(1);
                               if (actual != expected) {
                                 findings.failures.push_back(call.Text(2) + ": " + actual +
                                                             " instead of " + expected);
                               }
                               return Variant();
                             }},
                            {L"True", [&findings](const StubCall& call) {
                               ++findings.checks;
                               if (call.At(0).As(VT_BOOL).Get().boolVal == VARIANT_FALSE) {
                                 findings.failures.push_back(call.Text(1));
                               }
                               return Variant();
                             }}});
}

}  // namespace tavrix::test
