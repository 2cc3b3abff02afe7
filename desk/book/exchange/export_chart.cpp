#include "book/exchange/export_chart.h"

#include <algorithm>
#include <vector>

#include "book/exchange/csv.h"
#include "host/account.h"

namespace desk::book {

namespace {

using enum AccountField;

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char unit : text) {
    switch (unit) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += unit;
    }
  }
  return escaped;
}

/// For one sheet of paper: what is the same everywhere says nothing.
std::vector<AccountField> ShownFields(std::span<const KeptAccount> chart) {
  std::vector<AccountField> fields;
  for (const FieldInfo& info : Fields()) {
    const bool always = info.field == kCode || info.field == kName || info.field == kCategory ||
                        info.field == kDebit;
    const auto says = [&](const KeptAccount& kept) {
      const std::string shown = kept.account.Shown(info.field);
      return !shown.empty() && shown != host::book_type::kAmount;
    };
    if (always || std::ranges::any_of(chart, says)) fields.push_back(info.field);
  }
  return fields;
}

constexpr std::string_view kStyle =
    "body{font:10pt/1.4 \"Microsoft YaHei\",\"PingFang SC\",\"Noto Sans CJK SC\",sans-serif;"
    "margin:1.5em;color:#000}h1{font-size:15pt;margin:0}p{margin:.2em 0 1em;color:#444}"
    "table{border-collapse:collapse;width:100%}thead{display:table-header-group}"
    "th,td{border:1px solid #999;padding:2px 6px;text-align:left;vertical-align:top}"
    "th{background:#eee;white-space:nowrap}td.f{text-align:center;white-space:nowrap}"
    "td.n{white-space:pre-wrap}tr{break-inside:avoid;page-break-inside:avoid}"
    "tr.p td{font-weight:bold}tr.s td{color:#888}"
    "@media print{body{margin:0;font-size:9pt}th{background:#eee;"
    "-webkit-print-color-adjust:exact;print-color-adjust:exact}}@page{margin:15mm}";

void AppendRow(std::string& html, const KeptAccount& kept,
               const std::vector<AccountField>& fields) {
  const bool sealed = kept.account.Flag(kSealed);
  html += sealed ? "<tr class=\"s\">" : kept.leaf ? "<tr>" : "<tr class=\"p\">";
  for (const AccountField field : fields) {
    const std::string text = Escaped(kept.account.Shown(field));
    if (field == kName) {
      constexpr int kMax = 20;
      const int indent = std::clamp(kept.level - 1, 0, kMax) * 3 / 2;
      html += "<td class=\"n\" style=\"padding-left:" + std::to_string(indent) + ".4em\">";
    } else {
      html += IsFlag(field) ? "<td class=\"f\">" : "<td>";
    }
    html += text + "</td>";
  }
  html += "</tr>\n";
}

}  // namespace

std::string ChartAsCsv(std::span<const KeptAccount> chart) {
  std::string text = "\xEF\xBB\xBF";
  std::vector<std::string> cells;
  for (const FieldInfo& info : Fields()) cells.emplace_back(info.title);
  AppendCsvRow(text, cells);
  for (const KeptAccount& kept : chart) {
    cells.clear();
    for (const FieldInfo& info : Fields()) cells.push_back(kept.account.Shown(info.field));
    AppendCsvRow(text, cells);
  }
  return text;
}

std::string ChartAsHtml(std::span<const KeptAccount> chart, const PageTitle& page) {
  const std::vector<AccountField> fields = ShownFields(chart);
  std::string html =
      "<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
      Escaped(page.title) + "</title>\n<style>" + std::string(kStyle) +
      "</style>\n</head>\n<body>\n<h1>" + Escaped(page.title) + "</h1>\n<p>" +
      Escaped(page.subtitle) + "</p>\n<table>\n<thead><tr>";
  for (const AccountField field : fields) {
    html += "<th>" + std::string(InfoOf(field).title) + "</th>";
  }
  html += "</tr></thead>\n<tbody>\n";
  for (const KeptAccount& kept : chart) AppendRow(html, kept, fields);
  html += "</tbody>\n</table>\n</body>\n</html>\n";
  return html;
}

}  // namespace desk::book
