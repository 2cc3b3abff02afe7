#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "viewkit/control.h"

namespace tavrix::viewkit {

/// The common-controls list (`ListView`): items one below the other, any of them selected, one of
/// which is the current one. Items are named by their index, from 1.
class ListView : public Control {
 public:
  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "ListView"; }

  /// Adds an item at the end and gives its index.
  int AddItem(std::string text);
  void Clear();
  [[nodiscard]] int Count() const { return static_cast<int>(items_.size()); }
  /// Members that take an index throw `std::out_of_range` when there is no such item.
  [[nodiscard]] const std::string& Text(int index) const { return At(index).text; }

  /// The current item; 0 for none.
  [[nodiscard]] int SelectedItem() const { return current_; }
  /// Makes an item the current one; which ones are selected stays.
  void SetSelectedItem(int index);
  [[nodiscard]] bool Selected(int index) const { return At(index).selected; }
  void SetSelected(int index, bool selected);

  /// The item that is seen first; 0 in an empty list.
  [[nodiscard]] int TopItem() const { return top_; }
  /// Scrolls as little as is needed to bring the item into view.
  void EnsureVisible(int index);

  Event<> ItemClick;  ///< another item is the current one, whoever made it so

 private:
  struct Item {
    std::string text;
    bool selected = false;
  };
  [[nodiscard]] const Item& At(int index) const {
    return items_.at(static_cast<std::size_t>(index) - 1);
  }
  /// Whole items that the height has room for, at least 1.
  [[nodiscard]] int Room() const;

  std::vector<Item> items_;
  int current_ = 0;
  int top_ = 0;
};

}  // namespace tavrix::viewkit
