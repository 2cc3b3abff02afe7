#pragma once

#include <string>
#include <vector>

#include "figures.h"

namespace tavrix::bench {

/// The account list: `Refresh` of the seven pages over stepping through the same rows and reading
/// the text of each cell, at several sizes; and one row brought up to date over a `Refresh`.
void MeasureList(Figures& figures, const std::string& folder);
/// Makes the books "chartN.book" in `folder`, with N accounts for each of `sizes`.
void MakeBooks(const std::string& folder, const std::vector<int>& sizes);
/// Makes a book with so many accounts and voucher entries.
void MakeLedger(const std::string& path, int accounts, long entries);
/// Copies a book as `desk --copy` does and prints how many seconds that took, how many MiB of
/// memory at most, and how many rows were copied.
void PrintCopy(const std::string& from, const std::string& to);
/// The same on a given book. `std::runtime_error` names what it lacks.
void MeasureBook(Figures& figures, const std::string& path);
/// How opening, refreshing, searching, deleting and copying grow from 100,000 accounts to a
/// million.
void MeasureLarge(Figures& figures, const std::string& folder);
/// Refreshes a view on `path` twice and prints the peak memory of this process in MiB.
void PrintPeak(const std::string& path);
/// Peak memory of the seven pages above the same program with an empty book.
void MeasureMemory(Figures& figures, const std::string& folder);

}  // namespace tavrix::bench
