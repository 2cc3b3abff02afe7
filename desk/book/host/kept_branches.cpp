#include "book/host/kept_branches.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <string_view>

#include "host/text.h"

namespace desk::book {

namespace {

constexpr char kBook[] = "Book";
constexpr char kNumber[] = "Number";  // the larger, the later the book was left
constexpr char kPage[] = "Page";
constexpr char kBetween = ',';

std::string Section(int place) {
  return "Branches" + std::to_string(place);
}

std::string PageKey(std::size_t page) {
  return kPage + std::to_string(page);
}

std::vector<std::string> CodesOf(std::string_view text) {
  std::vector<std::string> codes;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(kBetween), text.size());
    if (end > 0) codes.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  // The file may have been edited.
  std::ranges::sort(codes, [](const std::string& left, const std::string& right) {
    return host::CompareText(left, right) < 0;
  });
  return codes;
}

std::string TextOf(const std::vector<std::string>& codes, std::size_t& room) {
  std::string text;
  for (const std::string& code : codes) {
    if (code.size() >= room) break;
    if (code.find(kBetween) != std::string::npos) continue;
    room -= code.size() + 1;
    text.append(text.empty() ? 0 : 1, kBetween).append(code);
  }
  return text;
}

}  // namespace

KeptBranches::Place KeptBranches::PlaceOf(const std::string& book) {
  Place place;
  long oldest = std::numeric_limits<long>::max();
  for (int i = 0; i < kMaxBooks; ++i) {
    const std::string section = Section(i);
    const long number = host::LeadingLong(file_.ReadValue(section, kNumber, ""));
    place.newest = std::max(place.newest, number);
    const bool this_one = file_.ReadValue(section, kBook, "") == book;
    if (place.known || (number >= oldest && !this_one)) continue;
    place.section = section;
    place.known = this_one;
    oldest = number;
  }
  return place;
}

KeptBranches::Pages KeptBranches::Read(const std::string& book) {
  const Place place = PlaceOf(book);
  Pages pages;
  if (!place.known) return pages;
  constexpr std::size_t kMaxPages = 100;
  while (pages.size() < kMaxPages) {
    constexpr char kNone[] = "-";
    const std::string text = file_.ReadValue(place.section, PageKey(pages.size()), kNone);
    if (text == kNone) break;
    pages.push_back(CodesOf(text));
  }
  return pages;
}

void KeptBranches::Write(const std::string& book, const Pages& pages) {
  file_.SetFileName(path_);  // other programs have written theirs meanwhile
  const bool any = std::ranges::any_of(pages, [](const auto& page) { return !page.empty(); });
  const Place place = PlaceOf(book);
  if (!any && !place.known) return;
  try {
    std::size_t room = kMaxText;
    file_.WriteValue(place.section, kBook, book);
    file_.WriteValue(place.section, kNumber, std::to_string(place.newest + 1));
    for (std::size_t page = 0; page < pages.size(); ++page) {
      file_.WriteValue(place.section, PageKey(page), TextOf(pages[page], room));
    }
  } catch (const std::exception&) {  // the user has been told; the branches stay closed next time
  }
}

}  // namespace desk::book
