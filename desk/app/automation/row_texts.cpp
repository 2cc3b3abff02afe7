#include "app/automation/row_texts.h"

#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "com/bstr.h"
#include "host/number_text.h"
#include "host/text.h"
#include "host/utf.h"

namespace desk::app {
namespace {

/// Collects the texts of cells one behind the other.
class TextCells : public book::CellSink {
 public:
  void OnNull() override { ends_.push_back(kNull); }
  void OnInteger(std::int64_t number) override {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    OnText({digits.data(), static_cast<std::size_t>(end - digits.data())});
  }
  void OnNumber(double number) override { OnText(tavrix::host::NumberText(number)); }
  void OnText(std::string_view text) override {
    tavrix::host::AppendWide(text_, text);
    if (text_.size() > kMaxUnits) throw std::bad_alloc();
    ends_.push_back(static_cast<LONG>(text_.size()));
  }

  [[nodiscard]] const std::vector<LONG>& Ends() const { return ends_; }
  [[nodiscard]] const std::wstring& Text() const { return text_; }

 private:
  static constexpr LONG kNull = -1;
  static constexpr std::size_t kMaxUnits = std::numeric_limits<LONG>::max() / sizeof(wchar_t);

  std::vector<LONG> ends_;
  std::wstring text_;
};

}  // namespace

RowTexts TextsOfRows(book::SnapshotRecordset& rows) {
  TextCells cells;
  rows.PassRows(cells);
  tavrix::com::Bstr text{std::wstring_view(cells.Text())};
  SAFEARRAY* ends = SafeArrayCreateVector(VT_I4, 0, static_cast<ULONG>(cells.Ends().size()));
  if (ends == nullptr) throw std::bad_alloc();
  std::memcpy(ends->pvData, cells.Ends().data(), cells.Ends().size() * sizeof(LONG));
  return {ends, text.Detach()};
}

}  // namespace desk::app
