#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "component/event_sink.h"
#include "component/loaded_library.h"
#include "component/stub_host.h"

/// The commands of both controls as a caller gives them through COM, each over a host of its own.
namespace tavrix::test {

/// A control with its host, over one run of a command.
class Life {
 public:
  explicit Life(const wchar_t* prog_id);
  /// A control inside the view.
  template <class Interface>
  [[nodiscard]] ComPtr<Interface> Child(const char* name) const {
    return ChildOf(object, name).As<Interface>();
  }
  [[nodiscard]] long RowsOf(const char* grid) const;
  /// All cells of a grid.
  [[nodiscard]] std::string Shown(const char* grid) const;

  std::shared_ptr<StubHost> host = FewAccounts();
  ComPtr<IUnknown> object;
  VARIANT_BOOL answer = VARIANT_FALSE;  ///< of the command
  std::string given;                    ///< texts that it gives beside
};

struct Command {
  std::string name;
  std::function<HRESULT(Life& life)> run;
  bool may_fail = false;      ///< a failure is the call's own
  bool from_scratch = false;  ///< the control is new: nobody has initialised it
  bool answers = false;       ///< it tells whether it has succeeded
};

/// What the commands of one control share.
struct Subject {
  const wchar_t* prog_id;
  const char* grid;
  IID events;
  /// Before the first call; to be done once.
  std::function<void(Life& life)> prepare;
  std::function<HRESULT(Life& life)> init;
  /// Loads the list again.
  std::function<void(Life& life)> refresh;
  /// What the control itself shows of a failure.
  std::function<std::string(const Life& life)> message;
  std::vector<Command> commands;
};

[[nodiscard]] Subject ViewCommands();
[[nodiscard]] Subject PickerCommands();

}  // namespace tavrix::test
