#pragma once

#include <windows.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/container/control_container.h"
#include "com/com_ptr.h"
#include "com/event_sink.h"
#include "host/non_copyable.h"
#include "host/objects.h"
#include "qnFormUI.h"
#include "tavrix.h"

namespace desk::app {

/// What the view tells. Exceptions of these functions end in its sink.
struct ViewEvents {
  std::function<void(const std::wstring& text)> message;
  std::function<void(const std::wstring& text, long level, const std::wstring& title)> report;
};

/// Where the selection of the view stands, as far as commands depend on it.
struct ViewState {
  bool has_rows = false;
  bool row_selected = false;
};

/// The account on a row of the view.
struct RowAccount {
  std::wstring code;
  std::wstring name;
};

/// The chart-of-accounts view as this program uses it: the component's class, placed in the frame.
class KjkmView : private tavrix::host::NonCopyable {
 public:
  /// Creates the control and places it; throws `host::HostError` with a text for users.
  KjkmView(ContainerPlan plan, ViewEvents events);
  /// Saves the layout when the view was started, and ends the view.
  ~KjkmView();

  /// Hands the view its host, loads it and restores its layout; `navigator` filters pages again
  /// that have been read again. Throws what `Init` raises.
  void Start(IDispatch* system, std::shared_ptr<tavrix::host::GridNavigator> navigator);

  /// Reads everything again. On every page the user keeps row, scroll position, open branches,
  /// filter and the width of the first column.
  bool Reload();
  /// For idle moments in which nothing is waiting to be read: takes note of the width that the user
  /// has given to a first column.
  void NoteWidths();
  /// The open accounts of each page, in the page's order, without those that a filter has opened.
  [[nodiscard]] std::vector<std::vector<std::string>> OpenBranches();
  /// Opens them in pages that have just been loaded.
  void OpenAgain(const std::vector<std::vector<std::string>>& pages);
  void SaveLayout();
  /// Takes back what the layout file says of the columns.
  void RestoreLayout();

  /// The host's commands; failures have been reported through the events.
  bool Call(HRESULT (STDMETHODCALLTYPE IFormUI::*command)(VARIANT_BOOL*));
  bool Find(const std::wstring& text);
  bool Filter(const std::wstring& text);

  [[nodiscard]] bool Started() const { return started_; }
  /// The view offers the command that adds below an account.
  [[nodiscard]] bool OffersAddChild() const { return offers_add_child_; }
  [[nodiscard]] ViewState State() const;
  [[nodiscard]] std::optional<RowAccount> SelectedAccount() const;
  [[nodiscard]] ControlContainer& Container() { return *container_; }
  static constexpr int kPages = 7;
  /// The page that is shown.
  [[nodiscard]] int CurrentPage() const;
  [[nodiscard]] std::wstring PageCaption(int page) const;
  [[nodiscard]] IFlexGrid& Grid(int page) const {
    return *grids_.at(static_cast<std::size_t>(page)).Get();
  }
  [[nodiscard]] IFlexGrid& CurrentGrid() const { return Grid(CurrentPage()); }

 private:
  /// A page's first column. Each reading makes it as wide as its contents need.
  struct CodeColumn {
    long width = 0;        ///< as it was last seen
    bool by_hand = false;  ///< the user has set it
  };
  class Kept;

  void FindControls();
  void ReadAttributes();
  void FitCodeColumns();

  tavrix::com::ComPtr<IUnknown> control_;
  tavrix::com::ComPtr<IFormUI> form_;
  tavrix::com::ComPtr<ITabControl> tabs_;
  std::shared_ptr<tavrix::host::GridNavigator> navigator_;
  std::array<tavrix::com::ComPtr<IFlexGrid>, kPages> grids_;
  std::array<CodeColumn, kPages> code_columns_;
  std::array<std::wstring, kPages> filters_;
  std::optional<tavrix::com::EventSink> sink_;
  std::unique_ptr<ControlContainer> container_;
  bool started_ = false;
  bool offers_add_child_ = false;
};

}  // namespace desk::app
