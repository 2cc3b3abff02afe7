// Applies a layout file of any content to a grid of any shape, and keeps it again.

#include <memory>
#include <string>
#include <utility>

#include "book/host/database_object.h"
#include "book/host/settings_text.h"
#include "input.h"
#include "viewkit/layout/m_mode.h"

namespace tavrix::fuzz {
namespace {

using desk::book::SettingsText;
using viewkit::FlexGrid;

class MemoryFile : public host::SettingsFile {
 public:
  explicit MemoryFile(SettingsText& text) : text_(text) {}
  void SetFileName(const std::string&) override {}
  [[nodiscard]] std::string ReadValue(const std::string& section, const std::string& key,
                                      const std::string& fallback) override {
    return text_.Read(section, key).value_or(fallback);
  }
  void WriteValue(const std::string& section, const std::string& key,
                  const std::string& value) override {
    text_.Write(section, key, value);
  }

 private:
  SettingsText& text_;
};

/// A host of one settings file, whose settings stand in it too; it has nothing else to give.
class FileHost : public host::SystemObject {
 public:
  explicit FileHost(std::string_view content) : text(content) {}
  [[nodiscard]] std::shared_ptr<host::Database> GetDatabase() override { return {}; }
  [[nodiscard]] std::shared_ptr<host::SettingEntry> GetSetting(
      const std::string& key, const std::string& section) override {
    return std::make_shared<desk::book::Given<host::SettingEntry, std::string>>(
        text.Read(section, key).value_or(""));
  }
  [[nodiscard]] Identifier NewIdentifier(const std::string&, const std::string&) override {
    return {};
  }
  [[nodiscard]] std::shared_ptr<host::RightsObject> Rights(std::int32_t) override { return {}; }
  [[nodiscard]] std::shared_ptr<host::FoldersObject> Folders() override { return {}; }
  [[nodiscard]] std::shared_ptr<host::CodeRule> CreateCodeRule() override { return {}; }
  [[nodiscard]] std::shared_ptr<host::LogHelper> CreateLogHelper() override { return {}; }
  [[nodiscard]] std::shared_ptr<host::GridNavigator> CreateGridNavigator() override { return {}; }
  [[nodiscard]] std::shared_ptr<host::DataHelper> CreateDataHelper() override { return {}; }
  [[nodiscard]] std::shared_ptr<host::MouseEvent> CreateMouseEvent() override { return {}; }
  [[nodiscard]] std::shared_ptr<host::SettingsFile> CreateSettingsFile() override {
    return std::make_shared<MemoryFile>(text);
  }
  [[nodiscard]] std::shared_ptr<host::Parameters> CreateParameters() override { return {}; }

  SettingsText text;
};

void FillGrid(FlexGrid& grid, Input& input) {
  const int cols = input.Number(6);
  host::RowSet rows(static_cast<std::size_t>(cols));
  const int count = input.Number(20);
  for (int cell = 0; cell < count * cols; ++cell) {
    static constexpr const char* kTexts[] = {"", "a", "b", "12.5", "-1,000", "科目", "1e308", "0"};
    rows.AppendText(kTexts[input.Number(7)]);
  }
  grid.SetFixedRows(input.Number(1));
  grid.SetCols(cols);
  grid.SetFixedCols(input.Number(2));
  grid.LoadRows(std::move(rows));
  grid.SetBounds({0, 0, 3000, 2000});
}

/// Asks for all that a window would ask for.
void Paint(const FlexGrid& grid) {
  for (int row = 0; row < grid.Rows(); ++row) {
    for (int col = 0; col < grid.Cols(); ++col) (void)grid.DisplayText(row, col);
    (void)grid.RowHeight(row);
  }
  Require(grid.TopRow() >= 0 && grid.LeftCol() >= 0);
}

void Run(Input input) {
  FlexGrid grid("Vs");
  FillGrid(grid, input);
  FileHost host(input.Rest());
  // A path that exists, so that nothing is written to make it.
  viewkit::ApplyVsLayout(".", grid, false, host);
  Paint(grid);
  viewkit::ApplyVsRows(".", grid, host);
  viewkit::SaveVsLayout("", grid, false, host);
  const std::string saved = host.text.Text();
  const int rows = grid.Rows();
  Require(SettingsText(saved).Text() == saved);

  FileHost again(saved);
  std::string widths;
  for (int col = 0; col < grid.Cols(); ++col) widths += std::to_string(grid.ColWidth(col)) + " ";
  viewkit::ApplyVsLayout(".", grid, false, again);
  for (int col = 0; col < grid.Cols(); ++col) {
    const std::string width = std::to_string(grid.ColWidth(col)) + " ";
    Require(widths.starts_with(width));
    widths.erase(0, width.size());
  }
  Require(grid.Rows() == rows);
  Paint(grid);
}

}  // namespace
}  // namespace tavrix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavrix::fuzz::Run({data, size});
  return 0;
}
