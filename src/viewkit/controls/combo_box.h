#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "viewkit/control.h"
#include "viewkit/indexing.h"

namespace tavrix::viewkit {

/// A box with a list that drops down. Each item has a text and a number of its owner's (item data).
class ComboBox : public Control {
 public:
  enum class Style {
    kList,      ///< the text is always that of an item, or empty
    kEditable,  ///< any text can be typed
  };
  ComboBox(Style style, std::string name, std::optional<int> index = {});
  [[nodiscard]] std::string TypeName() const override { return "ComboBox"; }
  [[nodiscard]] Style GetStyle() const { return style_; }

  void AddItem(std::string text, std::int32_t data = 0);
  /// Removes all items; in an editable box the text stays, in a list box it goes with its item.
  void Clear();
  [[nodiscard]] int ListCount() const { return CountOf(items_); }
  /// `item` from 0 to `ListCount` - 1.
  [[nodiscard]] const std::string& List(int item) const { return At(item).text; }
  [[nodiscard]] std::int32_t ItemData(int item) const { return At(item).data; }
  /// The first item whose text equals `text`; -1 when there is none.
  [[nodiscard]] int FindItem(std::string_view text) const;

  /// The selected item; -1 for none.
  [[nodiscard]] int ListIndex() const { return index_; }
  /// Selects an item and shows its text; -1 clears selection and text. Others are ignored.
  void SetListIndex(int item);
  [[nodiscard]] const std::string& Text() const { return text_; }
  /// Selects the first item with this text. When there is none, an editable box takes the text
  /// without a selection, and a list box stays as it is; the empty text clears both kinds.
  void SetText(std::string_view text);

  Event<> Changed;  ///< the text or the selection has changed, whoever changed it

 private:
  struct Item {
    std::string text;
    std::int32_t data;
  };
  [[nodiscard]] const Item& At(int item) const { return items_.at(static_cast<std::size_t>(item)); }
  void Become(int index, std::string_view text);

  Style style_;
  std::vector<Item> items_;
  std::string text_;
  int index_ = -1;
};

}  // namespace tavrix::viewkit
