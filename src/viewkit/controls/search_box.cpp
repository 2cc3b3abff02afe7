#include "viewkit/controls/search_box.h"

#include <utility>

namespace tavrix::viewkit {

namespace {

constexpr std::string_view kLocate = "FilterMode=0";
constexpr std::string_view kFilter = "FilterMode=1";

}  // namespace

void SearchBox::SetText(std::string text) {
  if (text_ == text) return;
  text_ = std::move(text);
  Notify({Change::Kind::kContent});
  Search();
}

void SearchBox::SetFilterMode(bool filter) {
  if (filter_mode_ == filter) return;
  filter_mode_ = filter;
  Notify({Change::Kind::kState});
}

void SearchBox::Search() {
  SearchRequested.Raise();
}

std::string SearchBox::SaveStatus() const {
  return std::string(filter_mode_ ? kFilter : kLocate);
}

void SearchBox::GetStatus(std::string_view status) {
  if (status == kLocate || status == kFilter) SetFilterMode(status == kFilter);
}

}  // namespace tavrix::viewkit
