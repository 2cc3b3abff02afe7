#include "app/program/print_commands.h"

#include <string>
#include <utility>
#include <vector>

#include "app/automation/view_grid.h"
#include "app/com.h"
#include "app/frame/today.h"
#include "app/print/preview_window.h"
#include "app/print/printer.h"
#include "app/program/book_place.h"
#include "app/program/book_settings.h"
#include "host/utf.h"
#include "views/chart_print.h"
#include "views/date_text.h"
#include "views/grid_print.h"

namespace desk::app {
namespace {

using tavrix::host::Narrow;
using views::PrintTable;

constexpr char kPreviewSection[] = "Preview";

/// What stands around the rows, whatever they are.
PrintTable Headed(PrintTable table, const Workplace& place) {
  const std::string company = CompanyOf(place.book);
  const std::string currency = CurrencyOf(place.book);
  if (!company.empty()) table.left = "单位名称：" + company;
  table.right = currency.empty() ? "金额单位：元" : "币种：" + currency;
  table.foot = Narrow(NameOf(place.file)) + "    打印日期：" + views::DateText(Today());
  return table;
}

PrintTable HeadedChart(PrintTable table, const Workplace& place) {
  PrintTable headed = Headed(std::move(table), place);
  headed.right = std::to_string(headed.rows.size()) + " 个科目";
  return headed;
}

template <class Wanted>
std::vector<std::string> Codes(const Workplace& place, const Wanted& wanted) {
  const ViewGrid grid{ComPtr<IFlexGrid>(&place.view.CurrentGrid())};
  std::vector<std::string> codes;
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    if (wanted(grid, row)) codes.emplace_back(grid.TextMatrix(row, 0));
  }
  return codes;
}

std::vector<views::PrintChoice> ChartChoices(const Workplace& place) {
  const auto of_rows = [&place](const std::vector<std::string>& codes) {
    return HeadedChart(views::ChartTable(place.book.GetSession(), codes), place);
  };
  std::vector<views::PrintChoice> choices = {
      {"全部科目",
       [&place] { return HeadedChart(views::ChartTable(place.book.GetSession()), place); }},
      {"本页科目，全部展开",
       [&place, of_rows] {
         return of_rows(
             Codes(place, [](const ViewGrid& grid, int row) { return !grid.RowHidden(row); }));
       }},
      {"列表所示的科目", [&place, of_rows] {
         return of_rows(
             Codes(place, [](const ViewGrid& grid, int row) { return grid.IsShown(row); }));
       }}};
  // Who has chosen a page or filtered it wants to see that.
  const bool whole = place.view.CurrentPage() == 0 && place.frame.FilterBar().Text().empty();
  if (!whole) std::swap(choices[0], choices[1]);
  return choices;
}

/// As it was used last, else the printer's own.
views::PrintSetup PaperToUse(DeskSettings& settings) {
  if (const auto paper = settings.Paper()) return *paper;
  return PrinterPaper().value_or(views::PrintSetup{});
}

PrintTask MakeTask(const Workplace& place, HWND owner, std::vector<views::PrintChoice> choices) {
  DeskSettings& settings = place.settings;
  return {.owner = owner,
          .style = place.frame.CurrentStyle(),
          .choices = std::move(choices),
          .setup = PaperToUse(settings),
          .place = [&settings](
                       HWND window) { settings.Restore(window, kPreviewSection, SW_SHOWNORMAL); },
          .closing = [&settings](HWND window) { settings.Save(window, kPreviewSection); }};
}

void Preview(const Workplace& place, PrintTask task) {
  ShowPreview(task);
  place.settings.SavePaper(task.setup);
}

std::vector<views::PrintChoice> SheetChoices(const Workplace& place, SheetWindow& sheet) {
  return {{"", [&place, &sheet] {
             PrintTable table = Headed(views::TableOfGrid(sheet.View().Grid()), place);
             table.title = sheet.View().Title();
             table.middle = sheet.View().Subtitle();
             return table;
           }}};
}

}  // namespace

void PrintChart(const Workplace& place) {
  PrintTask task = MakeTask(place, place.frame.Hwnd(), ChartChoices(place));
  PrintAtOnce(task);
}

void PreviewChart(const Workplace& place) {
  Preview(place, MakeTask(place, place.frame.Hwnd(), ChartChoices(place)));
}

bool UsePrintKey(const Workplace& place, SheetWindow& sheet, tavrix::viewkit::Key key,
                 tavrix::viewkit::Modifiers modifiers) {
  constexpr tavrix::viewkit::Key kPrint{'P'};
  if (key != kPrint || !modifiers.control || modifiers.alt || modifiers.repeated) return false;
  PrintTask task = MakeTask(place, sheet.Hwnd(), SheetChoices(place, sheet));
  if (modifiers.shift) {
    Preview(place, std::move(task));
  } else {
    PrintAtOnce(task);
  }
  return true;
}

}  // namespace desk::app
