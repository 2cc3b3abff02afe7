#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/forms.h"
#include "host/value.h"

namespace tavrix::picker {

class colKjkm;

/// One picked account.
class clsKjkm {
 public:
  clsKjkm() { sbClear(); }

  std::int32_t ID = 0;
  std::string ccode;
  std::string ccode_name;
  std::string chelp;
  std::string bpr;  ///< balance direction as a word
  std::string cclass;
  bool bclose = false;
  bool bend = false;
  std::string cbook_type;
  bool Change = false;  ///< the caller's mark
  std::string sKey;     ///< under which it was added; changing it does not move the item

  /// Resets every field; the collection below stays.
  void sbClear();

  /// Accounts below this one, for the caller's use; made when it is first asked for.
  [[nodiscard]] std::shared_ptr<picker::colKjkm> Children();
  void SetChildren(std::shared_ptr<picker::colKjkm> children) { children_ = std::move(children); }

 private:
  std::shared_ptr<picker::colKjkm> children_;
};

/// Picked accounts in the order in which they were added, with or without a key. Keys are compared
/// without case.
class colKjkm : public host::PickedObjects {
 public:
  /// Throws `std::invalid_argument`, and adds nothing, when the key stands already; an empty one is
  /// none.
  std::shared_ptr<clsKjkm> Add(const std::string& sKey, std::int32_t ID, const std::string& ccode,
                               const std::string& ccode_name, const std::string& chelp,
                               const std::string& cclass);
  /// A text is a key, a number a position from 1. Throws `std::out_of_range`.
  [[nodiscard]] std::shared_ptr<clsKjkm> Item(const host::Value& vntIndexKey) const;
  [[nodiscard]] std::int32_t Count() const { return static_cast<std::int32_t>(entries_.size()); }
  /// As `Item`.
  void Remove(const host::Value& vntIndexKey);
  /// `position` counts from 0; for enumerators.
  [[nodiscard]] std::shared_ptr<clsKjkm> At(std::size_t position) const {
    return entries_.at(position).item;
  }

 private:
  struct Entry {
    std::string key;  // as compared
    std::shared_ptr<clsKjkm> item;
  };
  [[nodiscard]] std::size_t PositionOf(const host::Value& index_or_key) const;

  std::vector<Entry> entries_;
  std::unordered_map<std::string, std::shared_ptr<clsKjkm>> by_key_;
};

}  // namespace tavrix::picker
