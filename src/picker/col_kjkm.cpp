#include "picker/col_kjkm.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "host/text.h"

namespace tavrix::picker {

void clsKjkm::sbClear() {
  ID = 0;
  for (std::string* text : {&ccode, &ccode_name, &chelp, &bpr, &cclass, &cbook_type, &sKey}) {
    text->clear();
  }
  bclose = false;
  bend = false;
  Change = false;
}

std::shared_ptr<colKjkm> clsKjkm::Children() {
  if (!children_) children_ = std::make_shared<picker::colKjkm>();
  return children_;
}

std::shared_ptr<clsKjkm> colKjkm::Add(const std::string& sKey, std::int32_t ID,
                                      const std::string& ccode, const std::string& ccode_name,
                                      const std::string& chelp, const std::string& cclass) {
  auto item = std::make_shared<clsKjkm>();
  item->sKey = sKey;
  item->ID = ID;
  item->ccode = ccode;
  item->ccode_name = ccode_name;
  item->chelp = chelp;
  item->cclass = cclass;
  std::string key = host::LowerCase(sKey);
  if (!key.empty() && !by_key_.emplace(key, item).second) {
    throw std::invalid_argument("集合中已有该键：" + sKey);
  }
  entries_.push_back({std::move(key), item});
  return item;
}

std::size_t colKjkm::PositionOf(const host::Value& index_or_key) const {
  std::size_t position = entries_.size();
  if (const auto* key = std::get_if<std::string>(&index_or_key.Raw())) {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [wanted = host::LowerCase(*key)](auto& entry) {
                                      return !entry.key.empty() && entry.key == wanted;
                                    });
    position = static_cast<std::size_t>(found - entries_.begin());
  } else {
    const std::int32_t index = host::ToLong32(std::nearbyint(index_or_key.ToNumber()));
    if (index >= 1 && index <= Count()) position = static_cast<std::size_t>(index) - 1;
  }
  if (position >= entries_.size()) throw std::out_of_range("集合中没有该成员");
  return position;
}

std::shared_ptr<clsKjkm> colKjkm::Item(const host::Value& vntIndexKey) const {
  if (const auto* key = std::get_if<std::string>(&vntIndexKey.Raw())) {
    if (const auto found = by_key_.find(host::LowerCase(*key)); found != by_key_.end()) {
      return found->second;
    }
  }
  return entries_[PositionOf(vntIndexKey)].item;
}

void colKjkm::Remove(const host::Value& vntIndexKey) {
  const std::size_t position = PositionOf(vntIndexKey);
  by_key_.erase(entries_[position].key);
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position));
}

}  // namespace tavrix::picker
