#include "book/settings_file.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <utility>

#include "book/files.h"
#include "book/paths.h"
#include "book/settings_text.h"
#include "host/error.h"
#include "host/text.h"

namespace desk::book {

namespace fs = std::filesystem;

/// The content of one file while somebody uses it.
class SettingsDocument {
 public:
  explicit SettingsDocument(fs::path path) : path_(std::move(path)), text_(ReadFile(path_)) {}
  SettingsDocument(const SettingsDocument&) = delete;
  SettingsDocument& operator=(const SettingsDocument&) = delete;
  ~SettingsDocument() {
    try {
      if (changed_) ReplaceFile(path_, text_.Text());
    } catch (const std::exception&) {
      // Nobody is left to be told; the file as it was stays whole.
    }
  }

  [[nodiscard]] const SettingsText& Text() const { return text_; }

  void Write(const std::string& section, const std::string& key, const std::string& value) {
    if (!changed_) CheckWritable(path_);
    if (text_.Write(section, key, value)) changed_ = true;
  }

 private:
  fs::path path_;
  SettingsText text_;
  bool changed_ = false;
};

namespace {

/// One spelling for each file; Windows does not tell names by case.
fs::path KeyOf(const std::string& path) {
  std::error_code failed;
  fs::path key = fs::weakly_canonical(PathOf(path), failed);
  if (failed) key = PathOf(path);
#ifdef _WIN32
  const std::u8string text = key.u8string();
  key = PathOf(host::LowerCase(std::string(text.begin(), text.end())));
#endif
  return key;
}

std::shared_ptr<SettingsDocument> DocumentFor(const std::string& path) {
  static std::map<fs::path, std::weak_ptr<SettingsDocument>> open;
  std::erase_if(open, [](const auto& entry) { return entry.second.expired(); });
  std::weak_ptr<SettingsDocument>& entry = open[KeyOf(path)];
  auto document = entry.lock();
  if (!document) {
    document = std::make_shared<SettingsDocument>(PathOf(path));
    entry = document;
  }
  return document;
}

SettingsDocument& Named(const std::shared_ptr<SettingsDocument>& document) {
  if (!document) throw host::HostError("没有指定设置文件");
  return *document;
}

}  // namespace

void SharedSettingsFile::SetFileName(const std::string& path) {
  document_.reset();
  document_ = DocumentFor(path);
}

std::string SharedSettingsFile::ReadValue(const std::string& section, const std::string& key,
                                          const std::string& fallback) {
  return Named(document_).Text().Read(section, key).value_or(fallback);
}

void SharedSettingsFile::WriteValue(const std::string& section, const std::string& key,
                                    const std::string& value) {
  Named(document_).Write(section, key, value);
}

}  // namespace desk::book
