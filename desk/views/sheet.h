#pragma once

#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "host/flag_scope.h"
#include "host/non_copyable.h"
#include "host/report.h"
#include "viewkit/event.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/input.h"
#include "viewkit/ports.h"

namespace desk::views {

namespace host = tavrix::host;
namespace viewkit = tavrix::viewkit;

/// A view that stands in a window of its own. The window gives it its size, its keys and a menu,
/// copies the selected rows of its grid, and reads it again when the book has changed.
class Sheet : private host::NonCopyable {
 public:
  /// An entry of the view's menu; an empty text stands for a line between two parts.
  struct MenuItem {
    std::string text = {};  ///< with its mnemonic, and its key behind a tab
    std::function<void()> run = {};
    bool enabled = true;
  };

  /// The user must outlive the view.
  explicit Sheet(viewkit::UserPort& user) : user_(user) {}
  virtual ~Sheet() = default;

  /// What the window is called, and the heading of a print.
  [[nodiscard]] virtual std::string Title() const = 0;
  /// What the rows are of besides: the period, the account. Below the heading of a print.
  [[nodiscard]] virtual std::string Subtitle() const { return {}; }
  /// Tells views of one kind apart: who asks for one that is open gets that. Empty where there is
  /// only one.
  [[nodiscard]] virtual std::string Key() const { return {}; }
  [[nodiscard]] const viewkit::ControlList& Controls() const { return controls_; }
  /// Puts the controls where they belong in a window of this size (twips).
  virtual void Resize(int width, int height) = 0;
  /// Reads the book again, as the user wants it; what has been chosen stays, and a failure is told.
  void Reload() {
    Trapped([this] { Read(); });
  }
  /// The same where nobody has asked: no box opens. Throws what the book raises.
  void Follow() {
    const host::FlagScope unasked(unasked_);
    Read();
  }
  /// The grid in which the user works: its rows are copied and printed.
  [[nodiscard]] viewkit::FlexGrid& Grid() { return grid_; }
  /// What the menu of the window offers besides copying and reading again.
  [[nodiscard]] virtual std::vector<MenuItem> Menu() { return {}; }
  /// A key that has been pressed in the window, before any control gets it; true when it is used
  /// up. Escape and F5 come here first too.
  [[nodiscard]] virtual bool UseKey(viewkit::Key, viewkit::Modifiers) { return false; }
  /// The window is about to close; may ask the user.
  [[nodiscard]] virtual bool MayClose() { return true; }

  viewkit::Event<> TitleChanged;

 protected:
  [[nodiscard]] viewkit::UserPort& User() { return user_; }
  /// Reads the book again; throws what it raises.
  virtual void Read() = 0;
  /// Runs what the user has asked for; a failure is told to the user, and to who follows the book.
  template <class Body>
  void Trapped(Body&& body) {
    if (unasked_) return body();
    try {
      body();
    } catch (const std::exception& error) {
      static_cast<void>(user_.Ask(host::ErrorText(error), Title(),
                                  viewkit::UserPort::Icon::kWarning,
                                  viewkit::UserPort::Buttons::kOk));
    }
  }

  viewkit::FlexGrid grid_{"Vs"};
  viewkit::ControlList
      controls_;  ///< in the order of the Tab key; a view adds its own, and the grid

 private:
  viewkit::UserPort& user_;
  bool unasked_ = false;  ///< the book is being read though nobody has asked
};

}  // namespace desk::views
