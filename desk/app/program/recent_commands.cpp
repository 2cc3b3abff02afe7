#include "app/program/recent_commands.h"

#include "app/program/book_place.h"
#include "host/utf.h"
#include "views/recent_dialog.h"

namespace desk::app {

using tavrix::host::Narrow;
using tavrix::host::Wide;
using tavrix::viewkit::UserPort;

std::wstring AskRecentBook(UserPort& user, book::RecentBooks& books) {
  views::RecentDialog dialog(
      books, {.name = [](const std::string& place) { return Narrow(NameOf(Wide(place))); },
              .may_be_there = [](const std::string& place) { return MayBeThere(Wide(place)); }});
  user.ShowModal(dialog);
  return Wide(dialog.Wanted());
}

bool MayForgetBook(UserPort& user, const std::string& place) {
  return user.Ask("找不到账簿：\n" + place + "\n\n是否从最近的账簿中移除？", "最近的账簿",
                  UserPort::Icon::kQuestion,
                  UserPort::Buttons::kYesNoDefaultNo) == UserPort::Answer::kYes;
}

}  // namespace desk::app
