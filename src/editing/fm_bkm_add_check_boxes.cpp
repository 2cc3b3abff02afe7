#include <string>
#include <utility>
#include <vector>

#include "editing/fm_bkm_add.h"
#include "editing/fm_bkm_add_impl.h"
#include "host/account.h"
#include "host/flag_scope.h"

namespace tavrix::editing {

namespace {

using viewkit::CheckBox;

/// What a book type's name says when quantities are accounted for; no column holds that.
constexpr std::string_view kQuantityWord = "数量";

bool IsSet(const CheckBox& box) {
  return box.Value() == CheckBox::kChecked;
}

/// Boxes that may not be combined: setting the first clears and disables the second. Listed in the
/// order in which it happens.
struct Exclusion {
  int clicked;
  int excluded;
};
constexpr Exclusion kExclusions[] = {
    {kDepartmentCheck, kPersonCheck}, {kPersonCheck, kSupplierCheck},
    {kPersonCheck, kCustomerCheck},   {kPersonCheck, kProjectCheck},
    {kPersonCheck, kDepartmentCheck}, {kCustomerCheck, kSupplierCheck},
    {kCustomerCheck, kPersonCheck},   {kSupplierCheck, kCustomerCheck},
    {kSupplierCheck, kPersonCheck},   {kProjectCheck, kPersonCheck}};

}  // namespace

void FmBkmAdd::Chk_Click(int Index) noexcept {
  Trapped("Chk_Click->", host::kCommandError, [&] {
    switch (Index) {
      case kGatherCheck:
        EnableList(kGatherCheck, kGatherList);
        if (IsSet(Chk(kGatherCheck))) FillGatherList();
        break;
      case kCurrencyCheck:
        EnableList(kCurrencyCheck, kCurrencyList);
        SetBookType();
        break;
      case kQuantityCheck:
        EnableList(kQuantityCheck, kUnitList);
        SetBookType();
        break;
      default:
        LockOut(Index);
    }
  });
}

void FmBkmAdd::EnableList(int check, int list) {
  const bool set = IsSet(Chk(check));
  Combo(list).SetEnabled(set);
  if (!set) Combo(list).SetListIndex(-1);
}

void FmBkmAdd::SetBookType() {
  const bool currency = IsSet(Chk(kCurrencyCheck));
  const bool quantity = IsSet(Chk(kQuantityCheck));
  const std::string_view type = currency && quantity ? host::book_type::kAmountCurrencyQuantity
                                : currency           ? host::book_type::kAmountCurrency
                                : quantity           ? host::book_type::kAmountQuantity
                                                     : host::book_type::kAmount;
  Combo(kBookTypeList).SetText(type);
}

// Enabling does not look at other boxes that may still exclude the box; that is on purpose.
void FmBkmAdd::LockOut(int clicked) {
  const bool set = IsSet(Chk(clicked));
  if (set) {
    // All are cleared before any is disabled: clearing one enables those that it had excluded.
    for (const auto& [box, excluded] : kExclusions) {
      if (box == clicked) Chk(excluded).SetValue(CheckBox::kUnchecked);
    }
  }
  for (const auto& [box, excluded] : kExclusions) {
    if (box == clicked) Chk(excluded).SetEnabled(!set);
  }
}

// Offers the codes of the accounts above this one. Any other code can be typed.
void FmBkmAdd::FillGatherList() noexcept {
  Trapped("FillGatherList->", host::kCommandError, [this] {
    const auto session = Current();
    std::vector<std::string> above;
    for (std::string code = CodeText();;) {
      std::string parent = session->code_rule->ParentCode(code, session->rule);
      if (parent.empty() || parent.size() >= code.size()) break;
      above.push_back(parent);
      code = std::move(parent);
    }
    const host::FlagScope filling(filling_);
    viewkit::ComboBox& list = Combo(kGatherList);
    list.Clear();
    for (std::string& code : above) list.AddItem(std::move(code));
    list.SetText(std::string(list.Text()));
  });
}

// The boxes and lists as the loaded flags demand, without changing what is stored. A box that is
// set stays enabled in spite of others, so that contradicting flags can be mended.
void FmBkmAdd::ShowDependencies() {
  const bool quantity = Combo(kBookTypeList).Text().find(kQuantityWord) != std::string::npos;
  Chk(kQuantityCheck).SetValue(quantity ? CheckBox::kChecked : CheckBox::kUnchecked);
  const bool gathered = !Combo(kGatherList).Text().empty();
  Chk(kGatherCheck).SetValue(gathered ? CheckBox::kChecked : CheckBox::kUnchecked);
  if (gathered) FillGatherList();
  Combo(kCurrencyList).SetEnabled(IsSet(Chk(kCurrencyCheck)));
  Combo(kUnitList).SetEnabled(quantity);
  Combo(kGatherList).SetEnabled(gathered);
  for (const auto& [box, excluded] : kExclusions) {
    if (IsSet(Chk(box)) && !IsSet(Chk(excluded))) Chk(excluded).SetEnabled(false);
  }
}

}  // namespace tavrix::editing
