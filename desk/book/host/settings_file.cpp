#include "book/host/settings_file.h"

#include <cstdint>
#include <exception>
#include <filesystem>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

#include "book/files/files.h"
#include "book/files/paths.h"
#include "book/host/settings_text.h"
#include "host/error.h"
#include "host/non_copyable.h"
#include "host/text.h"

namespace desk::book {

namespace fs = std::filesystem;

namespace {

/// More than ten times what the layouts of all views come to. A file beyond it is none of ours:
/// it is not read, and never written.
constexpr std::uintmax_t kMaxBytes = 1 << 20;

/// Nothing when there is a file that cannot be read, or should not.
std::optional<std::string> TextOfFile(const fs::path& path) {
  std::error_code failed;
  const fs::file_status status = fs::status(path, failed);
  if (status.type() == fs::file_type::not_found) return std::string();
  if (!fs::is_regular_file(status)) return {};
  const std::uintmax_t size = fs::file_size(path, failed);
  if (failed || size > kMaxBytes) return {};
  std::string text = ReadFile(path);
  if (text.size() != size) return {};
  return text;
}

}  // namespace

namespace {

std::function<void(const std::string&)>& Listener() {
  static std::function<void(const std::string&)> listener;
  return listener;
}

}  // namespace

void OnUnsavedSettings(std::function<void(const std::string&)> tell) {
  Listener() = std::move(tell);
}

/// The content of one file while somebody uses it.
class SettingsDocument : private tavrix::host::NonCopyable {
 public:
  explicit SettingsDocument(const fs::path& path) : path_(Target(path)) {
    if (const auto text = TextOfFile(path_)) {
      text_ = SettingsText(*text);
      most_bytes_now_ = text_.Text().size();  // it may have been in UTF-16
    } else {
      refused_ = true;
    }
  }
  ~SettingsDocument() {
    try {
      if (changed_) ReplaceFile(path_, text_.Text());
    } catch (const std::exception& error) {
      TellUnsaved(error.what());  // the file as it was stays whole
    }
  }

  [[nodiscard]] const SettingsText& Text() const { return text_; }

  void Write(const std::string& section, const std::string& key, const std::string& value) {
    try {
      CheckWritableOnce();
      if (Put(section, key, value)) changed_ = true;
    } catch (const host::HostError& error) {
      TellUnsaved(error.what());
      throw;
    }
  }

 private:
  /// What a link leads to: replacing the link itself would leave its target behind.
  static fs::path Target(const fs::path& path) {
    std::error_code failed;
    const fs::path target = fs::weakly_canonical(path, failed);
    return failed ? path : target;
  }

  void CheckWritableOnce() {
    if (refused_) throw host::HostError("不能读取或写入设置文件：" + PathText(path_));
    if (checked_) return;
    refused_ = true;  // should it not be writable: every key would find that out again
    CheckWritable(path_);
    refused_ = false;
    checked_ = true;
  }

  /// A file beyond the limit would never be read again. Its size is counted only when it may have
  /// come near.
  bool Put(const std::string& section, const std::string& key, const std::string& value) {
    // Each byte may need two, and a new section brings its header along.
    const std::uintmax_t added = 2 * (section.size() + key.size() + value.size()) + 16;
    most_bytes_now_ += added;
    if (most_bytes_now_ <= kMaxBytes) return text_.Write(section, key, value);
    SettingsText text = text_;
    const bool changed = text.Write(section, key, value);
    const std::uintmax_t size = text.Text().size();
    if (size > kMaxBytes) {
      most_bytes_now_ -= added;
      throw host::HostError("设置文件太大，没有保存：" + PathText(path_));
    }
    text_ = std::move(text);
    most_bytes_now_ = size;
    return changed;
  }

  void TellUnsaved(const std::string& why) {
    if (std::exchange(told_, true) || !Listener()) return;
    Listener()("设置没有保存：" + why);
  }

  fs::path path_;
  SettingsText text_;
  std::uintmax_t most_bytes_now_ = 0;  ///< that the text may have
  bool refused_ = false;
  bool checked_ = false;
  bool changed_ = false;
  bool told_ = false;
};

namespace {

/// One spelling for each file; Windows does not tell names by case.
fs::path KeyOf(const std::string& path) {
  std::error_code failed;
  fs::path key = fs::weakly_canonical(PathOf(path), failed);
  if (failed) key = PathOf(path);
#ifdef _WIN32
  key = PathOf(host::LowerCase(PathText(key)));
#endif
  return key;
}

std::shared_ptr<SettingsDocument> DocumentFor(const std::string& path) {
  // Under each spelling that was used, so that asking again by the same one costs nothing.
  static std::map<std::string, std::weak_ptr<SettingsDocument>> spellings;
  static std::map<fs::path, std::weak_ptr<SettingsDocument>> open;
  if (const auto known = spellings.find(path); known != spellings.end()) {
    if (auto document = known->second.lock()) return document;
  }
  const auto ended = [](const auto& entry) { return entry.second.expired(); };
  std::erase_if(spellings, ended);
  std::erase_if(open, ended);
  std::weak_ptr<SettingsDocument>& entry = open[KeyOf(path)];
  auto document = entry.lock();
  if (!document) {
    document = std::make_shared<SettingsDocument>(PathOf(path));
    entry = document;
  }
  spellings[path] = document;
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
