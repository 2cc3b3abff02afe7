#include "app/program/follow_codes.h"

#include <algorithm>

#include "app/automation/view_grid.h"
#include "app/com.h"
#include "book/chart/chart_account.h"
#include "book/host/grid_state.h"
#include "book/ledger/code_rule.h"
#include "host/text.h"

namespace desk::app {
namespace {

ViewGrid CurrentGrid(const Workplace& place) {
  return ViewGrid(ComPtr<IFlexGrid>(&place.view.CurrentGrid()));
}

void OpenAbove(const std::string& account, const std::string& rule,
               std::vector<std::string>& open) {
  book::CodeRuleArithmetic arithmetic;
  for (std::string above = arithmetic.ParentCode(account, rule); !above.empty();
       above = arithmetic.ParentCode(above, rule)) {
    open.push_back(above);
  }
}

}  // namespace

void FollowCodes(const Workplace& place, const std::map<std::string, std::string>& codes) {
  book::GridState state = book::GridState::Of(CurrentGrid(place));
  const auto follow = [&](std::string& code) {
    if (const auto found = codes.find(code); found != codes.end()) code = found->second;
  };
  for (std::string& code : state.open) follow(code);
  follow(state.current);
  OpenAbove(state.current, book::ReadCodeRule(place.book.GetSession()), state.open);
  std::ranges::sort(state.open, [](const std::string& a, const std::string& b) {
    return tavrix::host::CompareNoCase(a, b) < 0;
  });
  state.open.erase(std::unique(state.open.begin(), state.open.end()), state.open.end());
  place.read_again();
  ViewGrid grid = CurrentGrid(place);
  state.PutBack(grid);
  if (!grid.IsInView(grid.Row())) grid.SetTopRow(grid.Row());
}

}  // namespace desk::app
