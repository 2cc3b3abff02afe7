#pragma once

#include <string>

#include "figures.h"

namespace tavrix::bench {

/// The account list: `Refresh` of the seven pages over fetching the same rows and copying their
/// text, at the given sizes; and one row brought up to date over a `Refresh`.
void MeasureList(Figures& figures, const std::string& folder);
/// The same on a given book.
void MeasureBook(Figures& figures, const std::string& path);
/// Refreshes a view on `path` twice and prints the peak memory of this process in MiB.
void PrintPeak(const std::string& path);
/// Peak memory of the seven pages above the same program with an empty book.
void MeasureMemory(Figures& figures, const std::string& folder);

}  // namespace tavrix::bench
