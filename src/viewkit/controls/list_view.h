#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "viewkit/control.h"

namespace tavrix::viewkit {

/// The common-controls list (`ListView`): items one below the other, any of them selected, one of
/// which is the current one. Items are named by their index, from 1. Without columns each item is
/// one text.
class ListView : public Control {
 public:
  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "ListView"; }

  struct Column {
    std::string heading;
    int width = 0;  ///< twips
    bool aligns_right = false;
  };
  /// Before the list has a window.
  void SetColumns(std::vector<Column> columns) { columns_ = std::move(columns); }
  [[nodiscard]] const std::vector<Column>& Columns() const { return columns_; }
  /// `column` counts from 0.
  void SetColumnWidth(std::size_t column, int width);
  /// Several items may be selected by the user. Before the list has a window.
  [[nodiscard]] bool MultiSelect() const { return multi_select_; }
  void SetMultiSelect(bool several) { multi_select_ = several; }

  /// The texts of one item, by column.
  using Texts = std::vector<std::string>;
  /// Replaces all items; none is selected.
  void SetItems(const std::vector<Texts>& items);
  /// Adds an item at the end and gives its index.
  int AddItem(std::string text);
  void Clear();
  [[nodiscard]] int Count() const { return static_cast<int>(items_.size()); }
  /// Members that take an index throw `std::out_of_range` when there is no such item.
  [[nodiscard]] const std::string& Text(int index) const { return At(index).texts.at(0); }
  [[nodiscard]] const Texts& ItemTexts(int index) const { return At(index).texts; }

  /// The current item; 0 for none.
  [[nodiscard]] int SelectedItem() const { return current_; }
  /// Makes an item the current one; which ones are selected stays.
  void SetSelectedItem(int index);
  [[nodiscard]] bool Selected(int index) const { return At(index).selected; }
  void SetSelected(int index, bool selected);
  /// The first selected item; 0 for none.
  [[nodiscard]] int FirstSelected() const;

  /// The item that is seen first; 0 in an empty list.
  [[nodiscard]] int TopItem() const { return top_; }
  /// Scrolls as little as is needed to bring the item into view.
  void EnsureVisible(int index);
  /// The peer tells where the user has scrolled to.
  void ScrolledTo(int top) { top_ = top; }

  Event<> ItemClick;    ///< another item is the current one, whoever made it so
  Event<> DoubleClick;  ///< the user's

 private:
  struct Item {
    Texts texts;
    bool selected = false;
  };
  [[nodiscard]] const Item& At(int index) const {
    return items_.at(static_cast<std::size_t>(index) - 1);
  }
  /// Whole items that the height has room for, at least 1.
  [[nodiscard]] int Room() const;

  std::vector<Column> columns_;
  bool multi_select_ = true;
  std::vector<Item> items_;
  int current_ = 0;
  int top_ = 0;
};

}  // namespace tavrix::viewkit
