// Resolves any typed text, under any parameters, on a real book: the texts go into the statement as
// they are.

#include <exception>
#include <memory>
#include <string>

#include "book/book.h"
#include "book/host/parameters.h"
#include "host/calls.h"
#include "input.h"
#include "picker/sel_kjkm.h"

namespace tavrix::fuzz {
namespace {

class Nobody : public viewkit::UserPort {
 public:
  [[nodiscard]] Answer Ask(const std::string&, const std::string&, Icon, Buttons) override {
    return Answer::kNo;
  }
  [[nodiscard]] std::string Input(const std::string&, const std::string&) override { return {}; }
  void ShowModal(viewkit::DialogModel&) override {}
  void SetWaitCursor(bool) override {}
  [[nodiscard]] std::string ApplicationTitle() override { return {}; }
};

desk::book::Book MakeBook() {
  auto book = desk::book::Book::Create(
      desk::book::Book::kInMemory,
      {.title = "fuzz",
       .code_rule = "422",
       .accounts = {{.code = "1001", .name = "库存现金", .category = "资产", .help = "kcxj"},
                    {.code = "100101", .name = "人民币", .category = "资产", .help = "rmb"},
                    {.code = "2202", .name = "应付账款", .category = "负债", .help = "yfzk"}},
       .currencies = {},
       .units = {}});
  book.Environment().user_folder.clear();
  return book;
}

void Run(Input input) {
  static Nobody user;
  static const desk::book::Book book = MakeBook();
  static const auto system = book.System();
  const auto parameters = std::make_shared<desk::book::ParameterList>();
  picker::selKjkm picker(user);
  (void)picker.Init(system, 1, "");
  for (const char* key : {"科目编码", "科目类别", "bcus", "bsup", "ismx"}) {
    if (input.Number(1) == 1) parameters->Set(key, input.Line());
  }
  picker.SetPickerParameters(parameters);
  std::string code;
  std::string name;
  try {
    Require(
        !picker.Validate("", input.Line(), input.Line(), std::string(input.Rest()), code, name));
    Require(static_cast<std::size_t>(picker.Selected()->Count()) <= 1);
  } catch (const std::exception&) {
    Require(code.empty() && name.empty());
  }
  Require(host::QueryCount(*system, "select count(*) from gl_code") == 3);
}

}  // namespace
}  // namespace tavrix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavrix::fuzz::Run({data, size});
  return 0;
}
