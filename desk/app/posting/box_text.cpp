#include "app/posting/box_text.h"

#include "app/frame/search_strip.h"
#include "book/ledger/money_text.h"
#include "host/text.h"
#include "host/utf.h"

namespace desk::app {

using tavrix::host::Narrow;
using tavrix::host::Wide;

std::string TrimmedText(HWND box) {
  return std::string(tavrix::host::Trimmed(Narrow(WindowText(box))));
}

std::wstring SideText(std::int64_t amount) {
  return amount == 0 ? std::wstring() : Wide(book::MoneyText(amount));
}

void FocusBox(HWND box) {
  SetFocus(box);
  SendMessageW(box, EM_SETSEL, 0, -1);
}

}  // namespace desk::app
