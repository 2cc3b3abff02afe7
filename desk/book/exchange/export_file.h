#pragma once

#include <cstddef>
#include <filesystem>

#include "book/exchange/export_chart.h"

namespace desk::book {

/// The endings of files that a chart can be written to, with their points: a workbook, a text, a
/// page.
inline constexpr const char* kExportEndings[] = {".xlsx", ".csv", ".html"};

/// Whether the name ends as one of them, in any case.
[[nodiscard]] bool HasExportEnding(const std::filesystem::path& path);

/// Writes all accounts of the book to the file, in the form that its ending says; the first of the
/// forms where it has none of them. How many. `DatabaseError` when the book cannot be read,
/// `host::HostError` when the file cannot be written: what was there stays.
std::size_t ExportChart(Session& session, const std::filesystem::path& path, const PageTitle& page);

}  // namespace desk::book
