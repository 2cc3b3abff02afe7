#include "book/journal/change_text.h"

#include <string_view>

namespace desk::book {

namespace {

enum class Words { kAsIs, kYesNo, kSide };

struct Field {
  std::string_view column;
  const char* name;
  Words words = Words::kAsIs;
};

/// What the account dialog shows of an account, and the flag of a leaf.
constexpr Field kFields[] = {{"ccode", "编码"},
                             {"ccode_name", "名称"},
                             {"ccode_engl", "英文名称"},
                             {"cclass", "类别"},
                             {"igrade", "级次"},
                             {"bend", "末级", Words::kYesNo},
                             {"bproperty", "余额方向", Words::kSide},
                             {"chelp", "助记码"},
                             {"cbook_type", "账页格式"},
                             {"bexchange", "外币核算", Words::kYesNo},
                             {"cexch_name", "外币币种"},
                             {"cmeasure", "计量单位"},
                             {"cgather", "汇总到"},
                             {"bdept", "部门核算", Words::kYesNo},
                             {"bperson", "个人往来", Words::kYesNo},
                             {"bcus", "客户往来", Words::kYesNo},
                             {"bsup", "供应商往来", Words::kYesNo},
                             {"bitem", "项目核算", Words::kYesNo},
                             {"br", "日记账", Words::kYesNo},
                             {"be", "银行账", Words::kYesNo},
                             {"bclose", "封存", Words::kYesNo},
                             {"cother", "受控系统"}};

std::string InWords(const RowImage& image, const Field& field) {
  if (!image.IsThere()) return {};
  std::string text = image.Text(AccountColumn(field.column));
  const bool set = !text.empty() && text != "0";
  if (field.words == Words::kYesNo) return set ? "是" : "否";
  if (field.words == Words::kSide) return set ? "借方" : "贷方";
  return text;
}

}  // namespace

std::string AccountText(const AccountChange& change) {
  const RowImage& image = change.Deleted() ? change.before : change.after;
  return image.Text(AccountColumn("ccode")) + " " + image.Text(AccountColumn("ccode_name"));
}

const char* ChangeWord(const AccountChange& change) {
  if (change.Added()) return "新增";
  return change.Deleted() ? "删除" : "修改";
}

std::vector<FieldChange> FieldChanges(const AccountChange& change) {
  const bool whole = change.Added() || change.Deleted();
  std::vector<FieldChange> fields;
  for (const Field& field : kFields) {
    FieldChange one{.field = field.name,
                    .before = InWords(change.before, field),
                    .after = InWords(change.after, field)};
    // Of a whole account what says nothing is left out.
    const std::string& only = change.Added() ? one.after : one.before;
    const bool told = whole ? !only.empty() && only != "否" : one.before != one.after;
    if (told) fields.push_back(std::move(one));
  }
  return fields;
}

}  // namespace desk::book
