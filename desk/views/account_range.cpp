#include "views/account_range.h"

#include <array>

namespace desk::views {
namespace {

constexpr std::array kRanges = {AccountRange{"全部科目"},
                                AccountRange{"客户往来", "bcus", "1"},
                                AccountRange{"供应商往来", "bsup", "1"},
                                AccountRange{"资产类", "科目类别", "资产"},
                                AccountRange{"负债类", "科目类别", "负债"},
                                AccountRange{"共同类", "科目类别", "共同"},
                                AccountRange{"权益类", "科目类别", "权益"},
                                AccountRange{"成本类", "科目类别", "成本"},
                                AccountRange{"损益类", "科目类别", "损益"},
                                AccountRange{"编码开头", "科目编码"}};

}  // namespace

std::span<const AccountRange> AccountRanges() {
  return kRanges;
}

std::shared_ptr<book::ParameterList> ParametersOf(const AccountRange& range,
                                                  const std::string& typed, bool single) {
  auto parameters = std::make_shared<book::ParameterList>();
  parameters->Set("ismx", 1);
  if (single) parameters->Set("single", 1);
  if (range.key != nullptr) {
    parameters->Set(range.key, range.value == nullptr ? typed : std::string(range.value));
  }
  return parameters;
}

}  // namespace desk::views
