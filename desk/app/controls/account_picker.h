#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/container/control_container.h"
#include "book/host/parameters.h"
#include "com/com_ptr.h"
#include "com/event_sink.h"
#include "host/non_copyable.h"
#include "qnPickerUI.h"
#include "tavrix.h"

namespace desk::app {

/// What the picker tells. Exceptions of these functions end in its sink.
struct PickerEvents {
  std::function<void()> selected;
  std::function<void()> cancelled;
};

/// The account picker as this program uses it: the component's class, driven through COM. Members
/// throw `host::HostError` with a text for users.
class AccountPicker : private tavrix::host::NonCopyable {
 public:
  /// Creates the control and places it; the columns of its list take their widths from the fonts of
  /// its window, so it has one from the first.
  AccountPicker(ContainerPlan plan, PickerEvents events);
  /// Saves the layout when there is one, and ends the picker.
  ~AccountPicker();

  /// Hands the picker its host, the system object of the open book.
  void Start(IDispatch* system);
  /// Which accounts may be picked or typed; counts from the next `Refresh` or `Resolve` on.
  void SetParameters(const std::shared_ptr<book::ParameterList>& parameters);
  /// Shows the accounts that the parameters allow; `sought` goes to the search box. The first time
  /// it restores the layout: only now has the tree the node that was selected.
  void Refresh(const std::wstring& sought);
  /// The code of the account that is typed as code, name or mnemonic; nothing when the parameters
  /// allow none.
  [[nodiscard]] std::optional<std::wstring> Resolve(const std::wstring& typed);
  /// The codes that were picked, in the order of the list.
  [[nodiscard]] std::vector<std::wstring> Picked() const;

  /// Nothing happens before a layout was restored: the one that is kept would be lost.
  void SaveLayout();
  /// Takes back what the layout file says.
  void RestoreLayout();
  /// The picker's own buttons.
  enum Button { kPick = 0, kReload = 2, kEdit = 3 };
  /// As the user's click.
  void Press(Button button);
  [[nodiscard]] bool Offers(Button button) const;
  /// Reads the accounts again.
  void Reload() { Press(kReload); }
  /// An account is the current one.
  [[nodiscard]] bool HasRow() const;
  /// The name of that file: the program's number and the container's display name.
  [[nodiscard]] static std::string StatusName();
  /// The name of the control in its container.
  static constexpr wchar_t kDisplayName[] = L"selKjkm1";
  /// The list of the accounts.
  [[nodiscard]] IFlexGrid& Grid() const { return *grid_.Get(); }

  /// The search hides what does not match; else it goes to the first match.
  [[nodiscard]] bool Filters() const;

  [[nodiscard]] ControlContainer& Container() const { return *container_; }
  /// Focus to the box in which the user searches.
  void FocusSearch();

 private:
  [[nodiscard]] tavrix::com::ComPtr<IButtonControl> ButtonAt(Button button) const;

  tavrix::com::ComPtr<IUnknown> control_;
  tavrix::com::ComPtr<IPickerUI> picker_;
  tavrix::com::ComPtr<ISearchControl> search_;
  tavrix::com::ComPtr<IFlexGrid> grid_;
  std::optional<tavrix::com::EventSink> sink_;
  std::unique_ptr<ControlContainer> container_;
  bool restored_ = false;
};

}  // namespace desk::app
