#pragma once

#include <compare>
#include <string>
#include <utility>
#include <vector>

/// What assistive programs, such as screen readers, are told of a control that the system does not
/// paint and therefore knows nothing about.
namespace tavrix::viewkit {

/// A control itself (0, 0), an item of it, as a row or a tab, or a part of an item, as a cell.
/// Items and parts count from 1; a number stays with what it names as long as the control's rows
/// and columns stay what they are, shown or not.
struct AccessibleId {
  int item = 0;
  int part = 0;
  friend auto operator<=>(const AccessibleId&, const AccessibleId&) = default;
};

enum class AccessibleRole {
  kSystem,  ///< what the system takes the window for
  kTable,
  kOutline,
  kRow,
  kOutlineRow,
  kCell,
  kColumnHeader,
  kRowHeader,
  kTabList,
  kTab,
  kSeparator,
  kDialog,
  kDocument,
  kText,
};

struct AccessibleStates {
  bool focusable = false;
  bool focused = false;
  bool selectable = false;
  bool selected = false;
  bool several_selectable = false;  ///< several items may be selected at once
  bool expanded = false;
  bool collapsed = false;
  bool out_of_view = false;
  bool unavailable = false;
  friend bool operator==(const AccessibleStates&, const AccessibleStates&) = default;
};

enum class AccessibleAction { kNone, kExpand, kCollapse, kSwitch, kOpen };

/// How an item shall be selected.
enum class AccessibleSelect { kOnly, kAdd, kRemove, kExtend };

/// Answers from the model, each time anew: nothing is kept for a row. Every id given to it exists.
class Accessible {
 public:
  virtual ~Accessible() = default;

  [[nodiscard]] virtual AccessibleRole Role(AccessibleId id) const = 0;
  /// Whether there is such a thing now, shown to the user or reached by scrolling.
  [[nodiscard]] virtual bool Exists(AccessibleId id) const { return id == AccessibleId{}; }
  /// False: what is inside the control is other windows, which speak for themselves.
  [[nodiscard]] virtual bool HasItems() const { return true; }
  /// Empty for the control itself: its window has the name.
  [[nodiscard]] virtual std::string Name(AccessibleId) const { return {}; }
  [[nodiscard]] virtual std::string Value(AccessibleId) const { return {}; }
  [[nodiscard]] virtual AccessibleStates States(AccessibleId) const { return {}; }
  [[nodiscard]] virtual int Children(AccessibleId) const { return 0; }
  /// The child at `position`, from 0, of those that `Children` counts.
  [[nodiscard]] virtual AccessibleId Child(AccessibleId, int) const { return {}; }
  /// Where `id` stands among the children of what holds it, from 0.
  [[nodiscard]] virtual int Position(AccessibleId) const { return 0; }
  /// The item that has the focus when the control has it; the control itself for none.
  [[nodiscard]] virtual AccessibleId Current() const { return {}; }
  [[nodiscard]] virtual std::vector<AccessibleId> Selected() const { return {}; }
  /// What `Act` does; an item is opened once it is the current one.
  [[nodiscard]] virtual AccessibleAction Action(AccessibleId) const {
    return AccessibleAction::kNone;
  }
  virtual void Act(AccessibleId) {}
  /// False when this cannot be selected, or not so.
  virtual bool Select(AccessibleId, AccessibleSelect) { return false; }
};

/// A window that shows a text, line by line. Where a line stands it does not tell.
class AccessibleLines : public Accessible {
 public:
  void SetLines(std::vector<std::string> lines) { lines_ = std::move(lines); }
  [[nodiscard]] AccessibleRole Role(AccessibleId id) const override {
    return id.item == 0 ? AccessibleRole::kDocument : AccessibleRole::kText;
  }
  [[nodiscard]] bool Exists(AccessibleId id) const override {
    return id.part == 0 && id.item >= 0 && id.item <= Count();
  }
  [[nodiscard]] std::string Name(AccessibleId id) const override {
    return id.item == 0 ? std::string() : lines_[static_cast<std::size_t>(id.item) - 1];
  }
  [[nodiscard]] int Children(AccessibleId id) const override { return id.item == 0 ? Count() : 0; }
  [[nodiscard]] AccessibleId Child(AccessibleId, int position) const override {
    return {position + 1, 0};
  }
  [[nodiscard]] int Position(AccessibleId id) const override { return id.item - 1; }

 private:
  [[nodiscard]] int Count() const { return static_cast<int>(lines_.size()); }
  std::vector<std::string> lines_;
};

/// A window that the system can speak for, but does not know what it is, or what it is called.
class AccessibleWindow : public Accessible {
 public:
  /// An empty name leaves that to the system, too.
  explicit AccessibleWindow(AccessibleRole role, std::string name = {})
      : role_(role), name_(std::move(name)) {}
  [[nodiscard]] AccessibleRole Role(AccessibleId) const override { return role_; }
  [[nodiscard]] std::string Name(AccessibleId) const override { return name_; }
  [[nodiscard]] bool HasItems() const override { return false; }

 private:
  AccessibleRole role_;
  std::string name_;
};

}  // namespace tavrix::viewkit
