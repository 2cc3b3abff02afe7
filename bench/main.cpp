#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <vector>

#include "editing_bench.h"
#include "figures.h"
#include "import_bench.h"
#include "layout_bench.h"
#include "list_bench.h"
#include "picker_bench.h"
#include "rearrange_bench.h"
#include "server_bench.h"
#include "support/temp_folder.h"

int main(int count, char** arguments) try {
  tavrix::bench::Figures figures;
  if (count == 3 && std::strcmp(arguments[1], "--book") == 0) {
    tavrix::bench::MeasureBook(figures, arguments[2]);
    return figures.Within() ? 0 : 1;
  }
  if (count == 3 && std::strcmp(arguments[1], "--peak") == 0) {
    tavrix::bench::PrintPeak(arguments[2]);
    return 0;
  }
  if (count > 3 && std::strcmp(arguments[1], "--make") == 0) {
    std::vector<int> sizes;
    for (int i = 3; i < count; ++i) sizes.push_back(std::atoi(arguments[i]));
    tavrix::bench::MakeBooks(arguments[2], sizes);
    return 0;
  }
  if (count == 5 && std::strcmp(arguments[1], "--ledger") == 0) {
    tavrix::bench::MakeLedger(arguments[2], std::atoi(arguments[3]), std::atol(arguments[4]));
    return 0;
  }
  if (count == 4 && std::strcmp(arguments[1], "--copy") == 0) {
    tavrix::bench::PrintCopy(arguments[2], arguments[3]);
    return 0;
  }
  if (count == 3 && std::strcmp(arguments[1], "--server") == 0) {
    tavrix::bench::MeasureServer(figures, arguments[2]);
    return figures.Within() ? 0 : 1;
  }
  const tavrix::test::TempFolder folder;
  if ((count == 2 || count == 3) && std::strcmp(arguments[1], "--rearrange") == 0) {
    tavrix::bench::MeasureRearranging(figures, folder.Path(), count == 3 ? arguments[2] : "");
    return figures.Within() ? 0 : 1;
  }
  if ((count == 2 || count == 3) && std::strcmp(arguments[1], "--import") == 0) {
    tavrix::bench::MeasureImport(figures, folder.Path(), count == 3 ? arguments[2] : "");
    return figures.Within() ? 0 : 1;
  }
  if (count == 2 && std::strcmp(arguments[1], "--large") == 0) {
    tavrix::bench::MeasureLarge(figures, folder.Path());
    return figures.Within() ? 0 : 1;
  }
  if (count != 1) {
    std::fprintf(stderr,
                 "usage: tavrix_bench [--book FILE | --server CONNECTION | --make FOLDER SIZE... | "
                 "--ledger FILE ACCOUNTS ENTRIES | --copy FROM TO | --rearrange [CONNECTION] | "
                 "--import [CONNECTION] | --large]\n");
    return 2;
  }
  tavrix::bench::MeasureList(figures, folder.Path());
  tavrix::bench::MeasureMemory(figures, folder.Path());
  tavrix::bench::MeasureEditing(figures, folder.Path());
  tavrix::bench::MeasurePicker(figures, folder.Path());
  tavrix::bench::MeasureLayout(figures, folder.Path());
  return figures.Within() ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "tavrix_bench: %s\n", error.what());
  return 2;
}
