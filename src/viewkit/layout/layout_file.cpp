#include "viewkit/layout/layout_file.h"

#include <cmath>
#include <stdexcept>
#include <utility>

#include "host/calls.h"
#include "host/report.h"
#include "host/text.h"
#include "viewkit/layout/m_mode.h"

namespace tavrix::viewkit {

namespace {

std::string SuffixOf(const host::Control& grid) {
  std::string suffix;
  if (!host::EqualNoCase(grid.Name(), layout::kGrid)) suffix = "_" + grid.Name();
  const int index = GetCtrlIndex(grid);
  if (index != kNoArray) suffix += "_" + std::to_string(index);
  return suffix;
}

}  // namespace

std::shared_ptr<host::SettingsFile> OpenSettingsFile(host::SystemObject& pcSystem,
                                                     const std::string& path) {
  auto file = host::Required(pcSystem.CreateSettingsFile(), "SettingsFile");
  file->SetFileName(path);
  return file;
}

std::string ReadOr(host::SettingsFile& file, const std::string& section, const std::string& key,
                   const std::string& fallback) {
  std::string value = fallback;
  host::IgnoreErrors([&] { value = file.ReadValue(section, key, fallback); });
  return value;
}

int SaneNumber(std::string_view text) {
  constexpr double kMax = 1'000'000;
  const double number = host::LeadingNumber(text);
  if (!(std::abs(number) <= kMax)) throw std::out_of_range("a number that nobody means");
  return host::ToLong32(number);
}

LayoutFile::LayoutFile(std::shared_ptr<host::SettingsFile> file, const host::Control& grid)
    : file_(std::move(file)), suffix_(SuffixOf(grid)) {}

std::string LayoutFile::Section(std::string_view name) const {
  return std::string(name) + suffix_;
}

std::string LayoutFile::Read(std::string_view section, const std::string& key,
                             const std::string& fallback) const {
  return ReadOr(*file_, Section(section), key, fallback);
}

int LayoutFile::ReadNumber(std::string_view section, const std::string& key, int fallback) const {
  return SaneNumber(Read(section, key, std::to_string(fallback)));
}

bool LayoutFile::ReadFlag(std::string_view section, const std::string& key, bool fallback) const {
  return host::LeadingNumber(Read(section, key, fallback ? "1" : "0")) == 1;
}

void LayoutFile::Write(std::string_view section, const std::string& key,
                       const std::string& value) const {
  file_->WriteValue(Section(section), key, value);
}

}  // namespace tavrix::viewkit
