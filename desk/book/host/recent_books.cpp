#include "book/host/recent_books.h"

#include <algorithm>
#include <utility>

#include "host/report.h"

namespace desk::book {

namespace {

constexpr char kSection[] = "Desk";

std::string PlaceKey(std::size_t position) {
  return "Recent" + std::to_string(position);
}

std::string PinnedKey(std::size_t position) {
  return "RecentPinned" + std::to_string(position);
}

}  // namespace

RecentBooks::RecentBooks(SharedSettingsFile& file, std::string path)
    : file_(file), path_(std::move(path)) {
  Reread();
}

void RecentBooks::Reread() {
  file_.SetFileName(path_);
  entries_.clear();
  for (std::size_t i = 0; i < kMax; ++i) {
    std::string place = file_.ReadValue(kSection, PlaceKey(i), "");
    if (place.empty()) continue;
    const bool pinned = file_.ReadValue(kSection, PinnedKey(i), "") == "1";
    entries_.push_back({.place = std::move(place), .pinned = pinned});
  }
  std::stable_partition(entries_.begin(), entries_.end(),
                        [](const Entry& entry) { return entry.pinned; });
}

std::vector<RecentBooks::Entry>::iterator RecentBooks::Find(const std::string& place) {
  return std::ranges::find(entries_, place, &Entry::place);
}

std::vector<RecentBooks::Entry>::iterator RecentBooks::FirstUnpinned() {
  return std::ranges::find(entries_, false, &Entry::pinned);
}

void RecentBooks::Remember(const std::string& place) {
  Reread();
  const auto found = Find(place);
  if (found != entries_.end() && found->pinned) return;
  if (found != entries_.end()) entries_.erase(found);
  entries_.insert(FirstUnpinned(), {.place = place});
  if (entries_.size() > kMax) entries_.pop_back();
  Write();
}

void RecentBooks::Forget(const std::string& place) {
  Reread();
  std::erase_if(entries_, [&](const Entry& entry) { return entry.place == place; });
  Write();
}

bool RecentBooks::SetPinned(const std::string& place, bool pinned) {
  Reread();
  const auto found = Find(place);
  if (found == entries_.end() || found->pinned == pinned) return true;
  const auto pins = static_cast<std::size_t>(FirstUnpinned() - entries_.begin());
  if (pinned && pins + 1 >= kMax) return false;
  entries_.erase(found);
  entries_.insert(FirstUnpinned(), {.place = place, .pinned = pinned});
  Write();
  return true;
}

void RecentBooks::Write() {
  // A user without a writable folder works all the same.
  host::IgnoreErrors([this] {
    for (std::size_t i = 0; i < kMax; ++i) {
      const bool used = i < entries_.size();
      file_.WriteValue(kSection, PlaceKey(i), used ? entries_[i].place : std::string());
      file_.WriteValue(kSection, PinnedKey(i), used && entries_[i].pinned ? "1" : "");
    }
  });
  file_.SetFileName(path_);  // writes what has been changed
}

}  // namespace desk::book
