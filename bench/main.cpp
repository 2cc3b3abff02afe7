#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <string>

#include "editing_bench.h"
#include "figures.h"
#include "list_bench.h"
#include "picker_bench.h"

namespace {

/// A folder that goes with its owner.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "tavrix-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::filesystem::filesystem_error(name, {});
    path_ = name;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  [[nodiscard]] const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace

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
  if (count != 1) {
    std::fprintf(stderr, "usage: tavrix_bench [--book FILE]\n");
    return 2;
  }
  const TemporaryFolder folder;
  tavrix::bench::MeasureList(figures, folder.Path());
  tavrix::bench::MeasureMemory(figures, folder.Path());
  tavrix::bench::MeasureEditing(figures, folder.Path());
  tavrix::bench::MeasurePicker(figures, folder.Path());
  return figures.Within() ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "tavrix_bench: %s\n", error.what());
  return 2;
}
