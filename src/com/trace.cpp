#include "com/trace.h"

#include <oleauto.h>

#include <cstdio>
#include <memory>
#include <mutex>

#include "com/bstr.h"
#include "com/failure.h"
#include "com/type_library.h"
#include "com/values.h"
#include "host/trace.h"
#include "host/utf.h"

namespace tavrix::com {

namespace {

struct FileCloser {
  void operator()(FILE* file) const { static_cast<void>(std::fclose(file)); }
};

std::wstring TraceFile() {
  std::wstring file(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetEnvironmentVariableW(L"TAVRIX_TRACE", file.data(), static_cast<DWORD>(file.size()));
    if (length < file.size()) return file.substr(0, length);
    file.resize(length);
  }
}

void TraceInto(const std::wstring& name) {
  const std::shared_ptr<FILE> file(_wfopen(name.c_str(), L"ab"), FileCloser());
  if (!file) return;
  host::SetTraceSink([file](std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), file.get());
    std::fputc('\n', file.get());
    std::fflush(file.get());  // the last line before a crash counts most
  });
}

/// The name that the system's registry has for an interface; empty when it has none.
std::string RegisteredName(const IID& iid) {
  wchar_t key[64] = L"Interface\\";
  const std::size_t length = wcslen(key);
  StringFromGUID2(iid, key + length, static_cast<int>(std::size(key) - length));
  wchar_t name[64];
  DWORD bytes = sizeof name;
  const LSTATUS status =
      RegGetValueW(HKEY_CLASSES_ROOT, key, nullptr, RRF_RT_REG_SZ, nullptr, name, &bytes);
  return host::Narrow(status == ERROR_SUCCESS ? name : key + length);
}

std::string NameOf(const IID& iid) {
  try {
    Bstr name;
    Check(TypeInfoOf(iid)->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr));
    return TextOf(name.Get());
  } catch (const ComFailure&) {  // one of the system's
    return RegisteredName(iid);
  }
}

std::string EventName(const IID& source, DISPID id) {
  try {
    Bstr name;
    Check(TypeInfoOf(source)->GetDocumentation(id, name.Put(), nullptr, nullptr, nullptr));
    return TextOf(name.Get());
  } catch (const ComFailure&) {
    return std::to_string(id);
  }
}

/// Objects are not asked for their text, and of an array only that there is one is told.
std::string TextOf(const VARIANT& argument) {
  const VARIANT& target = Target(argument);
  const auto type = static_cast<VARTYPE>(target.vt & ~VT_BYREF);
  const bool simple = type != VT_DISPATCH && type != VT_UNKNOWN && (type & VT_ARRAY) == 0;
  if (!simple) return "...";
  const std::string text = ToValue(Variant(target)).ToText();
  return type == VT_BSTR ? "\"" + text + "\"" : text;
}

/// They stand in reverse.
std::string TextOf(const DISPPARAMS& arguments) {
  std::string text;
  for (UINT i = arguments.cArgs; i > 0; --i) {
    text += (text.empty() ? "" : ", ") + TextOf(arguments.rgvarg[i - 1]);
  }
  return "(" + text + ")";
}

/// Traces what `text` gives, and nothing when it fails.
template <class Text>
void TraceText(std::string_view kind, const Text& text) noexcept {
  try {
    host::Trace(kind, text());
  } catch (...) {  // the line is missing: what it is about goes on
  }
}

}  // namespace

void StartTrace() noexcept {
  static std::once_flag once;
  try {
    std::call_once(once, [] {
      if (const std::wstring file = TraceFile(); !file.empty()) TraceInto(file);
    });
  } catch (...) {  // then there is none
  }
}

void TraceCall(const IID& iid, std::string_view member) noexcept {
  if (IsEqualGUID(iid, IID_NULL) != FALSE) return;  // no interface: a step of our own
  TraceText("call", [&] { return NameOf(iid) + "." + std::string(member); });
}

void TraceHostCall(const wchar_t* member, const DISPPARAMS& arguments) noexcept {
  TraceText("host", [&] { return host::Narrow(member) + TextOf(arguments); });
}

void TraceEvent(const IID& source, DISPID id, const DISPPARAMS& arguments) noexcept {
  TraceText("event", [&] { return EventName(source, id) + TextOf(arguments); });
}

void TraceFailure(HRESULT code, std::string_view text) noexcept {
  TraceText("failed", [&] {
    char number[16];
    std::snprintf(number, sizeof number, "%08lX ", static_cast<unsigned long>(code));
    return number + std::string(text);
  });
}

}  // namespace tavrix::com
