#pragma once

#include <windows.h>

#include <activscp.h>

#include <string>
#include <string_view>
#include <vector>

#include "component/named_object.h"
#include "host/non_copyable.h"

namespace tavrix::test {

/// Runs scripts of one language, with objects that they see as global names.
class ScriptEngine : private host::NonCopyable {
 public:
  /// `language` is the engine's ProgID. Throws `ComFailure` when there is none.
  explicit ScriptEngine(const wchar_t* language);
  /// What the scripts have made is released.
  ~ScriptEngine();

  void AddObject(const std::wstring& name, const ComPtr<IDispatch>& object);
  /// Runs `source` (UTF-8) at once, after what was run before. Gives "file(line): text" of the
  /// error that ended it, or an empty text.
  [[nodiscard]] std::string Run(const std::string& file, std::string_view source);

 private:
  class Site;

  Site* site_ = nullptr;  // as long as `site_owner_` lives
  ComPtr<IUnknown> site_owner_;
  ComPtr<IActiveScript> engine_;
  ComPtr<IActiveScriptParse> parser_;
};

/// The object `Events` for scripts. `Connect source, handler` calls the handler's method of the
/// event's name at each event of the source's default source interface, and gives a number that
/// `Disconnect` takes.
[[nodiscard]] ComPtr<IDispatch> MakeEvents();

struct ScriptFindings {
  int checks = 0;
  std::vector<std::string> failures;
};
/// The object `Assert` for scripts: `Equal actual, expected, what` and `True condition, what`.
/// `findings` must outlive it.
[[nodiscard]] ComPtr<IDispatch> MakeAssert(ScriptFindings& findings);

}  // namespace tavrix::test
