#include <algorithm>
#include <string>

#include "book/exchange/export_chart.h"
#include "book/exchange/source_table.h"
#include "book/exchange/xlsx_reader.h"
#include "book/exchange/zip_archive.h"

// A chart as a workbook of one sheet.
namespace desk::book {

namespace {

using enum AccountField;

constexpr int kDeepest = 7;  // levels that sheets can group, and steps of indentation

/// The places of the formats in the part of styles.
enum Style { kPlain, kHeader, kCentered, kFirstName };

constexpr std::string_view kStart =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
constexpr std::string_view kMain = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr std::string_view kOffice =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
constexpr std::string_view kPackage = "http://schemas.openxmlformats.org/package/2006/";

std::string ContentTypes() {
  const std::string kind = "application/vnd.openxmlformats-officedocument.spreadsheetml.";
  const auto part = [&](const std::string& name, const std::string& type) {
    return "<Override PartName=\"/xl/" + name + "\" ContentType=\"" + kind + type + "+xml\"/>";
  };
  return std::string(kStart) + "<Types xmlns=\"" + std::string(kPackage) +
         "content-types\"><Default Extension=\"rels\" "
         "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/><Default "
         "Extension=\"xml\" ContentType=\"application/xml\"/>" +
         part("workbook.xml", "sheet.main") + part("worksheets/sheet1.xml", "worksheet") +
         part("styles.xml", "styles") + "</Types>";
}

std::string Relations(std::initializer_list<std::pair<std::string, std::string>> targets) {
  std::string xml =
      std::string(kStart) + "<Relationships xmlns=\"" + std::string(kPackage) + "relationships\">";
  int number = 0;
  for (const auto& [type, target] : targets) {
    xml += "<Relationship Id=\"rId" + std::to_string(++number) + "\" Type=\"" +
           std::string(kOffice) + "/" + type + "\" Target=\"" + target + "\"/>";
  }
  return xml + "</Relationships>";
}

std::string WorkbookPart() {
  return std::string(kStart) + "<workbook xmlns=\"" + std::string(kMain) + "\" xmlns:r=\"" +
         std::string(kOffice) +
         "\"><sheets><sheet name=\"会计科目\" sheetId=\"1\" r:id=\"rId1\"/></sheets><definedNames>"
         "<definedName name=\"_xlnm.Print_Titles\" localSheetId=\"0\">会计科目!$1:$1</definedName>"
         "</definedNames></workbook>";
}

/// All cells are texts (number format 49): a program that is told otherwise makes numbers of codes.
std::string Styles() {
  std::string xml =
      std::string(kStart) + "<styleSheet xmlns=\"" + std::string(kMain) +
      "\"><fonts count=\"2\"><font><sz val=\"10\"/><name val=\"宋体\"/></font><font><b/><sz "
      "val=\"10\"/><name val=\"宋体\"/></font></fonts><fills count=\"3\"><fill><patternFill "
      "patternType=\"none\"/></fill><fill><patternFill patternType=\"gray125\"/></fill><fill>"
      "<patternFill patternType=\"solid\"><fgColor rgb=\"FFE8E8E8\"/></patternFill></fill></fills>"
      "<borders count=\"1\"><border/></borders><cellStyleXfs count=\"1\"><xf numFmtId=\"0\" "
      "fontId=\"0\" fillId=\"0\" borderId=\"0\"/></cellStyleXfs><cellXfs count=\"" +
      std::to_string(kFirstName + kDeepest + 1) + "\">";
  const auto format = [&](const std::string& font_and_fill, const std::string& alignment) {
    xml += "<xf numFmtId=\"49\" " + font_and_fill +
           " borderId=\"0\" xfId=\"0\" applyNumberFormat=\"1\" applyFont=\"1\" applyFill=\"1\" "
           "applyAlignment=\"1\"><alignment vertical=\"top\"" +
           alignment + "/></xf>";
  };
  const std::string plain = "fontId=\"0\" fillId=\"0\"";
  format(plain, "");
  format("fontId=\"1\" fillId=\"2\"", " horizontal=\"center\"");
  format(plain, " horizontal=\"center\"");
  for (int step = 0; step <= kDeepest; ++step) {
    format(plain, " horizontal=\"left\" indent=\"" + std::to_string(step) + "\"");
  }
  return xml +
         "</cellXfs><cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/>"
         "</cellStyles></styleSheet>";
}

void AppendCell(std::string& xml, std::string_view text, int style) {
  const std::string s = std::to_string(style);
  if (text.empty()) {
    xml += "<c s=\"" + s + "\"/>";
    return;
  }
  xml += "<c s=\"" + s + "\" t=\"inlineStr\"><is><t xml:space=\"preserve\">" + EscapedCell(text) +
         "</t></is></c>";
}

std::string SheetHead(std::span<const KeptAccount> chart) {
  int deepest = 0;
  for (const KeptAccount& kept : chart) deepest = std::max(deepest, kept.level - 1);
  std::string xml =
      std::string(kStart) + "<worksheet xmlns=\"" + std::string(kMain) +
      "\"><sheetPr><outlinePr summaryBelow=\"0\"/><pageSetUpPr fitToPage=\"1\"/></sheetPr>"
      "<sheetViews><sheetView workbookViewId=\"0\"><pane xSplit=\"2\" ySplit=\"1\" "
      "topLeftCell=\"C2\" activePane=\"bottomRight\" state=\"frozen\"/></sheetView></sheetViews>"
      "<sheetFormatPr defaultRowHeight=\"14\" outlineLevelRow=\"" +
      std::to_string(std::clamp(deepest, 0, kDeepest)) + "\"/><cols>";
  int column = 0;
  for (const FieldInfo& info : Fields()) {
    const std::string number = std::to_string(++column);
    xml += "<col min=\"" + number + "\" max=\"" + number + "\" width=\"" +
           std::to_string(info.width) + "\" customWidth=\"1\"/>";
  }
  return xml + "</cols><sheetData>";
}

std::string Sheet(std::span<const KeptAccount> chart) {
  std::string xml = SheetHead(chart) + "<row r=\"1\">";
  for (const FieldInfo& info : Fields()) AppendCell(xml, info.title, kHeader);
  xml += "</row>";
  std::size_t number = 1;
  for (const KeptAccount& kept : chart) {
    const int depth = std::clamp(kept.level - 1, 0, kDeepest);
    xml += "<row r=\"" + std::to_string(++number) + "\"";
    if (depth > 0) xml += " outlineLevel=\"" + std::to_string(depth) + "\"";
    xml += ">";
    for (const FieldInfo& info : Fields()) {
      const int style = info.field == kName  ? kFirstName + depth
                        : IsFlag(info.field) ? int{kCentered}
                                             : int{kPlain};
      AppendCell(xml, kept.account.Shown(info.field), style);
    }
    xml += "</row>";
  }
  const std::string all = "A1:" + LetterOf(Fields().size() - 1) + std::to_string(number);
  xml += "</sheetData><autoFilter ref=\"" + all + "\"/>";
  constexpr std::string_view kPage =
      "<pageMargins left=\"0.5\" right=\"0.5\" top=\"0.6\" bottom=\"0.6\" "
      "header=\"0.3\" footer=\"0.3\"/><pageSetup paperSize=\"9\" orientation=\"landscape\" "
      "fitToHeight=\"0\"/>";
  // Programs mark codes as numbers that are stored as texts, and offer to make numbers of them.
  return xml.append(kPage) + "<ignoredErrors><ignoredError sqref=\"" + all +
         "\" numberStoredAsText=\"1\"/></ignoredErrors></worksheet>";
}

}  // namespace

std::string ChartAsXlsx(std::span<const KeptAccount> chart) {
  ZipWriter archive;
  archive.Add("[Content_Types].xml", ContentTypes());
  archive.Add("_rels/.rels", Relations({{"officeDocument", "xl/workbook.xml"}}));
  archive.Add("xl/workbook.xml", WorkbookPart());
  archive.Add("xl/_rels/workbook.xml.rels",
              Relations({{"worksheet", "worksheets/sheet1.xml"}, {"styles", "styles.xml"}}));
  archive.Add("xl/styles.xml", Styles());
  archive.Add("xl/worksheets/sheet1.xml", Sheet(chart));
  return archive.Finish();
}

}  // namespace desk::book
