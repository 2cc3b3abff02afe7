#include "book/host/parameters.h"

#include <utility>

#include "host/error.h"
#include "host/text.h"

namespace desk::book {

void ParameterList::Set(const std::string& key, host::Value value) {
  values_[host::LowerCase(key)] = std::move(value);
}

void ParameterList::Remove(const std::string& key) {
  values_.erase(host::LowerCase(key));
}

bool ParameterList::Exists(const std::string& key) {
  return values_.contains(host::LowerCase(key));
}

host::Value ParameterList::Item(const std::string& key) {
  const auto found = values_.find(host::LowerCase(key));
  if (found == values_.end()) throw host::HostError("没有这个参数：" + key);
  return found->second;
}

}  // namespace desk::book
